#include "database/FetchForm.h"

#include "common/Text.h"

#include <algorithm>

namespace database {

namespace {

std::string TextAttribute(SQLHSTMT statement, SQLUSMALLINT column, SQLUSMALLINT attribute) {
    SQLWCHAR text[256] = {};
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(SQLColAttributeW(statement, column, attribute, text, sizeof text, &length, nullptr)))
        return {};
    return common::ToNarrow(text);
}

SQLLEN NumberAttribute(SQLHSTMT statement, SQLUSMALLINT column, SQLUSMALLINT attribute) {
    SQLLEN number = 0;
    if (!SQL_SUCCEEDED(SQLColAttributeW(statement, column, attribute, nullptr, 0, nullptr, &number)))
        return 0;
    return number;
}

Cell::Kind KindOf(SQLLEN type, bool isUnsigned) {
    switch (type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
        return Cell::Kind::Integer;
    case SQL_BIGINT:
        return isUnsigned ? Cell::Kind::Text : Cell::Kind::Integer;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
        return Cell::Kind::Real;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
        return Cell::Kind::Bytes;
    default:
        return Cell::Kind::Text;
    }
}

bool IsCharacterType(SQLLEN type) {
    switch (type) {
    case SQL_CHAR:
    case SQL_VARCHAR:
    case SQL_LONGVARCHAR:
    case SQL_WCHAR:
    case SQL_WVARCHAR:
    case SQL_WLONGVARCHAR:
        return true;
    default:
        return false;
    }
}

FetchForm FormOf(Cell::Kind kind, SQLLEN type, std::size_t length, bool wide, bool utf8) {
    switch (kind) {
    case Cell::Kind::Integer:
        return {.cType = SQL_C_SBIGINT, .size = sizeof(SQLBIGINT)};
    case Cell::Kind::Real:
        // Single precision too: a double holds it exactly, and MariaDB's driver 3.1 puts arrays of
        // SQL_C_FLOAT at the wrong places.
        return {.cType = SQL_C_DOUBLE, .size = sizeof(double)};
    default:
        break;
    }
    const bool bounded = length > 0 && length <= FetchForm::kLongest;
    if (kind == Cell::Kind::Bytes)
        return {.cType = SQL_C_BINARY, .size = bounded ? length : 0};
    // UTF-8 is taken as bytes and converted here: MariaDB's driver 3.1 sets up a converter anew for each
    // field that it hands over in UTF-16, which takes most of the time of reading.
    if (IsCharacterType(type) && utf8)
        return {.cType = SQL_C_BINARY, .utf8 = true, .size = bounded ? 4 * length : 0};
    // Room for characters that take two units in UTF-16, or up to three bytes in the ANSI code page. The text
    // of numbers and dates is plain ASCII in any form.
    const bool inUtf16 = wide && IsCharacterType(type);
    const std::size_t unit = inUtf16 ? sizeof(SQLWCHAR) : 1;
    return {.cType = static_cast<SQLSMALLINT>(inUtf16 ? SQL_C_WCHAR : SQL_C_CHAR),
            .size = bounded ? (inUtf16 ? 2 * length + 1 : 3 * length + 1) * unit : 0,
            .endMark = unit};
}

} // namespace

DescribedColumn DescribeColumn(const odbc::Statement& statement, SQLUSMALLINT number, bool wide, bool utf8) {
    const SQLHSTMT handle = statement.Get();
    Column column;
    column.name = TextAttribute(handle, number, SQL_DESC_LABEL);
    column.baseDatabase = TextAttribute(handle, number, SQL_DESC_CATALOG_NAME);
    column.baseTable = TextAttribute(handle, number, SQL_DESC_BASE_TABLE_NAME);
    column.baseName = TextAttribute(handle, number, SQL_DESC_BASE_COLUMN_NAME);
    column.autoNumber = NumberAttribute(handle, number, SQL_DESC_AUTO_UNIQUE_VALUE) == SQL_TRUE;
    const SQLLEN type = NumberAttribute(handle, number, SQL_DESC_CONCISE_TYPE);
    column.kind = KindOf(type, NumberAttribute(handle, number, SQL_DESC_UNSIGNED) == SQL_TRUE);
    const auto length = static_cast<std::size_t>(
        std::max<SQLLEN>(0, std::max(NumberAttribute(handle, number, SQL_DESC_LENGTH),
                                     NumberAttribute(handle, number, SQL_DESC_DISPLAY_SIZE))));
    const FetchForm form = FormOf(column.kind, type, length, wide, utf8);
    return {std::move(column), form};
}

} // namespace database
