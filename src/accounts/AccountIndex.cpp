#include "accounts/AccountIndex.h"

#include "common/RuntimeError.h"

#include <algorithm>
#include <limits>

namespace accounts {

void AccountIndex::Clear() {
    names_.clear();
    ids_.clear();
}

void AccountIndex::Insert(std::size_t row, const AccountKey& key) {
    names_.emplace(key.name, row);
    // They come in this order when all are read.
    if (key.id)
        ids_.emplace_hint(ids_.end(), *key.id, row);
}

void AccountIndex::Erase(std::size_t row, const AccountKey& key) {
    const auto [first, last] = names_.equal_range(key.name);
    const auto found = std::find_if(first, last, [row](const auto& entry) { return entry.second == row; });
    if (found != last)
        names_.erase(found);
    if (key.id)
        ids_.erase({*key.id, row});
}

std::optional<std::size_t> AccountIndex::RowOfName(const std::string& name) const {
    const auto [first, last] = names_.equal_range(name);
    const auto found = std::min_element(
        first, last, [](const auto& one, const auto& other) { return one.second < other.second; });
    return found == last ? std::nullopt : std::optional(found->second);
}

std::optional<std::size_t> AccountIndex::RowOfId(std::int64_t id) const {
    const auto found = ids_.lower_bound({id, 0});
    if (found == ids_.end() || found->first != id)
        return std::nullopt;
    return found->second;
}

std::size_t AccountIndex::CountOfName(const std::string& name) const {
    return names_.count(name);
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
