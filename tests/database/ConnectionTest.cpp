#include "database/Connection.h"
#include "database/Blocks.h"
#include "database/Error.h"
#include "database/Odbc.h"
#include "support/Database.h"

namespace {

using namespace database;

class ConnectionTest : public support::DatabaseTest {};

void Open(Connection& connection, const std::string& string) {
    support::Run(connection.Open(string));
}

/// The error that `operation` raises; number 0 when it raises none.
Error ErrorOf(const auto& operation) {
    try {
        operation();
    } catch (const Error& error) {
        return error;
    }
    return Error(0, "");
}

TEST_F(ConnectionTest, ErrorsCarryTheServersNumberStateAndText) {
    Connection other;
    const std::tuple<std::string, long, const char*, const char*> logins[] = {
        {MySQLConnectionString("localhost", "root", "wrong"), 1045, "28000", "Access denied for user 'root'"},
        {MySQLConnectionString("127.0.0.9", "root", ""), 2002, "HY000", "127.0.0.9"}};
    for (const auto& [connection, number, state, text] : logins) {
        const Error error = ErrorOf([&] { Open(other, connection); });
        EXPECT_EQ(error.Number(), number) << error.Description();
        EXPECT_EQ(error.SqlState(), state);
        EXPECT_NE(error.Description().find(text), std::string::npos) << error.Description();
        EXPECT_NE(error.Description().front(), '[');
        EXPECT_TRUE(error.Description().ends_with(std::string(" (SQLDriverConnect, ") + state + ")"))
            << error.Description();
    }
    // Newer Wines say nothing of a driver that is missing, and the words are our own.
    const Error missing = ErrorOf([&] { Open(other, "DRIVER={No Such Driver};SERVER=localhost"); });
    EXPECT_TRUE(missing.DriverMissing()) << missing.SqlState();
    for (const char* text : {"No Such Driver", " (SQLDriverConnect, "})
        EXPECT_NE(missing.Description().find(text), std::string::npos) << missing.Description();
    const auto silent = [this] { odbc::Statement(root.Session()).Fail(SQL_ERROR, "SQLFetch"); };
    EXPECT_EQ(ErrorOf(silent).Description(),
              "The driver reports an error without saying which. (SQLFetch, return code -1)");
    EXPECT_EQ(ErrorOf([&] { root.Execute("CREATE TABLE test.t (a int) TYPE=MyISAM"); }).Number(), 1064);
    EXPECT_EQ(ErrorOf([&] { support::Run(other.Execute("SELECT 1")); }).Number(), kObjectClosed);
}

TEST_F(ConnectionTest, ValuesOfConnectionStringsMayHoldAnything) {
    const auto braced = [](const std::string& value) { return ConnectionValue(value) == "{" + value + "}"; };
    for (const char* value : {";", "a;b", "{a", " a", "a "})
        EXPECT_TRUE(braced(value)) << value;
    root.Execute("CREATE DATABASE glogin");
    for (const char* password :
         {"a;b", "{a", "a=b", "x'\"\\", "k\xF6nig", "a}b;c", "p@ss!", "(a)", "[b]?*", "a b"}) {
        EXPECT_TRUE(password == ConnectionValue(password) || common::ContainsIgnoreCase(password, ";") ||
                    *password == '{')
            << password;
        support::MakeLogin(root, "friend@localhost", password, "ALL ON glogin.*");
        Connection other;
        Open(other, MySQLConnectionString("localhost", "friend", password, "glogin"));
        EXPECT_EQ(support::Run(other.Scalar("SELECT DATABASE()")), Value("glogin"));
    }
}

TEST_F(ConnectionTest, LogsInWithoutUserAndOutlivesARestart) {
    Connection anonymous;
    Open(anonymous, "DRIVER={MySQL ODBC 3.51 Driver};SERVER=localhost;OPTION=3");
    {
        support::ServerDown down;
        EXPECT_TRUE(ErrorOf([&] { support::Run(anonymous.Execute("SELECT 1")); }).ConnectionLost());
        EXPECT_TRUE(ErrorOf([&] { support::Run(anonymous.Revive()); }).ConnectionLost());
    }
    support::Run(anonymous.Revive());
    EXPECT_EQ(support::Run(anonymous.Execute("SELECT 1")), 1);
}

// Drivers have locked themselves up over this, with all connections of the program.
TEST_F(ConnectionTest, AReaderThatEndsAsideDoesNotMeetTheNextCall) {
    Connection connection;
    Open(connection, support::RootConnection());
    for (int i = 0; i < 5000; ++i) {
        {
            BlockReader reader(connection);
            support::Run(reader.Open("SELECT 1"));
        }
        ASSERT_EQ(support::Run(connection.Scalar("SELECT 2")), Value(2)) << i;
    }
}

} // namespace
