#pragma once

#include "dbsetup/SetUpServer.h"
#include "settings/clsINI.h"

namespace dbsetup {

/// A login together with the database that it is for.
struct ServerLogin : suite::Login {
    ServerLogin(const suite::Database& of, suite::Login login) : Login(std::move(login)), database(&of) {}

    const suite::Database* database;
};

/// Writes the login to Kerno.ini, which is where the servers read it. Raises the file error.
void WriteLogin(clsINI& kerno, const ServerLogin& login);

/// Makes the login, or gives it its new password, with all rights on its database, from this computer only.
/// Raises database::Error, in whose text *** stands for the password.
void Grant(SetUpServer& server, const ServerLogin& login);

} // namespace dbsetup
