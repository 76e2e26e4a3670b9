#pragma once

#include "database/RowStore.h"

#include <cstdint>
#include <map>
#include <string>

namespace supervision {

/// What a table's rows come to, whatever order they are read in. Two tables with the same rows have the same
/// sum; a single changed byte gives another one, save for one chance in 2 to the 64th.
struct TableSum {
    std::uint64_t rows = 0;
    std::uint64_t sum = 0;

    /// Counts the rows in.
    void Add(const database::RowStore& block);
    bool operator==(const TableSum&) const = default;
};

/// Each table's sum by the table's name.
using TableSums = std::map<std::string, TableSum>;

/// What the second has not as the first has it: "account (20,000 rows, of which 210 arrived)"; "" when both
/// are the same.
std::string Differences(const TableSums& source, const TableSums& destination);

} // namespace supervision
