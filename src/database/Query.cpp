#include "database/Query.h"

#include "database/Error.h"
#include "database/Odbc.h"

#include <algorithm>

namespace database {

std::int64_t Execute(const SessionPtr& session, const std::string& sql, TextForm form) {
    odbc::Statement statement(session);
    statement.ExecuteDirect(sql, form);
    return statement.RowCount();
}

std::size_t Answer::Position(std::string_view name) const {
    const auto at = std::ranges::find(columns, name, &Column::name);
    if (at == columns.end())
        Raise(kItemNotFound);
    return static_cast<std::size_t>(at - columns.begin());
}

Answer ReadAll(const SessionPtr& session, const std::string& sql, const std::vector<Value>& parameters,
               TextForm form) {
    RowReader reader(session, sql, parameters);
    Answer rows{reader.Columns(), RowStore(reader.Columns().size(), form)};
    while (reader.Read(rows.store) > 0)
        continue;
    return rows;
}

Value Scalar(const SessionPtr& session, const std::string& sql) {
    const Answer rows = ReadAll(session, sql);
    return rows.Count() == 0 ? Value() : rows.At(0, 0);
}

} // namespace database
