#include "dbsetup/ServerLogins.h"

namespace dbsetup {

void WriteLogin(clsINI& kerno, const ServerLogin& login) {
    kerno.INIProperty(login.database->userKey, login.user);
    kerno.INIProperty(login.database->passwordKey, login.password);
}

void Grant(SetUpServer& server, const ServerLogin& login) {
    server.Execute("GRANT ALL PRIVILEGES ON " + std::string(login.database->name) + ".* TO " + login.user +
                   "@localhost IDENTIFIED BY '" + login.password + "';");
}

} // namespace dbsetup
