#include "database/Parameters.h"

#include "common/Text.h"

#include <algorithm>
#include <cstring>

namespace database {

namespace {

/// The one type of the fields that are not null; Text when there are several.
Cell::Kind CommonKind(const std::vector<Cell>& cells) {
    Cell::Kind kind = Cell::Kind::Null;
    for (const Cell& cell : cells) {
        if (cell.kind == Cell::Kind::Null || cell.kind == kind)
            continue;
        if (kind != Cell::Kind::Null)
            return Cell::Kind::Text;
        kind = cell.kind;
    }
    return kind;
}

/// Writes the text, on demand in UTF-16, and returns its length in bytes. `place` has room for that form.
std::size_t WriteCharacters(std::string_view text, bool inUtf16, TextForm form, char* place) {
    if (!inUtf16) {
        std::ranges::copy(text, place);
        return text.size();
    }
    auto* wide = reinterpret_cast<wchar_t*>(place);
    if (common::IsAscii(text)) {
        std::ranges::copy(text, wide);
        return text.size() * sizeof(wchar_t);
    }
    const std::wstring converted = form == TextForm::Utf8 ? common::FromUtf8(text) : common::ToWide(text);
    std::ranges::copy(converted, wide);
    return converted.size() * sizeof(wchar_t);
}

} // namespace

void Parameters::Fill(bool wideText, std::size_t rows, std::size_t columns, const CellAt& cell,
                      TextForm form) {
    rows_ = rows;
    columns_.resize(columns);
    std::vector<Cell> cells(rows);
    for (std::size_t column = 0; column < columns; ++column) {
        for (std::size_t row = 0; row < rows; ++row)
            cells[row] = cell(row, column);
        FillColumn(columns_[column], wideText, cells, form);
    }
}

void Parameters::FillColumn(ColumnData& column, bool wideText, const std::vector<Cell>& cells,
                            TextForm form) {
    const Cell::Kind kind = CommonKind(cells);
    // Numbers among text are written out.
    std::vector<std::string> written(kind == Cell::Kind::Text ? cells.size() : 0);
    std::vector<std::string_view> characters(cells.size());
    std::size_t longest = 0;
    for (std::size_t row = 0; row < cells.size(); ++row) {
        if (cells[row].HasCharacters())
            characters[row] = cells[row].Characters();
        else if (kind == Cell::Kind::Text)
            characters[row] = written[row] = cells[row].ToValue().AsText();
        longest = std::max(longest, characters[row].size());
    }
    // Plain ASCII is the same in every character set, and drivers convert nothing on its way.
    const bool inUtf16 =
        wideText && kind == Cell::Kind::Text && !std::ranges::all_of(characters, common::IsAscii);
    ChooseType(column, kind, inUtf16, longest);
    column.data.resize(cells.size() * column.width);
    column.lengths.resize(cells.size());
    for (std::size_t row = 0; row < cells.size(); ++row) {
        char* place = column.data.data() + row * column.width;
        std::size_t length = column.width;
        if (kind == Cell::Kind::Integer || kind == Cell::Kind::Real)
            std::memcpy(place, &cells[row].integer, sizeof cells[row].integer);
        else
            length = WriteCharacters(characters[row], column.cType == SQL_C_WCHAR, form, place);
        column.lengths[row] =
            cells[row].kind == Cell::Kind::Null ? SQL_NULL_DATA : static_cast<SQLLEN>(length);
    }
}

void Parameters::ChooseType(ColumnData& column, Cell::Kind kind, bool wideText, std::size_t longest) {
    const bool isLong = longest > 4000;
    column.size = std::max<std::size_t>(longest, 1);
    column.width = column.size;
    switch (kind) {
    case Cell::Kind::Integer:
        column.cType = SQL_C_SBIGINT;
        column.sqlType = SQL_BIGINT;
        column.width = sizeof(std::int64_t);
        column.size = 20;
        break;
    case Cell::Kind::Real:
        column.cType = SQL_C_DOUBLE;
        column.sqlType = SQL_DOUBLE;
        column.width = sizeof(double);
        column.size = 15;
        break;
    case Cell::Kind::Bytes:
        column.cType = SQL_C_BINARY;
        column.sqlType = isLong ? SQL_LONGVARBINARY : SQL_VARBINARY;
        break;
    default:
        column.cType = wideText ? SQL_C_WCHAR : SQL_C_CHAR;
        column.sqlType =
            wideText ? (isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR) : (isLong ? SQL_LONGVARCHAR : SQL_VARCHAR);
        column.width = column.size * (wideText ? sizeof(wchar_t) : 1);
    }
}

void Parameters::Bind(odbc::Statement& statement, std::size_t number, ColumnData& column, std::size_t row) {
    const SQLSMALLINT digits = 0;
    statement.Check(SQLBindParameter(statement.Get(), static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT,
                                     column.cType, column.sqlType, column.size, digits,
                                     column.data.data() + row * column.width,
                                     static_cast<SQLLEN>(column.width), column.lengths.data() + row),
                    "SQLBindParameter");
}

void Parameters::BindArrays(odbc::Statement& statement) {
    std::size_t number = 0;
    for (ColumnData& column : columns_)
        Bind(statement, ++number, column, 0);
}

void Parameters::BindRows(odbc::Statement& statement) {
    std::size_t number = 0;
    for (std::size_t row = 0; row < rows_; ++row)
        for (ColumnData& column : columns_)
            Bind(statement, ++number, column, row);
}

} // namespace database
