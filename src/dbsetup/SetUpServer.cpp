#include "dbsetup/SetUpServer.h"

namespace dbsetup {

std::string SetUpServer::Version() {
    Connect("DRIVER={MySQL ODBC 3.51 Driver};SERVER=localhost;OPTION=3");
    records_.Open(connection_, "SELECT VERSION();");
    return records_.Eof() ? std::string() : records_.Field(0).AsText();
}

void SetUpServer::LogIn() {
    const AdministratorLogin login = administrator_();
    Connect(database::MySQLConnectionString(login.host, login.user, login.password));
}

NameSet SetUpServer::ExistingDatabases() {
    return Names("SHOW DATABASES;");
}

NameSet SetUpServer::ExistingTables(const suite::Database& database) {
    return Names("SHOW TABLES FROM " + std::string(database.name) + ";");
}

void SetUpServer::Close() {
    records_.Close();
    connection_.Close();
}

void SetUpServer::Connect(const std::string& connectionString) {
    Close();
    connection_.Open(connectionString);
}

NameSet SetUpServer::Names(const std::string& sql) {
    NameSet names;
    for (records_.Open(connection_, sql); !records_.Eof(); records_.MoveNext())
        names.insert(records_.Field(0).AsText());
    return names;
}

} // namespace dbsetup
