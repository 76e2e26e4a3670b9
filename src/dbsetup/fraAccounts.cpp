#include "dbsetup/fraAccounts.h"

#include "database/Error.h"
#include "dbsetup/LoginStatements.h"
#include "dbsetup/SetUpMessages.h"
#include "gui/Waiting.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"

namespace {

/// The server's numbers for a statement that it cannot read, and for a way to check passwords that it lacks.
constexpr long kSyntaxError = 1064;
constexpr long kNoSuchPlugin = 1524;
/// The way that clients of the game servers' time know.
constexpr const char* kOldWay = "mysql_native_password";

} // namespace

void fraAccounts::Form_Load() {
    txtAMGlobalPassword.Enter(cmdSetupAccounts);
    kerno_.INIPath(settings::KernoIniPath(modServerControl::KernoPath()));
    if (!modServerControl::KernoPath().empty())
        txtAccountCheck.Text("The accounts will be written to " + kerno_.INIPath());
    try {
        for (std::size_t i = 0; i < std::size(boxes_); ++i) {
            const auto login = suite::ReadLogin(kerno_, suite::Databases()[i]);
            boxes_[i].user.Text(login.user);
            boxes_[i].password.Text(login.password);
        }
    } catch (const RuntimeError& error) {
        // The other steps do without the file, and this one can write it anew.
        Tell(dbsetup::ErrorMessage(error), MB_ICONERROR, dbsetup::kErrorTitle);
    }
}

std::vector<dbsetup::ServerLogin> fraAccounts::Typed() const {
    std::vector<dbsetup::ServerLogin> logins;
    for (std::size_t i = 0; i < std::size(boxes_); ++i)
        logins.emplace_back(suite::Databases()[i],
                            suite::Login{boxes_[i].user.Text(), boxes_[i].password.Text()});
    return logins;
}

gui::Task<> fraAccounts::cmdSetupAccounts_Click() {
    const std::vector<dbsetup::ServerLogin> logins = Typed();
    const dbsetup::AdministratorLogin administrator = server_.Administrator();
    if (modServerControl::KernoPath().empty()) {
        co_await MsgBox(
            "The folder of the servers is not set, so there is no Kerno.ini to write the accounts to. "
            "Nothing has been changed.",
            MB_ICONERROR, dbsetup::kErrorTitle);
        co_return;
    }
    // Before any password is changed that could then not be told to the servers.
    dbsetup::RequireWritable(kerno_.INIPath());
    const std::string doubts = dbsetup::DoubtsAbout(logins, administrator);
    if (!doubts.empty()) {
        const int answer = co_await MsgBox(doubts + "\nContinue ?",
                                           MB_YESNO | MB_ICONEXCLAMATION | MB_DEFBUTTON2, dbsetup::kTitle);
        if (answer != IDYES)
            co_return;
    }
    const bool made = co_await MakeLogins(logins);
    if (!made)
        co_return;
    if (dbsetup::IsThisComputer(administrator.host)) {
        const gui::Waiting waiting(*this);
        for (const dbsetup::ServerLogin& login : logins)
            co_await dbsetup::TryLogin(administrator.host, login);
    }
    // Only when all three are good: the servers must not be told of a login that does not work.
    for (const auto& login : logins)
        dbsetup::WriteLogin(kerno_, login);
    co_await MsgBox("Kerno SQL accounts setup successful", MB_ICONINFORMATION, dbsetup::kTitle);
}

gui::Task<bool> fraAccounts::MakeLogins(std::vector<dbsetup::ServerLogin> logins) {
    std::optional<database::Error> rejection;
    dbsetup::ServerFacts facts;
    bool knowsOldWay = false;
    {
        const gui::Waiting waiting(*this);
        co_await server_.LogIn();
        try {
            for (const dbsetup::ServerLogin& login : logins)
                co_await dbsetup::Grant(server_, login);
            co_return true;
        } catch (const database::Error& error) {
            if (error.Number() != kSyntaxError)
                throw;
            rejection = error;
        }
        facts = co_await server_.Facts();
        knowsOldWay = co_await server_.HasPlugin(kOldWay);
    }
    if (dbsetup::GrantsMakeLogins(facts))
        throw database::Error(*rejection);
    co_await MsgBox(dbsetup::ErrorMessage(*rejection), MB_ICONERROR, dbsetup::kErrorTitle);
    const int create =
        co_await MsgBox("Servers of today make logins by CREATE USER and ALTER USER, and GRANT gives "
                        "them their rights only. Create the three logins in that way ?\n\nNo leaves "
                        "everything as it is now.",
                        MB_YESNO | MB_ICONQUESTION, dbsetup::kTitle);
    if (create != IDYES)
        co_return false;
    std::string plugin;
    if (knowsOldWay) {
        const int old =
            co_await MsgBox("Old clients, such as the game servers may have, know the old way of checking "
                            "passwords only (mysql_native_password). This server still has it. Use it "
                            "for the three logins ?",
                            MB_YESNO | MB_ICONQUESTION, dbsetup::kTitle);
        if (old == IDYES)
            plugin = kOldWay;
    }
    const bool old = co_await CreateLogins(logins, plugin);
    if (!old && !knowsOldWay)
        co_await MsgBox(
            "This server has no mysql_native_password any more. Game servers whose MySQL client is older "
            "than MySQL 8 cannot log in to it by any password; they need MariaDB, or MySQL 8.0 with "
            "that way of checking.",
            MB_ICONEXCLAMATION, dbsetup::kTitle);
    co_return true;
}

/// True when the passwords are checked by the plugin; where the server turns out to lack it, they are checked
/// in the server's own way.
gui::Task<bool> fraAccounts::CreateLogins(std::vector<dbsetup::ServerLogin> logins, std::string plugin) {
    const gui::Waiting waiting(*this);
    if (!plugin.empty()) {
        try {
            for (const dbsetup::ServerLogin& login : logins)
                co_await dbsetup::CreateLogin(server_, login, plugin);
            co_return true;
        } catch (const database::Error& error) {
            if (error.Number() != kNoSuchPlugin)
                throw;
        }
    }
    for (const dbsetup::ServerLogin& login : logins)
        co_await dbsetup::CreateLogin(server_, login, {});
    co_return false;
}

gui::Task<> fraAccounts::cmdCheckAccounts_Click() {
    const std::vector<dbsetup::ServerLogin> logins = Typed();
    const std::string host = server_.Administrator().host;
    const gui::Waiting waiting(*this);
    std::string results;
    for (const dbsetup::ServerLogin& login : logins) {
        std::string result = std::string(login.database->name) + ": logs in";
        try {
            co_await dbsetup::TryLogin(host, login);
        } catch (const database::Error& error) {
            if (error.Number() == database::kCancelled)
                throw;
            result = std::string(login.database->name) + ": " + error.Description();
        }
        results += result + "\r\n";
        txtAccountCheck.Text(results);
    }
}

void fraAccounts::cmdSuggestPasswords_Click() {
    for (const LoginBoxes& boxes : boxes_)
        boxes.password.Text(dbsetup::SuggestedPassword());
    chkShowPasswords.Value(1);
}

void fraAccounts::chkShowPasswords_Click() {
    for (const LoginBoxes& boxes : boxes_)
        boxes.password.Hidden(chkShowPasswords.Value() == 0);
}
