#include "database/Connection.h"

#include "common/Text.h"
#include "database/Error.h"
#include "database/Odbc.h"
#include "database/Query.h"

namespace database {

std::string ConnectionValue(std::string_view value) {
    // The classic driver takes the braces for a part of the value: whatever arrives without them goes bare.
    if (value.find(';') == std::string_view::npos && !value.starts_with('{') && common::Trim(value) == value)
        return std::string(value);
    return "{" + common::ReplaceAll(value, "}", "}}") + "}";
}

std::string MySQLConnectionString(std::string_view host, std::string_view user, std::string_view password,
                                  std::string_view database) {
    std::string text = "DRIVER={MySQL ODBC 3.51 Driver};SERVER=" + ConnectionValue(host) +
                       ";UID=" + ConnectionValue(user) + ";PWD=" + ConnectionValue(password) + ";";
    if (!database.empty())
        text += "DATABASE=" + ConnectionValue(database) + ";";
    return text + "OPTION=3";
}

void Connection::Open(const std::string& connectionString, unsigned loginSeconds) {
    Close();
    connectionString_ = connectionString;
    loginSeconds_ = loginSeconds;
    session_ = std::make_shared<odbc::Session>(connectionString, loginSeconds);
}

void Connection::Revive() {
    if (connectionString_.empty())
        Raise(kObjectClosed);
    try {
        Execute("SELECT 1");
    } catch (const Error&) {
        Open(std::string(connectionString_), loginSeconds_);
    }
}

std::int64_t Connection::Execute(const std::string& sql) {
    return database::Execute(Session(), sql);
}

const SessionPtr& Connection::Session() const {
    if (!session_)
        Raise(kObjectClosed);
    return session_;
}

} // namespace database
