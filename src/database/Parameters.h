#pragma once

#include "database/Odbc.h"
#include "database/RowStore.h"

#include <functional>
#include <vector>

namespace database {

/// Values for the question marks of a statement, held column by column as drivers take them.
class Parameters {
public:
    using CellAt = std::function<Cell(std::size_t row, std::size_t column)>;

    /// Takes over `rows` rows of `columns` fields. A column whose fields are of several types travels as
    /// text. `wideText` as the session says, `form` as the text of the cells is.
    void Fill(bool wideText, std::size_t rows, std::size_t columns, const CellAt& cell,
              TextForm form = TextForm::Ansi);

    /// One question mark for a column; the rows become the sets of a parameter array.
    void BindArrays(odbc::Statement& statement);
    /// One question mark for each field, row after row.
    void BindRows(odbc::Statement& statement);

private:
    struct ColumnData {
        SQLSMALLINT cType = SQL_C_CHAR;
        SQLSMALLINT sqlType = SQL_VARCHAR;
        SQLULEN size = 1;
        std::size_t width = 1;
        std::vector<char> data;
        std::vector<SQLLEN> lengths;
    };

    static void FillColumn(ColumnData& column, bool wideText, const std::vector<Cell>& cells, TextForm form);
    /// `longest` in bytes, of the fields that have characters.
    static void ChooseType(ColumnData& column, Cell::Kind kind, bool wideText, std::size_t longest);
    void Bind(odbc::Statement& statement, std::size_t number, ColumnData& column, std::size_t row);

    std::size_t rows_ = 0;
    std::vector<ColumnData> columns_;
};

} // namespace database
