#pragma once

#include "database/Connection.h"

#include <string>
#include <vector>

/// What the backups ask a server, aside. All of it raises database::Error.
namespace supervision {

/// The number of the error that tells of a damaged table, as MySQL has it.
inline constexpr long kTableDamaged = 1194;

/// Runs the first of the statements that the server knows; old servers know none of them.
void ExecuteKnown(const database::SessionPtr& session, const std::vector<std::string>& statements);

/// The first field of each row.
std::vector<std::string> Names(const database::SessionPtr& session, const std::string& sql);

/// "SHOW TABLES FROM glogin;"
std::string ShowTables(const std::string& database);

/// Has the server look through every table of the database. Raises kTableDamaged, naming the table.
void CheckTables(const database::SessionPtr& session, const std::string& database);

/// True when one of the database's tables has a row; false too when there is no such database.
bool HasRows(const database::SessionPtr& session, const std::string& database);

/// True when a path of this computer and one as a server here writes it lead to the same folder. Asks the
/// disk, and no server.
bool AreSameFolder(const std::string& path, const std::string& serverPath);

/// For as long as it lives the connection's requests may take the time that a large table needs.
class LongRequests {
public:
    explicit LongRequests(database::Connection& connection) : connection_(connection) {
        connection_.Limit(std::chrono::minutes(30));
    }
    ~LongRequests() { connection_.Limit(database::kStatementLimit); }
    LongRequests(const LongRequests&) = delete;
    LongRequests& operator=(const LongRequests&) = delete;

private:
    database::Connection& connection_;
};

} // namespace supervision
