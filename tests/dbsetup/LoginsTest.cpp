#include "database/Error.h"
#include "dbsetup/LoginStatements.h"
#include "dbsetup/ServerCard.h"
#include "support/Database.h"

namespace {

using Statements = std::vector<std::string>;

class Logins : public support::DatabaseTest {};

TEST_F(Logins, EveryPasswordArrivesAsItWasTypedInBothForms) {
    EXPECT_EQ(dbsetup::GrantStatement("glogin", "kerno", "se.cret"),
              "GRANT ALL PRIVILEGES ON glogin.* TO kerno@localhost IDENTIFIED BY 'se.cret';");
    for (const char* password :
         {"pa\\ss", "o'clock", "x;y", "'' \"", "a\tb", "x' WITH GRANT OPTION;--", "\\"}) {
        const Statements forms[] = {{dbsetup::GrantStatement("glogin", "kerno", password)},
                                    dbsetup::CreateUserStatements("glogin", "o'kerno", password)};
        for (const Statements& statements : forms) {
            // MySQL of today refuses the old form, whatever the password.
            if (statements.size() == 1 && support::IsMySQL(root)) {
                EXPECT_EQ(support::ErrorNumber([&] { root.Execute(statements[0]); }), 1064) << statements[0];
                continue;
            }
            for (const std::string& statement : statements)
                root.Execute(statement);
            const char* user = statements.size() == 1 ? "kerno" : "o'kerno";
            support::Client login;
            EXPECT_NO_THROW(login.Open(database::MySQLConnectionString("localhost", user, password)))
                << statements[0];
            EXPECT_EQ(support::Rows(login, "SHOW GRANTS").size(), 2u) << "the database, and no more";
        }
    }
}

TEST(LoginStatements, PasswordsDoNotShowInTheServersWords) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"near 'b@localhost IDENTIFIED BY 'secret';' at", "secret",
         "near 'b@localhost IDENTIFIED BY '***';' at"},
        {"near 'IDENTIFIED BY 'o''cl", "o'clock", "near 'IDENTIFIED BY '***"},
        {"error near 'IDENTIFIED BY 'e'", "e", "error near 'IDENTIFIED BY '***'"},
        {"'secret' is refused", "secret", "'***' is refused"},
        {"IDENTIFIED BY ''", "", "IDENTIFIED BY ''"},
        {"IDENTIFIED BY 'other'", "secret", "IDENTIFIED BY 'other'"}};
    for (const auto& [words, password, expected] : cases)
        EXPECT_EQ(dbsetup::WithoutPassword(words, password), expected);
}

TEST(ServerCard, TellsWhatWorksOnEachKindOfServer) {
    using dbsetup::ServerFacts;
    const std::tuple<ServerFacts, const char*, const char*> cases[] = {
        {{"5.0.27-community", "MySQL Community", ""}, "MySQL", "yyy"},
        {{"5.7.44-log", "MySQL Community Server (GPL)", ""}, "MySQL", "nyy"},
        {{"8.0.36", "MySQL Community Server - GPL", ""}, "MySQL", "nnn"},
        {{"9.7.0", "Debian", "STRICT_TRANS_TABLES"}, "MySQL", "nnn"},
        {{"10.11.6-MariaDB-0+deb12u1", "Debian 12", ""}, "MariaDB", "nyy"},
        {{"11.8.2", "mariadb.org", ""}, "MariaDB", "nyy"}};
    for (const auto& [facts, product, works] : cases) {
        const std::string card = dbsetup::ServerCard(facts);
        EXPECT_TRUE(card.starts_with(product + (" " + facts.version))) << card;
        std::string found;
        for (const std::string& line : common::Split(card, '\n'))
            if (line.starts_with("Tables") || line.starts_with("Logins") || line.starts_with("Backups"))
                found += line[line.find(": ") + 2];
        EXPECT_EQ(found, works) << card;
    }
    const std::string missing =
        dbsetup::NoDriverCard({{"SQL Server", "a.dll"}, {"MySQL ODBC 8.0", "C:\\my.dll"}});
    EXPECT_NE(missing.find("\"Driver\"=\"C:\\\\my.dll\""), std::string::npos) << missing;
    EXPECT_EQ(dbsetup::Grouped(1204) + dbsetup::Grouped(999) + dbsetup::Grouped(1234567),
              "1,2049991,234,567");
}

} // namespace
