#include "accounts/AccountIndex.h"

#include "common/RuntimeError.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>

namespace accounts {

AccountIndex::AccountIndex(std::size_t rows, const std::function<AccountKey(std::size_t row)>& keyOf) {
    names_.reserve(rows);
    ids_.reserve(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        AccountKey key = keyOf(row);
        if (key.id)
            ids_.emplace_back(*key.id, row);
        names_.emplace_back(std::move(key.name));
    }
    // The server mostly sends them in this order already.
    if (!std::ranges::is_sorted(ids_))
        std::ranges::sort(ids_);
    ChainAll();
}

std::size_t AccountIndex::ChainOf(const std::string& name) const {
    return std::hash<std::string>()(name) & (first_.size() - 1);
}

void AccountIndex::Chain(std::size_t row) {
    Link& first = first_[ChainOf(*names_[row])];
    next_[row] = std::exchange(first, static_cast<Link>(row));
}

void AccountIndex::ChainAll() {
    first_.assign(std::bit_ceil(2 * names_.size()), kEnd);
    next_.assign(names_.size(), kEnd);
    for (std::size_t row = 0; row < names_.size(); ++row)
        if (names_[row])
            Chain(row);
}

void AccountIndex::Insert(std::size_t row, const AccountKey& key) {
    if (row >= names_.size()) {
        names_.resize(row + 1);
        next_.resize(row + 1, kEnd);
    }
    names_[row] = key.name;
    if (names_.size() > first_.size())
        ChainAll();
    else
        Chain(row);
    if (key.id) {
        const Id id{*key.id, row};
        ids_.insert(std::ranges::lower_bound(ids_, id), id);
    }
}

void AccountIndex::Erase(std::size_t row, const AccountKey& key) {
    if (row >= names_.size() || !names_[row])
        return;
    Link* link = &first_[ChainOf(*names_[row])];
    while (*link != row)
        link = &next_[*link];
    *link = next_[row];
    names_[row].reset();
    if (!key.id)
        return;
    const Id id{*key.id, row};
    const auto found = std::ranges::lower_bound(ids_, id);
    if (found != ids_.end() && *found == id)
        ids_.erase(found);
}

std::vector<std::size_t> AccountIndex::RowsOfName(const std::string& name) const {
    std::vector<std::size_t> rows;
    for (Link row = first_.empty() ? kEnd : first_[ChainOf(name)]; row != kEnd; row = next_[row])
        if (names_[row] == name)
            rows.push_back(row);
    return rows;
}

std::optional<std::size_t> AccountIndex::RowOfName(const std::string& name) const {
    const auto rows = RowsOfName(name);
    return rows.empty() ? std::nullopt : std::optional(std::ranges::min(rows));
}

std::size_t AccountIndex::CountOfName(const std::string& name) const {
    return RowsOfName(name).size();
}

std::optional<std::size_t> AccountIndex::RowOfId(std::int64_t id) const {
    const auto found = std::ranges::lower_bound(ids_, Id{id, 0});
    if (found == ids_.end() || found->first != id)
        return std::nullopt;
    return found->second;
}

std::int32_t AccountIndex::FreeId(std::int32_t from) const {
    std::int64_t candidate = from;
    // Equal numbers stand side by side, so the second of two does not count.
    for (auto id = std::ranges::lower_bound(ids_, Id{from, 0}); id != ids_.end() && id->first <= candidate;
         ++id)
        candidate = id->first + 1;
    if (candidate > std::numeric_limits<std::int32_t>::max())
        throw RuntimeError(common::kOverflow);
    return static_cast<std::int32_t>(candidate);
}

} // namespace accounts
