#pragma once

#include "database/Error.h"
#include "database/Recordset.h"

#include "support/Test.h"

/// The private servers that scripts/mariadb.sh runs, MariaDB or MySQL.
namespace support {

inline constexpr const char* kLocalServer = "localhost";
inline constexpr const char* kRemoteServer = "127.0.0.2";

/// Connection string of the administrator.
std::string RootConnection(const std::string& host = kLocalServer, const std::string& database = {});

/// The folder of a server's table files, for Windows programs, without a trailing backslash.
std::string DataFolder(const std::string& host = kLocalServer);

/// A client of a server that waits for every answer, from any thread.
class Client {
public:
    void Open(const std::string& connectionString);
    void Revive() { Open(std::string(connectionString_)); }
    std::int64_t Execute(const std::string& sql) { return database::Execute(session_, sql); }
    const database::SessionPtr& Session() const { return session_; }

private:
    std::string connectionString_;
    database::SessionPtr session_;
};

/// All rows of a query, the fields of a row joined by "|", null as "NULL".
std::vector<std::string> Rows(Client& connection, const std::string& sql);

/// True for MySQL, false for MariaDB: what tests expect of the one they may not find on the other.
bool IsMySQL(Client& connection);

/// Makes or changes a login ("friend@localhost") by statements that all of these servers take.
void MakeLogin(Client& connection, const std::string& login, const std::string& password,
               const std::string& rights = "ALL ON *.*");

/// The numbers from `first` to `last` as a table with the column `seq`.
std::string Numbers(int first, int last);

/// A number that is the same for tables with the same rows on servers of different kinds, whose own ones are
/// not.
std::string Checksum(Client& connection, const std::string& database, const std::string& table);

/// The checksums of a database's tables, each with the table's name.
std::vector<std::string> Checksums(Client& connection, const std::string& database);

/// Drops every database and login but the server's own.
void Clean(Client& connection);

/// Kills the server as a power cut would, and keeps it down.
void HoldServer(const std::string& host = kLocalServer);
/// Lets it start again and waits until it answers.
void LetServerStart(const std::string& host = kLocalServer);

/// Holds a server as long as the object lives.
class ServerDown {
public:
    explicit ServerDown(const std::string& host = kLocalServer) : host_(host) { HoldServer(host_); }
    ~ServerDown() { LetServerStart(host_); }
    ServerDown(const ServerDown&) = delete;

private:
    std::string host_;
};

/// Stops a server where it is, as a machine that stands still does, as long as the object lives: what it was
/// asked for is done afterwards.
class ServerPaused {
public:
    explicit ServerPaused(const std::string& host = kLocalServer);
    ~ServerPaused();
    ServerPaused(const ServerPaused&) = delete;

private:
    std::string order_;
};

/// Both servers, cleaned, with an administrator logged in.
struct Databases {
    Databases();

    Client root;
    Client remote;
};

class DatabaseTest : public testing::Test, protected Databases {};

} // namespace support
