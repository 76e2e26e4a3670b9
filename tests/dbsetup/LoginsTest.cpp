#include "database/Error.h"
#include "dbsetup/LoginStatements.h"
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
            for (const std::string& statement : statements)
                root.Execute(statement);
            const char* user = statements.size() == 1 ? "kerno" : "o'kerno";
            database::Connection login;
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

} // namespace
