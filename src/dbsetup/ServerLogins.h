#pragma once

#include "dbsetup/SetUpServer.h"
#include "settings/clsINI.h"

namespace dbsetup {

/// The name and password by which a server of the suite logs in to one of the databases.
struct ServerLogin {
    const Database* database;
    std::string user;
    std::string password;
};

/// The login of `database` as Kerno.ini holds it, which is where the servers read it.
ServerLogin ReadLogin(const clsINI& kerno, const Database& database);
/// Raises the file error.
void WriteLogin(clsINI& kerno, const ServerLogin& login);

/// Makes the login, or gives it its new password, with all rights on its database, from this computer only.
/// Name and password become part of the statement as they are, so a quote in them is an error. Raises
/// database::Error.
void Grant(SetUpServer& server, const ServerLogin& login);

} // namespace dbsetup
