#include "dbsetup/ServerLogins.h"

#include "database/Error.h"
#include "dbsetup/LoginStatements.h"

namespace dbsetup {

void WriteLogin(clsINI& kerno, const ServerLogin& login) {
    kerno.INIProperty(login.database->userKey, login.user);
    kerno.INIProperty(login.database->passwordKey, login.password);
}

void Grant(SetUpServer& server, const ServerLogin& login) {
    try {
        server.Execute(GrantStatement(login.database->name, login.user, login.password));
    } catch (const database::Error& error) {
        throw database::Error(error.Number(), WithoutPassword(error.Description(), login.password),
                              error.SqlState());
    }
}

} // namespace dbsetup
