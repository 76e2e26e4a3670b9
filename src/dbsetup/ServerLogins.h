#pragma once

#include "dbsetup/SetUpServer.h"
#include "settings/clsINI.h"

#include <vector>

namespace dbsetup {

/// A login together with the database that it is for.
struct ServerLogin : suite::Login {
    ServerLogin(const suite::Database& of, suite::Login login) : Login(std::move(login)), database(&of) {}

    const suite::Database* database;
};

/// What is asked before the logins are set up; "" when nothing has to be.
std::string DoubtsAbout(const std::vector<ServerLogin>& logins, const AdministratorLogin& administrator);

/// True when `host` is this computer, the only one from which the logins work.
bool IsThisComputer(const std::string& host);

/// Writes the login to Kerno.ini, which is where the servers read it. Raises the file error.
void WriteLogin(clsINI& kerno, const ServerLogin& login);
/// Raises the file error that writing to Kerno.ini would; the file stays as it is.
void RequireWritable(const std::string& kernoIni);

/// Makes the login, or gives it its new password, with all rights on its database, from this computer only.
/// Raises database::Error, in whose text *** stands for the password.
gui::Task<> Grant(SetUpServer& server, ServerLogin login);
/// The same on servers that do not make logins by granting. `plugin` as CreateUserStatements has it.
gui::Task<> CreateLogin(SetUpServer& server, ServerLogin login, std::string plugin);
/// Logs in as the game servers will and out again. Raises database::Error, which names the login.
gui::Task<> TryLogin(std::string host, ServerLogin login);

/// A password that nobody guesses: 16 letters and digits.
std::string SuggestedPassword();

} // namespace dbsetup
