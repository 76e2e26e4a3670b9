#include "database/BulkInserter.h"
#include "database/Odbc.h"
#include "database/Query.h"
#include "support/Database.h"

#include <cstdlib>

namespace {

using namespace database;
using support::Rows;

class RowsTest : public support::DatabaseTest {
protected:
    RowsTest() {
        root.Execute("CREATE DATABASE glogin");
        root.Execute("USE glogin;");
    }
};

TEST_F(RowsTest, EveryTypeArrivesAsItsValue) {
    const std::tuple<std::string, std::string, Value> cases[] = {
        {"int(6) unsigned", "4294967295", std::int64_t{4294967295}},
        {"int(6)", "-2147483648", -2147483647 - 1},
        {"tinyint unsigned", "255", 255},
        {"bigint", "-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
        {"bigint unsigned", "18446744073709551615", "18446744073709551615"},
        {"year", "2004", 2004},
        {"bit(1)", "1", 1},
        {"decimal(30,10)", "12345678901234567890.0123456789", "12345678901234567890.0123456789"},
        {"float", "0.1", double{0.1F}},
        {"double", "1.7976931348623157e308", 1.7976931348623157e308},
        {"date", "'0000-00-00'", "0000-00-00"},
        {"datetime(6)", "'2004-02-29 23:59:58.000123'", "2004-02-29 23:59:58.000123"},
        {"timestamp", "'2004-02-29 23:59:58'", "2004-02-29 23:59:58"},
        {"time", "'-01:02:03'", "-01:02:03"},
        {"varchar(24)", "''", ""},
        {"varchar(24) charset latin1", "0x4BF66E6967E420274F225C25", "K\xF6nig\xE4 'O\"\\%"},
        {"varchar(3) charset utf8mb4", "0xE282ACE282ACE282AC", "\x80\x80\x80"},
        {"enum('a','b')", "'b'", "b"},
        {"longtext", "REPEAT('y', 200001)", std::string(200001, 'y')},
        {"mediumblob", "REPEAT(0x00, 300000)", Bytes{std::string(300000, '\0')}},
        {"binary(3)", "0x00FF00", Bytes{std::string("\0\xFF\0", 3)}},
        {"blob", "''", Bytes{}},
        {"varchar(24)", "NULL", {}},
        {"int(6)", "NULL", {}}};
    root.Execute("SET sql_mode=''");
    for (const auto& [type, literal, expected] : cases) {
        SCOPED_TRACE(std::string(type) + " " + literal);
        root.Execute("DROP TABLE IF EXISTS t, copy");
        root.Execute("CREATE TABLE t (v " + std::string(type) + " NULL)");
        root.Execute("CREATE TABLE copy LIKE t");
        // Two rows: what is fetched and sent in arrays must stand at its place in them.
        root.Execute("INSERT INTO t VALUES (" + std::string(literal) + "),(" + literal + ")");
        const RowStore rows = ReadAll(root.Session(), "SELECT * FROM t").store;
        ASSERT_EQ(rows.Rows(), 2u);
        for (std::size_t row = 0; row < 2; ++row) {
            const Value value = rows.At(row, 0).ToValue();
            EXPECT_TRUE(value == expected) << value.Get().index() << ' ' << value.AsText().substr(0, 100);
        }
        BulkInserter(root.Session(), "copy", {"v"}).Insert(rows);
        const auto sums = Rows(root, "CHECKSUM TABLE t, copy");
        EXPECT_EQ(sums.at(0).substr(9), sums.at(1).substr(12));
    }
}

TEST_F(RowsTest, BlocksReachAnotherServerByEveryWayOfSending) {
    const std::string columns =
        "t (id int unsigned NOT NULL PRIMARY KEY, name varchar(24), data blob, r double)";
    root.Execute("CREATE TABLE " + columns);
    remote.Execute("CREATE DATABASE bk");
    remote.Execute("CREATE TABLE bk." + columns);
    // Lengths from none to the longest, so that blocks and arrays are cut at odd places.
    root.Execute("INSERT INTO t SELECT seq * 7158278, IF(seq % 7 = 0, NULL, CONCAT('na''me', seq)), "
                 "IF(seq % 5 = 0, NULL, REPEAT(0x00FF275C, seq % 256 * 64)), seq / 3 FROM " +
                 support::Numbers(0, 599));
    const auto source = support::Checksum(root, "glogin", "t");
    for (const bool arrays : {true, false}) {
        remote.Execute("DELETE FROM bk.t");
        // A Wine of another root brings a driver of its own, which may take none.
        if (!support::IsMySQL(remote) && !std::getenv("KTOOLS_ROOT")) {
            EXPECT_TRUE(remote.Session()->ParameterArrays());
        }
        if (!arrays)
            remote.Session()->DeclineParameterArrays();
        RowReader reader(root.Session(), "SELECT * FROM t");
        BulkInserter inserter(remote.Session(), "bk.t", {"id", "name", "data", "r"});
        RowStore block(4);
        for (; reader.Read(block) > 0; block.Clear())
            inserter.Insert(block);
        EXPECT_EQ(inserter.Sent(), 600u);
        EXPECT_EQ(support::Checksum(remote, "bk", "t"), source);
    }
}

TEST_F(RowsTest, RowsThatAreRefusedDoNotCountAsSent) {
    remote.Execute("CREATE DATABASE bk");
    remote.Execute("CREATE TABLE bk.t (id int NOT NULL PRIMARY KEY) ENGINE=MyISAM");
    RowStore rows(1);
    for (int id = 1; id <= 1500; ++id)
        rows.Append(Cell::Of(id));
    for (const bool arrays : {true, false}) {
        remote.Execute("REPLACE INTO bk.t VALUES (1100)");
        if (!arrays)
            remote.Session()->DeclineParameterArrays();
        BulkInserter inserter(remote.Session(), "bk.t", {"id"});
        EXPECT_EQ(support::ErrorNumber([&] { inserter.Insert(rows); }), 1062);
        EXPECT_TRUE(inserter.Sent() >= 1000 && inserter.Sent() < 1100) << inserter.Sent();
        remote.Execute("DELETE FROM bk.t");
    }
}

} // namespace
