#include "dbsetup/Schema.h"

#include "database/Error.h"
#include "support/Database.h"

#include <algorithm>
#include <regex>

namespace {

using dbsetup::Databases;

const std::vector<std::string> kStatements{
#include "Statements.inc"
};

/// The statement of kStatements that makes the table.
std::string StatementOf(const std::string& table) {
    for (const std::string& statement : kStatements) {
        if (statement.starts_with("CREATE TABLE IF NOT EXISTS " + table + " ("))
            return statement;
    }
    return {};
}

TEST(Schema, StatementsAreExactAndInTheirOrder) {
    std::string order;
    for (const auto& database : Databases()) {
        EXPECT_EQ(database.createStatement,
                  "CREATE DATABASE IF NOT EXISTS " + std::string(database.name) + ";");
        for (const auto& table : database.tables) {
            const auto name = std::string(database.name) + "." + std::string(table.name);
            EXPECT_EQ(table.CreateStatement(), StatementOf(name));
            order += name + " ";
        }
        for (const std::size_t i : database.displayOrder)
            order += database.tables[i].displayName;
    }
    EXPECT_EQ(order, "glogin.account glogin.storageinfo Account Storageinfo "
                     "amcharacter.charinfo amcharacter.cartinfo amcharacter.iteminfo amcharacter.flaginfo "
                     "amcharacter.skillinfo CartInfo CharInfo ItemInfo FlagInfo SkillInfo "
                     "amglobal.gcastle amglobal.guild amglobal.party GCastle Guild Party ");

    std::string ends;
    for (const auto& piece : Databases()[1].tables[0].pieces)
        ends += std::string(piece.substr(piece.rfind('`', piece.rfind('`') - 1))) + "\n";
    EXPECT_EQ(ends, "`SkillPoint` int(6) NOT NULL default '0',\n`Hair3` int(6) NOT NULL default '0',\n"
                    "`Head3` int(2) NOT NULL default '0',\n`SavePointX` int(3) NOT NULL default '0',\n"
                    "`MemoPoint3X` int(3) NOT NULL default '0',\n`CID`)) TYPE=MyISAM;\n");
}

class SchemaOnServer : public support::DatabaseTest {};

TEST_F(SchemaOnServer, EngineFormsMakeTheTablesAndTwiceIsHarmless) {
    for (int run = 0; run < 2; ++run) {
        for (const auto& database : Databases()) {
            root.Execute(std::string(database.createStatement));
            for (const auto& table : database.tables) {
                EXPECT_THROW(root.Execute(table.CreateStatement()), database::Error);
                root.Execute(dbsetup::EngineForm(table.CreateStatement()));
            }
        }
    }
    const std::regex definition("[(,]`(\\w+)` (\\w+(?:\\(\\d+\\))?(?: unsigned)?)( NOT NULL)?"
                                "(?: default (NULL|'\\w*')| (auto_increment))?");
    for (const auto& database : Databases()) {
        for (const auto& table : database.tables) {
            const auto name = std::string(database.name) + "." + std::string(table.name);
            const std::string statement = StatementOf(name);
            const std::string key = statement.substr(statement.rfind("(`") + 2);
            std::vector<std::string> expected;
            for (std::sregex_iterator at(statement.begin(), statement.end(), definition), end; at != end;
                 ++at) {
                const auto& part = *at;
                if (part[2].str().empty())
                    continue;
                const std::string value = part[4].matched && part[4] != "NULL"
                                              ? part[4].str().substr(1, part[4].str().size() - 2)
                                              : "NULL";
                expected.push_back(
                    part[1].str() + "|" + part[2].str() + "|" + (part[3].matched ? "NO" : "YES") + "|" +
                    (key.starts_with(part[1].str() + "`") ? "PRI" : "") + "|" + value + "|" + part[5].str());
            }
            EXPECT_EQ(support::Rows(root, "SHOW COLUMNS FROM " + name), expected) << name;
            EXPECT_EQ(support::Rows(root, "SELECT ENGINE FROM information_schema.tables WHERE CONCAT("
                                          "table_schema, '.', table_name) = '" +
                                              name + "'"),
                      std::vector<std::string>{"MyISAM"});
        }
    }
}

} // namespace
