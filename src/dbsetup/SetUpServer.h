#pragma once

#include "database/Connection.h"
#include "database/Recordset.h"
#include "servers/Databases.h"

#include <functional>
#include <set>
#include <string>

namespace dbsetup {

using NameSet = std::set<std::string>;

struct AdministratorLogin {
    std::string host;
    std::string user;
    std::string password;
};

/// The MySQL server as the set-up wizard's steps see it, over one connection and one record set. Everything
/// raises database::Error.
class SetUpServer {
public:
    /// `administrator` is asked at each login.
    explicit SetUpServer(std::function<AdministratorLogin()> administrator)
        : administrator_(std::move(administrator)) {}

    /// Connects to this computer's server without user and password and returns its version, "" when it
    /// gives none.
    std::string Version();

    /// Connects as administrator, to no database; an open connection is closed first.
    void LogIn();
    /// The names of the server's databases.
    NameSet ExistingDatabases();
    /// The names of the tables in a database, which must exist.
    NameSet ExistingTables(const suite::Database& database);
    void Execute(const std::string& sql) { connection_.Execute(sql); }

    /// Closes record set and connection where they are open.
    void Close();

private:
    void Connect(const std::string& connectionString);
    NameSet Names(const std::string& sql);

    std::function<AdministratorLogin()> administrator_;
    database::Connection connection_;
    database::Recordset records_;
};

} // namespace dbsetup
