#include "dbsetup/ServerLogins.h"

namespace dbsetup {

namespace {

std::string NameKey(const Database& database) {
    return std::string(database.name) + "name";
}

std::string PasswordKey(const Database& database) {
    return std::string(database.name) + "pass";
}

} // namespace

ServerLogin ReadLogin(const clsINI& kerno, const Database& database) {
    return {&database, kerno.INIProperty(NameKey(database)), kerno.INIProperty(PasswordKey(database))};
}

void WriteLogin(clsINI& kerno, const ServerLogin& login) {
    kerno.INIProperty(NameKey(*login.database), login.user);
    kerno.INIProperty(PasswordKey(*login.database), login.password);
}

void Grant(SetUpServer& server, const ServerLogin& login) {
    server.Execute("GRANT ALL PRIVILEGES ON " + std::string(login.database->name) + ".* TO " + login.user +
                   "@localhost IDENTIFIED BY '" + login.password + "';");
}

} // namespace dbsetup
