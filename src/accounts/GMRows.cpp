#include "accounts/GMRows.h"

#include "common/RuntimeError.h"

#include <algorithm>
#include <limits>

namespace accounts {

namespace {

auto IsOf(std::int32_t id) {
    return [id](const GMRow& row) { return row.isAccount && row.id == id; };
}

} // namespace

std::vector<GMRow>::iterator GMRows::PlaceOf(std::int32_t id) {
    return std::ranges::find_if(rows_, IsOf(id));
}

const GMRow* GMRows::Find(std::int32_t id) const {
    const auto row = std::ranges::find_if(rows_, IsOf(id));
    return row == rows_.end() ? nullptr : &*row;
}

std::optional<Privileges> GMRows::FlagsOf(std::int32_t id) const {
    const GMRow* row = Find(id);
    return row ? std::optional(row->flags) : std::nullopt;
}

void GMRows::Append(GMRow row) {
    if (row.isAccount) {
        if (count_ == std::numeric_limits<std::int16_t>::max())
            throw RuntimeError(common::kOverflow);
        ++count_;
    }
    rows_.push_back(std::move(row));
}

bool GMRows::Remove(std::int32_t id) {
    const auto row = PlaceOf(id);
    if (row == rows_.end())
        return false;
    rows_.erase(row);
    --count_;
    return true;
}

bool GMRows::RemoveDoubles(std::int32_t id) {
    const auto first = PlaceOf(id);
    if (first == rows_.end())
        return false;
    const auto doubles = std::remove_if(first + 1, rows_.end(), IsOf(id));
    if (doubles == rows_.end())
        return false;
    count_ = static_cast<std::int16_t>(count_ - (rows_.end() - doubles));
    rows_.erase(doubles, rows_.end());
    return true;
}

bool GMRows::Modify(std::int32_t id, const Privileges& flags) {
    const auto row = PlaceOf(id);
    if (row == rows_.end())
        return false;
    for (std::size_t i = 0; i < kPrivilegeCount; ++i) {
        if (flags[i] == row->flags[i] || flags[i] == kLeaveAsItIs)
            continue;
        row->Set(i, flags[i]);
    }
    return true;
}

} // namespace accounts
