#pragma once

#include "database/Connection.h"
#include "dbsetup/ServerCard.h"
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

/// The MySQL server as the set-up wizard's steps see it, over one connection. Everything raises
/// database::Error.
class SetUpServer {
public:
    /// `administrator` is asked at each login.
    explicit SetUpServer(std::function<AdministratorLogin()> administrator)
        : administrator_(std::move(administrator)) {}

    /// Connects to this computer's server without user and password and returns its version, "" when it
    /// gives none.
    gui::Task<std::string> Version();

    /// Connects as administrator, to no database; an open connection is closed first.
    gui::Task<> LogIn();
    /// The names of the server's databases.
    gui::Task<NameSet> ExistingDatabases();
    /// The names of the tables in a database, which must exist.
    gui::Task<NameSet> ExistingTables(std::string_view database);
    gui::Task<> Execute(std::string sql);
    /// The first field of the first row, null when there is none.
    gui::Task<database::Value> Scalar(std::string sql);

    /// What the server that is connected is, and what it takes (ServerCard.h).
    gui::Task<ServerFacts> Facts();
    gui::Task<std::string> Card();
    /// True when the server has the plugin and uses it.
    gui::Task<bool> HasPlugin(std::string name);
    /// "1,204 accounts, 3,311 characters", without what is not there; "" when nothing is.
    gui::Task<std::string> Contents();

    /// The administrator, as typed at this moment.
    AdministratorLogin Administrator() const { return administrator_(); }

    void Close() { connection_.Close(); }

private:
    gui::Task<NameSet> Names(std::string sql);

    std::function<AdministratorLogin()> administrator_;
    database::Connection connection_;
};

} // namespace dbsetup
