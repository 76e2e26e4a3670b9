#include "dbsetup/ServerLogins.h"

#include "common/Files.h"
#include "common/Text.h"
#include "database/Error.h"
#include "dbsetup/LoginStatements.h"
#include "servers/Databases.h"

#include <algorithm>
#include <random>

namespace dbsetup {

namespace {

gui::Task<> Send(SetUpServer& server, std::string statement, std::string password) {
    try {
        co_await server.Execute(std::move(statement));
    } catch (const database::Error& error) {
        throw database::Error(error.Number(), WithoutPassword(error.Description(), password),
                              error.SqlState());
    }
}

} // namespace

std::string DoubtsAbout(const std::vector<ServerLogin>& logins, const AdministratorLogin& administrator) {
    std::vector<std::string> doubts;
    for (const ServerLogin& login : logins) {
        if (login.user == administrator.user)
            doubts.push_back(
                "\"" + login.user +
                "\" is the administrator's own login: its password will be replaced by the one typed here.");
        if (login.password.empty())
            doubts.push_back("The password of \"" + login.user +
                             "\" is empty: whoever uses this computer can log in by it.");
    }
    std::string text;
    for (auto at = doubts.begin(); at != doubts.end(); ++at)
        if (std::find(doubts.begin(), at, *at) == at)
            text += *at + "\n";
    return text;
}

bool IsThisComputer(const std::string& host) {
    char own[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD length = sizeof own;
    GetComputerNameA(own, &length);
    return host.empty() || host == "127.0.0.1" || host == "::1" || host == "." ||
           common::EqualsIgnoreCase(host, suite::kThisComputer) || common::EqualsIgnoreCase(host, own);
}

void WriteLogin(clsINI& kerno, const ServerLogin& login) {
    kerno.INIProperty(login.database->userKey, login.user);
    kerno.INIProperty(login.database->passwordKey, login.password);
}

void RequireWritable(const std::string& kernoIni) {
    // A missing file can be made where its folder is.
    if (common::FileExists(kernoIni))
        common::ReplaceFileText(kernoIni, common::ReadFileText(kernoIni));
    else if (const auto end = kernoIni.rfind('\\'); !common::FolderExists(kernoIni.substr(0, end)))
        common::RaiseFileError(ERROR_PATH_NOT_FOUND, kernoIni);
}

gui::Task<> Grant(SetUpServer& server, ServerLogin login) {
    co_await Send(server, GrantStatement(login.database->name, login.user, login.password), login.password);
}

gui::Task<> CreateLogin(SetUpServer& server, ServerLogin login, std::string plugin) {
    const auto statements = CreateUserStatements(login.database->name, login.user, login.password, plugin);
    for (const std::string& statement : statements)
        co_await Send(server, statement, login.password);
}

gui::Task<> TryLogin(std::string host, ServerLogin login) {
    database::Connection connection;
    try {
        co_await connection.Open(
            database::MySQLConnectionString(host, login.user, login.password, login.database->name));
    } catch (const database::Error& error) {
        throw database::Error(error.Number(),
                              "The login \"" + login.user + "\" for " + std::string(login.database->name) +
                                  " does not work: " + WithoutPassword(error.Description(), login.password),
                              error.SqlState());
    }
}

std::string SuggestedPassword() {
    // Without those that look alike.
    constexpr std::string_view kLetters = "abcdefghijkmnopqrstuvwxyzABCDEFGHJKLMNPQRSTUVWXYZ23456789";
    std::random_device random;
    std::uniform_int_distribution<std::size_t> letter(0, kLetters.size() - 1);
    std::string password(16, ' ');
    std::ranges::generate(password, [&] { return kLetters[letter(random)]; });
    return password;
}

} // namespace dbsetup
