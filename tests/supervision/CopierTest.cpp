#include "supervision/clsMySQLCopyDatabase.h"
#include "support/Database.h"
#include "support/Wait.h"

namespace {

using support::Checksums;
using support::Rows;

constexpr long kDuplicateEntry = 1062;
constexpr long kMultiplePrimaryKey = 1068;

/// A copier from the local server to the remote one, and the events it raised.
class Copier : public support::DatabaseTest {
protected:
    Copier() {
        copier.SourceHostname(support::kLocalServer);
        copier.SourceUsername("root");
        copier.DestinationHostname(support::kRemoteServer);
        copier.DestinationUsername("root");
        copier.SQLCopyError = [this](long number, const std::string& description) {
            events += std::to_string(number) + " " + description + "\n";
        };
        root.Execute("CREATE DATABASE glogin");
        root.Execute("USE glogin");
        root.Execute("SET sql_mode = 'NO_AUTO_VALUE_ON_ZERO'");
    }
    void Connect() {
        support::Run(copier.ConnectSource());
        support::Run(copier.ConnectDestination());
    }

    gui::Task<> Copy() { co_await copier.CopyDatabase("glogin", "bk"); }

    clsMySQLCopyDatabase copier;
    std::string events;
};

TEST_F(Copier, EveryValueArrives) {
    root.Execute("CREATE TABLE glogin.numbers (AID int(6) unsigned NOT NULL auto_increment PRIMARY KEY, "
                 "big bigint unsigned, d decimal(30,10), t time, dt datetime(6), b bit(9), s set('x','y'))");
    root.Execute("INSERT INTO glogin.numbers VALUES (0,18446744073709551615,0.1,'-838:59:59',0,1,'x,y'),"
                 "(4294967295,0,-12345678901234567890.5,NULL,'2004-02-29 23:59:58.000123',0,'')");
    root.Execute("SET sql_mode = 'ALLOW_INVALID_DATES'");
    root.Execute("CREATE TABLE glogin.dates (d date)");
    root.Execute("INSERT INTO glogin.dates VALUES ('2004-02-31')");
    root.Execute("CREATE TABLE glogin.texts (id int NOT NULL, v varchar(60), b blob, l longtext)");
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes.push_back(static_cast<char>(i));
    // Letters that no single code page has together, one of them beyond 16 bits; and more rows than a block.
    database::RowReader(root.Session(),
                        "INSERT INTO glogin.texts SELECT seq, IF(seq % 3, CONVERT(0xE697A5D0AFC3A9F09F9880 "
                        "USING utf8mb4), NULL), IF(seq % 5, REPEAT(?, seq % 200), NULL), "
                        "IF(seq = 7, REPEAT('é', 100000), '''\"\\\\%') FROM " +
                            support::Numbers(0, 2500),
                        {database::Bytes{bytes}});
    root.Execute("CREATE TABLE glogin.nothing (id int)");
    Connect();
    EXPECT_EQ(support::Run(copier.CopyDatabase("glogin", "bk_glogin")), 1);
    EXPECT_EQ(Checksums(remote, "bk_glogin").size(), 4u);
    EXPECT_EQ(Checksums(remote, "bk_glogin"), Checksums(root, "glogin"));
    EXPECT_TRUE(events.empty());
}

TEST_F(Copier, TablesAreMadeFromWhatTheServerTells) {
    using supervision::ColumnList;
    EXPECT_EQ(ColumnList({{"AID", "int(6) unsigned", "NO", "PRI", {}, "auto_increment"},
                          {"a", "int(1)", "Yes", "", "0", ""},
                          {"c", "text", "", "UNI", {}, ""}}),
              "`AID` int(6) unsigned NOT NULL auto_increment PRIMARY KEY,`a` int(1) NULL ,"
              "`c` text NOT NULL ");
    root.Execute("CREATE TABLE glogin.one (a int NOT NULL default 5 PRIMARY KEY, `b c` int default 6)");
    root.Execute("ALTER TABLE glogin.one ENGINE = MyISAM");
    root.Execute("CREATE VIEW glogin.seen AS SELECT a FROM glogin.one");
    root.Execute("CREATE TABLE glogin.two (a int, b int, PRIMARY KEY (a, b))");
    Connect();
    // The tables before the one that is rejected stay.
    EXPECT_EQ(support::ErrorNumber([&] { support::Run(copier.CopyDatabase("glogin", "bk")); }),
              kMultiplePrimaryKey);
    EXPECT_EQ(support::Run(copier.GetDestinationTableList("bk")), (std::vector<std::string>{"one", "seen"}));
    EXPECT_EQ(Rows(remote, "SELECT ENGINE FROM information_schema.tables WHERE TABLE_SCHEMA = 'bk' "
                           "ORDER BY TABLE_NAME"),
              (std::vector<std::string>{"MyISAM", "InnoDB"}));
    const auto columns = support::Run(copier.GetDestinationColumnList("bk", "one"));
    // MySQL tells no display widths any more.
    const std::string integer = support::IsMySQL(remote) ? "int" : "int(11)";
    EXPECT_EQ(ColumnList(columns), "`a` " + integer + " NOT NULL  PRIMARY KEY,`b c` " + integer + " NULL ");
    EXPECT_EQ(columns.at(0).defaultValue, std::nullopt);
}

TEST_F(Copier, AddsToATableThatIsKept) {
    root.Execute("CREATE TABLE glogin.t (a int, b int)");
    root.Execute("INSERT INTO glogin.t VALUES (1, 2)");
    remote.Execute("CREATE DATABASE bk");
    // By position, whatever the names; what is left over gets its default.
    remote.Execute("CREATE TABLE bk.t (b int, x int, more int default 9)");
    remote.Execute("CREATE TABLE bk.narrow (a int)");
    Connect();
    EXPECT_EQ(support::Run(copier.CopyTable("glogin", "t", "bk", "t", true)), 1);
    EXPECT_EQ(support::Run(copier.CopyTable("glogin", "t", "bk", "t", true, true)), 1);
    EXPECT_EQ(Rows(remote, "SELECT * FROM bk.t"), (std::vector<std::string>{"1|2|9", "1|2|9"}));
    EXPECT_EQ(
        support::ErrorNumber([&] { support::Run(copier.CopyTable("glogin", "t", "bk", "narrow", true)); }),
        database::kItemNotFound);
    EXPECT_EQ(support::Run(copier.CopyDatabase("glogin", "bk", true)), 1);
    EXPECT_EQ(Rows(remote, "SELECT * FROM bk.t"), std::vector<std::string>{"1|2"});
    EXPECT_EQ(support::Run(copier.GetDestinationTableList("bk")), (std::vector<std::string>{"narrow", "t"}));
}

TEST_F(Copier, ARefusedRowLeavesBothConnectionsUsable) {
    root.Execute("CREATE TABLE glogin.t (id int)");
    root.Execute("INSERT INTO glogin.t SELECT seq FROM " + support::Numbers(1, 5000));
    remote.Execute("CREATE DATABASE bk");
    remote.Execute("CREATE TABLE bk.t (id int PRIMARY KEY) SELECT 2500 AS id");
    Connect();
    EXPECT_EQ(support::ErrorNumber([&] { support::Run(copier.CopyTable("glogin", "t", "bk", "t", true)); }),
              kDuplicateEntry);
    EXPECT_EQ(support::Run(copier.CopyTable("glogin", "t", "bk", "t")), 1);
    EXPECT_EQ(Rows(remote, "SELECT COUNT(*) FROM bk.t")[0], "5000");
    EXPECT_EQ(events, "");
}

TEST_F(Copier, TellsWhichConnectionIsMissing) {
    EXPECT_TRUE(support::Run(copier.GetSourceColumnList("mysql", "user")).empty());
    EXPECT_TRUE(support::Run(copier.GetDestinationTableList("mysql")).empty());
    EXPECT_EQ(support::Run(copier.CopyTable("glogin", "t", "bk", "t")), 0);
    support::Run(copier.ConnectSource());
    EXPECT_EQ(support::Run(copier.CopyDatabase("glogin", "bk")), 0);
    std::string said;
    for (const char* missing :
         {"source", "destination", "both source and destination", "both source and destination"})
        said += "12345 Not connected to " + std::string(missing) + " MySQL server\n";
    EXPECT_EQ(events, said);
}

TEST_F(Copier, ACopyThatWasEndedInTheMiddleIsMadeAnew) {
    root.Execute("CREATE TABLE glogin.t (id int NOT NULL, b blob)");
    root.Execute("INSERT INTO glogin.t SELECT seq, REPEAT('x', 500) FROM " + support::Numbers(1, 20000));
    const auto before = Checksums(root, "glogin");
    Connect();
    {
        gui::Tasks ended;
        copier.CopyProgress = [&](const std::string&, std::size_t rows) {
            if (rows >= 2000)
                ended.Cancel();
        };
        ended.Start(Copy());
        EXPECT_TRUE(support::WaitUntil([&] { return !ended.Any(); }));
    }
    copier.CopyProgress = {};
    Connect();
    EXPECT_EQ(Rows(remote, "SELECT COUNT(*) FROM bk.t")[0], "0");
    EXPECT_EQ(support::Run(copier.CopyDatabase("glogin", "bk")), 1);
    EXPECT_EQ(Checksums(remote, "bk"), before);
}

TEST_F(Copier, CharacterSetsSurviveAServerWithAnotherDefault) {
    const std::string server = Rows(remote, "SELECT @@GLOBAL.collation_server")[0];
    const std::string japan = "\xE6\x97\xA5\xE6\x9C\xAC";
    const std::string e = "\xC3\xA9";
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"latin1_bin", "utf8mb4_general_ci", e},   {"utf8mb4_bin", "latin1_swedish_ci", japan},
        {"utf8mb4_bin", "cp932_japanese_ci", e},   {"cp932_bin", "utf8mb4_general_ci", japan},
        {"cp932_bin", "latin1_swedish_ci", japan}, {"latin1_bin", "cp932_japanese_ci", e}};
    for (const auto& [source, destination, text] : cases) {
        remote.Execute("SET GLOBAL collation_server = " + destination);
        root.Execute("DROP DATABASE glogin");
        root.Execute("CREATE DATABASE glogin COLLATE " + source);
        const auto run = [&](const std::string& sql) {
            database::Execute(root.Session(), sql, database::TextForm::Utf8);
        };
        // Names that only letter case tells apart.
        run("CREATE TABLE glogin.t (name varchar(20) NOT NULL PRIMARY KEY, e enum('" + text + "','x'))");
        run("INSERT INTO glogin.t VALUES ('a', 'x'), ('A', '" + text + "'), ('" + text + "', NULL)");
        run("CREATE TABLE glogin.other (e enum('" + japan + "')) COLLATE utf8mb4_bin");
        run("INSERT INTO glogin.other VALUES ('" + japan + "')");
        Connect();
        EXPECT_EQ(support::Run(copier.CopyDatabase("glogin", "bk_glogin")), 1)
            << source << ' ' << destination;
        EXPECT_EQ(Checksums(remote, "bk_glogin"), Checksums(root, "glogin")) << source << ' ' << destination;
        EXPECT_EQ(supervision::Differences(copier.Copied(), support::Run(copier.ReadBack("bk_glogin"))), "");
        EXPECT_EQ(Rows(remote, "SELECT HEX(name), HEX(e) FROM bk_glogin.t ORDER BY name"),
                  Rows(root, "SELECT HEX(name), HEX(e) FROM glogin.t ORDER BY name"));
    }
    remote.Execute("SET GLOBAL collation_server = " + server);
}

TEST_F(Copier, AnythingElseAtTheDestinationIsFound) {
    root.Execute("CREATE TABLE glogin.t (id int NOT NULL PRIMARY KEY, b blob, r double, n varchar(9))");
    root.Execute("INSERT INTO glogin.t SELECT seq, REPEAT('x', 500), seq / 7e0, NULL FROM " +
                 support::Numbers(1, 3000));
    root.Execute("CREATE TABLE glogin.twice (id int)");
    root.Execute("INSERT INTO glogin.twice VALUES (1), (1), (2)");
    Connect();
    support::Run(copier.CopyDatabase("glogin", "bk"));
    const auto differences = [&] {
        return supervision::Differences(copier.Copied(), support::Run(copier.ReadBack("bk")));
    };
    EXPECT_EQ(differences(), "");
    remote.Execute("ALTER TABLE bk.t ORDER BY id DESC");
    EXPECT_EQ(differences(), "");
    const std::pair<const char*, const char*> cases[] = {
        {"UPDATE bk.t SET b = INSERT(b, 77, 1, 'y') WHERE id = 1500", "t (other values)"},
        {"UPDATE bk.t SET b = REPEAT('x', 500), n = '' WHERE id = 1500", "t (other values)"},
        {"UPDATE bk.t SET n = NULL, r = r + 1e-9 WHERE id = 1500", "t (other values)"},
        {"UPDATE bk.t SET r = 1500 / 7e0 WHERE id = 1500", ""},
        {"DELETE FROM bk.t WHERE id = 1", "t (2,999 of 3,000 rows)"},
        {"UPDATE bk.twice SET id = 2", "t (2,999 of 3,000 rows), twice (other values)"},
        {"DROP TABLE bk.t", "t (missing), twice (other values)"},
        {"CREATE TABLE bk.more (id int)", "t (missing), twice (other values), more (not in the source)"}};
    for (const auto& [statement, found] : cases) {
        remote.Execute(statement);
        EXPECT_EQ(differences(), found) << statement;
    }
}

TEST_F(Copier, EnginesThatKeepNoRowsBecomeOnesThatDo) {
    root.Execute("CREATE TABLE glogin.mine (a int) ENGINE=MyISAM");
    root.Execute("CREATE TABLE glogin.gone (a int) ENGINE=MEMORY");
    root.Execute("CREATE TABLE glogin.both (a int) ENGINE=MERGE UNION=(glogin.mine)");
    for (const char* table : {"mine", "gone"})
        root.Execute("INSERT INTO glogin." + std::string(table) + " VALUES (7)");
    Connect();
    EXPECT_EQ(support::Run(copier.CopyDatabase("glogin", "bk")), 1);
    EXPECT_EQ(Rows(remote,
                   "SELECT TABLE_NAME, ENGINE FROM information_schema.tables WHERE TABLE_SCHEMA = 'bk' "
                   "ORDER BY TABLE_NAME"),
              (std::vector<std::string>{"both|InnoDB", "gone|InnoDB", "mine|MyISAM"}));
    EXPECT_EQ(Rows(remote, "SELECT a FROM bk.both"), std::vector<std::string>{"7"});
}

} // namespace
