#pragma once

#include "database/Column.h"

#include <memory>
#include <string>
#include <vector>

namespace database {

namespace odbc {
class Session;
}
/// A login on a server; whoever uses it keeps it alive.
using SessionPtr = std::shared_ptr<odbc::Session>;

/// Keeps other threads out of a session. Calls aside and the end of what belongs to the session, which comes
/// on whichever thread lets it go last, would meet in the driver otherwise: MariaDB's 3.2 locks itself up
/// when one thread begins a statement while another one ends its own, and with it every other connection. A
/// thread may hold it several times.
class SessionUse {
public:
    explicit SessionUse(SessionPtr session);
    ~SessionUse();
    SessionUse(const SessionUse&) = delete;
    SessionUse& operator=(const SessionUse&) = delete;

private:
    SessionPtr session_;
};

/// `name` in back-ticks.
std::string Quoted(std::string_view name);

/// Reads the rows of a query once, from the first to the last, in blocks. The session must not be asked for
/// anything else before the reader has ended where its driver can do only one thing at a time.
class RowReader {
public:
    /// Runs the query; `parameters` stand for its question marks. Raises Error.
    RowReader(const SessionPtr& session, const std::string& sql, const std::vector<Value>& parameters = {});
    ~RowReader();
    RowReader(const RowReader&) = delete;
    RowReader& operator=(const RowReader&) = delete;

    const std::vector<Column>& Columns() const { return columns_; }
    /// Asks the driver how many rows there are; 0 where it does not know before they have come.
    std::size_t RowsToCome() const;

    /// Appends the next rows, at most a thousand, to `rows`, a store of as many columns. Returns how many
    /// they were, 0 at the end. Raises Error.
    std::size_t Read(RowStore& rows);

private:
    class Result;
    std::vector<Column> columns_;
    std::unique_ptr<Result> result_;
};

} // namespace database
