#include "dbsetup/ServerCard.h"

#include "common/Text.h"

#include <algorithm>
#include <cstdlib>

namespace dbsetup {

namespace {

constexpr const char* kLineEnd = "\r\n";

/// The first two numbers of the version, as one: 8.0 is 800.
int VersionNumber(const ServerFacts& facts) {
    char* end = nullptr;
    const long major = std::strtol(facts.version.c_str(), &end, 10);
    const long minor = *end == '.' ? std::strtol(end + 1, nullptr, 10) : 0;
    return static_cast<int>(major * 100 + minor);
}

std::string Line(const char* what, bool works, const char* remedy) {
    return std::string(what) + (works ? ": yes" : std::string(": no. ") + remedy) + kLineEnd;
}

bool MaySpeakMySQL(const database::Driver& driver) {
    return common::ContainsIgnoreCase(driver.name, "mysql") ||
           common::ContainsIgnoreCase(driver.name, "mariadb");
}

} // namespace

bool IsMariaDB(const ServerFacts& facts) {
    return common::ContainsIgnoreCase(facts.version + facts.comment, "MariaDB");
}

bool TakesTypeClause(const ServerFacts& facts) {
    return VersionNumber(facts) < 505;
}

bool GrantsMakeLogins(const ServerFacts& facts) {
    return IsMariaDB(facts) || VersionNumber(facts) < 800;
}

bool FilesAreWholeTables(const ServerFacts& facts) {
    return IsMariaDB(facts) || VersionNumber(facts) < 800;
}

std::string ServerCard(const ServerFacts& facts) {
    return (IsMariaDB(facts) ? "MariaDB " : "MySQL ") + facts.version + ", " + facts.comment + kLineEnd +
           "sql_mode: " + (facts.sqlMode.empty() ? "none" : facts.sqlMode) + kLineEnd +
           Line("Tables made with TYPE=MyISAM", TakesTypeClause(facts),
                "Answer Yes in Step 3 when you are asked for ENGINE=MyISAM.") +
           Line("Logins made by GRANT", GrantsMakeLogins(facts),
                "Answer Yes in Step 4 when you are asked for CREATE USER.") +
           Line("Backups of table files", FilesAreWholeTables(facts),
                "This server keeps a part of every table elsewhere: use the remote backup.");
}

std::string WantsNameCard() {
    return "MySQL answers, and wants a name and a password. That is usual today: go on with Step 2.\r\n";
}

std::string NoDriverCard(const std::vector<database::Driver>& drivers) {
    std::string text =
        std::string("The ODBC driver \"MySQL ODBC 3.51 Driver\" is not installed for this kTools (") +
        (sizeof(void*) == 8 ? "64" : "32") + "-bit)." + kLineEnd + "Installed drivers:" + kLineEnd;
    for (const database::Driver& driver : drivers)
        text += "  " + driver.name + kLineEnd;
    if (drivers.empty())
        text += std::string("  none") + kLineEnd;
    const auto found = std::ranges::find_if(drivers, MaySpeakMySQL);
    if (found == drivers.end())
        return text + "Install MySQL's or MariaDB's ODBC driver, then test again." + kLineEnd;
    constexpr const char* kDrivers = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\ODBC\\ODBCINST.INI\\";
    return text +
           "These lines, saved as a .reg file and opened, give the first of them that will do the name:" +
           kLineEnd + kLineEnd + "Windows Registry Editor Version 5.00" + kLineEnd + kLineEnd + kDrivers +
           "ODBC Drivers]" + kLineEnd + "\"MySQL ODBC 3.51 Driver\"=\"Installed\"" + kLineEnd + kLineEnd +
           kDrivers + "MySQL ODBC 3.51 Driver]" + kLineEnd + "\"Driver\"=\"" +
           common::ReplaceAll(found->library, "\\", "\\\\") + "\"" + kLineEnd;
}

std::string Grouped(long long number) {
    std::string digits = std::to_string(number);
    for (auto at = static_cast<std::ptrdiff_t>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<std::size_t>(at), ",");
    return digits;
}

} // namespace dbsetup
