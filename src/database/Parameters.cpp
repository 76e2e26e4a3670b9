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

bool IsAscii(const Cell& cell) {
    return !cell.HasCharacters() || std::ranges::all_of(cell.Characters(), [](char letter) {
        return static_cast<unsigned char>(letter) < 0x80;
    });
}

/// Writes the text in UTF-16 and returns its length in bytes. `place` has two bytes for each of its bytes.
std::size_t WriteWide(std::string_view text, TextForm form, char* place) {
    auto* wide = reinterpret_cast<wchar_t*>(place);
    if (std::ranges::all_of(text, [](char letter) { return static_cast<unsigned char>(letter) < 0x80; })) {
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
        FillColumn(columns_[column], wideText, rows, cells, form);
    }
}

void Parameters::FillColumn(ColumnData& column, bool wideText, std::size_t rows,
                            const std::vector<Cell>& cells, TextForm form) {
    const Cell::Kind kind = CommonKind(cells);
    std::vector<std::string> texts(kind == Cell::Kind::Text ? rows : 0);
    std::size_t longest = 0;
    for (std::size_t row = 0; row < rows; ++row) {
        if (kind == Cell::Kind::Text && !cells[row].HasCharacters())
            texts[row] = cells[row].ToValue().AsText();
        longest = std::max({longest, cells[row].HasCharacters() ? cells[row].length : std::size_t{0},
                            texts.empty() ? std::size_t{0} : texts[row].size()});
    }
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
        // Plain ASCII is the same in every character set, and drivers convert nothing on its way.
        wideText = wideText && !std::ranges::all_of(cells, IsAscii);
        column.cType = wideText ? SQL_C_WCHAR : SQL_C_CHAR;
        column.sqlType =
            wideText ? (isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR) : (isLong ? SQL_LONGVARCHAR : SQL_VARCHAR);
        column.width = column.size * (wideText ? sizeof(wchar_t) : 1);
    }
    column.data.resize(rows * column.width);
    column.lengths.resize(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        char* place = column.data.data() + row * column.width;
        const Cell& cell = cells[row];
        std::size_t length = column.width;
        if (cell.kind == Cell::Kind::Null) {
            column.lengths[row] = SQL_NULL_DATA;
            continue;
        }
        if (kind == Cell::Kind::Integer || kind == Cell::Kind::Real) {
            std::memcpy(place, &cell.integer, sizeof cell.integer);
        } else {
            const std::string_view text = cell.HasCharacters() ? cell.Characters() : texts[row];
            length = text.size();
            if (column.cType == SQL_C_WCHAR)
                length = WriteWide(text, form, place);
            else
                std::ranges::copy(text, place);
        }
        column.lengths[row] = static_cast<SQLLEN>(length);
    }
}

void Parameters::Bind(odbc::Statement& statement, std::size_t number, ColumnData& column, std::size_t row) {
    const SQLSMALLINT digits = 0;
    statement.Check(SQLBindParameter(statement.Get(), static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT,
                                     column.cType, column.sqlType, column.size, digits,
                                     column.data.data() + row * column.width,
                                     static_cast<SQLLEN>(column.width), column.lengths.data() + row));
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
