#pragma once

#include "accounts/GMRow.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace accounts {

/// The rows of a privilege file below its header, in their order: those of accounts, and lines without an
/// account, which stay where they stand. Where an account has several rows, the first one counts.
class GMRows {
public:
    /// Raises 6 when there are more rows of accounts than a 16-bit count holds.
    void Append(GMRow row);
    /// Removes the account's first row; false when it has none.
    bool Remove(std::int32_t id);
    /// Removes the account's rows behind the first one; false when there are none.
    bool RemoveDoubles(std::int32_t id);
    /// Sets the flags of the account's first row that are not kLeaveAsItIs; false when it has no row.
    bool Modify(std::int32_t id, const Privileges& flags);

    /// The account's first row; null when it has none. Good until the rows change.
    const GMRow* Find(std::int32_t id) const;
    std::optional<Privileges> FlagsOf(std::int32_t id) const;
    const std::vector<GMRow>& All() const { return rows_; }

private:
    std::vector<GMRow>::iterator PlaceOf(std::int32_t id);

    std::vector<GMRow> rows_;
    std::int16_t count_ = 0;
};

} // namespace accounts
