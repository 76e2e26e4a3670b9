#pragma once

#include "database/Column.h"
#include "database/Odbc.h"

#include <cstddef>

namespace database {

/// How the fields of a column are fetched from the driver.
struct FetchForm {
    SQLSMALLINT cType = SQL_C_CHAR;
    /// The bytes fetched are text in UTF-8.
    bool utf8 = false;
    /// Bytes of a field, with the end mark that text carries; 0 when they are not bounded usefully.
    std::size_t size = 0;
    std::size_t endMark = 0;

    /// Characters or bytes up to which a column is fetched in blocks. What may be longer is asked for row by
    /// row.
    static constexpr std::size_t kLongest = 65535;
};

struct DescribedColumn {
    Column column;
    FetchForm form;
};

/// What the driver says of a column of the statement's result, counted from 1, and how its fields are fetched
/// accordingly. `wide` and `utf8` are the session's answers of these names, got before the statement ran:
/// they may need statements of their own.
DescribedColumn DescribeColumn(const odbc::Statement& statement, SQLUSMALLINT number, bool wide, bool utf8);

} // namespace database
