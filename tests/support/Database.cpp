#include "support/Database.h"

#include "database/Odbc.h"

#include <cstdlib>
#include <stdexcept>

namespace support {

namespace {

std::string ServerFolder(const std::string& host) {
    const char* servers = std::getenv("KTOOLS_MARIADB");
    if (!servers)
        throw std::runtime_error("no servers: run this by scripts/mariadb.sh run");
    const std::string address = host == kLocalServer ? "127.0.0.1" : host;
    return "Z:" + common::ReplaceAll(servers, "/", "\\") + "\\" + address;
}

bool Answers(const std::string& host) {
    try {
        Client().Open(RootConnection(host));
        return true;
    } catch (const database::Error&) {
        return false;
    }
}

} // namespace

std::string RootConnection(const std::string& host, const std::string& database) {
    return database::MySQLConnectionString(host, "root", "", database);
}

void Client::Open(const std::string& connectionString) {
    connectionString_ = connectionString;
    session_.reset();
    session_ = std::make_shared<database::odbc::Session>(connectionString, 10);
}

std::string DataFolder(const std::string& host) {
    return ServerFolder(host) + "\\data";
}

std::vector<std::string> Rows(Client& connection, const std::string& sql) {
    const database::Answer all = database::ReadAll(connection.Session(), sql);
    std::vector<std::string> rows(all.Count());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t column = 0; column < all.columns.size(); ++column) {
            const database::Value value = all.At(row, column);
            rows[row] += (column == 0 ? "" : "|") + (value.IsNull() ? "NULL" : value.AsText());
        }
    }
    return rows;
}

bool IsMySQL(Client& connection) {
    return Rows(connection, "SELECT VERSION()")[0].find("MariaDB") == std::string::npos;
}

void MakeLogin(Client& connection, const std::string& login, const std::string& password,
               const std::string& rights) {
    const std::string escaped = common::ReplaceAll(common::ReplaceAll(password, "\\", "\\\\"), "'", "''");
    connection.Execute("CREATE USER IF NOT EXISTS " + login);
    connection.Execute("ALTER USER " + login + " IDENTIFIED BY '" + escaped + "'");
    connection.Execute("GRANT " + rights + " TO " + login);
}

std::string Numbers(int first, int last) {
    std::string sum = std::to_string(first);
    std::string digits;
    int unit = 1;
    for (int place = 0; unit <= last - first; ++place, unit *= 10) {
        const std::string digit = "d" + std::to_string(place);
        sum += " + " + std::to_string(unit) + " * " + digit + ".n";
        digits += (place == 0 ? "" : " CROSS JOIN ") + ("(SELECT 0 AS n UNION SELECT 1 UNION SELECT 2 UNION "
                                                        "SELECT 3 UNION SELECT 4 UNION SELECT 5 UNION "
                                                        "SELECT 6 UNION SELECT 7 UNION SELECT 8 UNION "
                                                        "SELECT 9) AS " +
                                                        digit);
    }
    return "(SELECT " + sum + " AS seq FROM " + digits + " HAVING seq <= " + std::to_string(last) +
           " ORDER BY seq) AS numbers";
}

std::string Checksum(Client& connection, const std::string& database, const std::string& table) {
    std::string row;
    for (const std::string& column :
         Rows(connection,
              "SELECT CONCAT('IFNULL(', IF(DATA_TYPE REGEXP 'char|text|enum|set', CONCAT('HEX(CONVERT(`', "
              "COLUMN_NAME, '` USING utf8mb4))'), IF(DATA_TYPE REGEXP 'blob|binary|bit', CONCAT('HEX(`', "
              "COLUMN_NAME, '`)'), CONCAT('CAST(`', COLUMN_NAME, '` AS CHAR)'))), ',\\'null\\')') "
              "FROM information_schema.columns WHERE TABLE_SCHEMA = '" +
                  database + "' AND TABLE_NAME = '" + table + "' ORDER BY ORDINAL_POSITION"))
        row += "," + column;
    const std::string sum = "CRC32(CONCAT_WS('|'" + row + "))";
    return Rows(connection, "SELECT COUNT(*), BIT_XOR(" + sum + "), SUM(" + sum + ") FROM " + database +
                                ".`" + table + "`")[0];
}

std::vector<std::string> Checksums(Client& connection, const std::string& database) {
    std::vector<std::string> sums;
    for (const std::string& table : Rows(connection, "SHOW TABLES FROM " + database))
        sums.push_back(table + " " + Checksum(connection, database, table));
    return sums;
}

void Clean(Client& connection) {
    for (const std::string& name : Rows(connection, "SHOW DATABASES")) {
        if (name != "mysql" && name != "sys" && !name.ends_with("_schema"))
            connection.Execute("DROP DATABASE " + database::Quoted(name));
    }
    for (const std::string& user :
         Rows(connection, "SELECT CONCAT('`', User, '`@`', Host, '`') FROM mysql.user "
                          "WHERE User NOT IN ('root', '', 'mariadb.sys') AND User NOT LIKE 'mysql.%'"))
        connection.Execute("DROP USER " + user);
}

void HoldServer(const std::string& host) {
    const std::string folder = ServerFolder(host);
    WriteFile(folder + "\\hold", "");
    WriteFile(folder + "\\kill", "");
    // The killer removes its order when it is done.
    if (!WaitUntil([&] { return !common::FileExists(folder + "\\kill"); }))
        throw std::runtime_error("the server was not killed");
}

void LetServerStart(const std::string& host) {
    DeleteFileA((ServerFolder(host) + "\\hold").c_str());
    WaitUntil([&] { return Answers(host); });
}

ServerPaused::ServerPaused(const std::string& host) : order_(ServerFolder(host) + "\\pause") {
    WriteFile(order_, "");
    if (!WaitUntil([this] { return common::FileExists(order_ + "d"); }))
        throw std::runtime_error("the server was not stopped");
}

ServerPaused::~ServerPaused() {
    DeleteFileA(order_.c_str());
    WaitUntil([this] { return !common::FileExists(order_ + "d"); });
}

Databases::Databases() {
    root.Open(RootConnection());
    remote.Open(RootConnection(kRemoteServer));
    Clean(root);
    Clean(remote);
}

} // namespace support
