#pragma once

#include "database/RowReader.h"

namespace database {

/// Runs a statement that returns no rows, or whose rows do not matter. Returns the number of rows it affected
/// (with OPTION=3 the matched ones). `form` is that of the statement's text. Raises Error.
std::int64_t Execute(const SessionPtr& session, const std::string& sql, TextForm form = TextForm::Ansi);

/// All rows of a query.
struct Answer {
    std::vector<Column> columns;
    RowStore store;

    std::size_t Count() const { return store.Rows(); }
    /// The position of a column, to the letter. Raises kItemNotFound.
    std::size_t Position(std::string_view name) const;
    /// A field of a row, both counted from 0.
    Value At(std::size_t row, std::size_t column) const { return store.At(row, column).ToValue(); }
};

/// Runs a query and reads it to its end; `parameters` stand for its question marks, `form` is that of the
/// answer's texts. Raises Error.
Answer ReadAll(const SessionPtr& session, const std::string& sql, const std::vector<Value>& parameters = {},
               TextForm form = TextForm::Ansi);

/// The first field of the first row, null when there is no row. Raises Error.
Value Scalar(const SessionPtr& session, const std::string& sql);

} // namespace database
