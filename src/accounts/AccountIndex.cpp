#include "accounts/AccountIndex.h"

#include "common/RuntimeError.h"

#include <limits>

namespace accounts {

void AccountIndex::Clear() {
    names_.clear();
    ids_.clear();
}

void AccountIndex::Insert(std::size_t row, const AccountKey& key) {
    names_.emplace(key.name, row);
    if (key.id)
        ids_.emplace(*key.id, row);
}

void AccountIndex::Erase(std::size_t row, const AccountKey& key) {
    names_.erase({key.name, row});
    if (key.id)
        ids_.erase({*key.id, row});
}

std::optional<std::size_t> AccountIndex::RowOfName(const std::string& name) const {
    const auto found = names_.lower_bound({name, 0});
    if (found == names_.end() || found->first != name)
        return std::nullopt;
    return found->second;
}

std::optional<std::size_t> AccountIndex::RowOfId(std::int64_t id) const {
    const auto found = ids_.lower_bound({id, 0});
    if (found == ids_.end() || found->first != id)
        return std::nullopt;
    return found->second;
}

std::size_t AccountIndex::CountOfName(const std::string& name) const {
    std::size_t count = 0;
    for (auto found = names_.lower_bound({name, 0}); found != names_.end() && found->first == name; ++found)
        ++count;
    return count;
}

std::int32_t AccountIndex::FreeId(std::int32_t from) const {
    std::int64_t candidate = from;
    // Equal numbers stand side by side, so the second of two does not count.
    for (auto id = ids_.lower_bound({from, 0}); id != ids_.end() && id->first <= candidate; ++id)
        candidate = id->first + 1;
    if (candidate > std::numeric_limits<std::int32_t>::max())
        throw RuntimeError(common::kOverflow);
    return static_cast<std::int32_t>(candidate);
}

} // namespace accounts
