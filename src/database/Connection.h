#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace database {

namespace odbc {
class Session;
}
/// A login on a server; whoever uses it keeps it alive.
using SessionPtr = std::shared_ptr<odbc::Session>;

/// `value` as a value of a connection string: in braces when it holds a semicolon, begins with a brace or has
/// blanks at an end, as it is otherwise.
std::string ConnectionValue(std::string_view value);

/// The connection string of a MySQL server by the driver's classic name. An empty `database` is left out.
std::string MySQLConnectionString(std::string_view host, std::string_view user, std::string_view password,
                                  std::string_view database = {});

/// A connection to a server over ODBC. What was opened on it keeps working until it is itself released.
class Connection {
public:
    /// Connects; an open connection is closed first. A server that does not answer is given up after
    /// `loginSeconds` where the driver can be told so. Raises Error.
    void Open(const std::string& connectionString, unsigned loginSeconds = 10);

    /// Connects again with the string of the last Open when the server no longer answers (it was restarted,
    /// or has closed an idle connection). Raises Error when it cannot, kObjectClosed when never opened.
    void Revive();

    bool IsOpen() const { return session_ != nullptr; }
    void Close() { session_.reset(); }

    /// Runs a statement that returns no rows, or whose rows do not matter. Returns the number of rows it
    /// affected (with OPTION=3 the matched ones). Raises Error.
    std::int64_t Execute(const std::string& sql);

    /// The driver's side of it, for this layer. Raises kObjectClosed.
    const SessionPtr& Session() const;

private:
    SessionPtr session_;
    std::string connectionString_;
    unsigned loginSeconds_ = 0;
};

} // namespace database
