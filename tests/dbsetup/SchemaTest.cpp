#include "dbsetup/Schema.h"

#include "database/Error.h"
#include "support/Database.h"

#include <algorithm>

namespace {

using dbsetup::Databases;

const std::vector<std::string> kStatements{
#include "Statements.inc"
};

TEST(Schema, StatementsAreExactAndInTheirOrder) {
    std::string order;
    for (const auto& database : Databases()) {
        EXPECT_EQ(database.createStatement,
                  "CREATE DATABASE IF NOT EXISTS " + std::string(database.name) + ";");
        for (const auto& table : database.tables) {
            const auto name = std::string(database.name) + "." + std::string(table.name);
            EXPECT_EQ(std::ranges::count(kStatements, table.CreateStatement()), 1) << name;
            EXPECT_TRUE(table.CreateStatement().starts_with("CREATE TABLE IF NOT EXISTS " + name + " ("));
            order += name + " ";
        }
        for (const std::size_t i : database.displayOrder)
            order += database.tables[i].displayName;
    }
    EXPECT_EQ(order, "glogin.account glogin.storageinfo Account Storageinfo "
                     "amcharacter.charinfo amcharacter.cartinfo amcharacter.iteminfo amcharacter.flaginfo "
                     "amcharacter.skillinfo CartInfo CharInfo ItemInfo FlagInfo SkillInfo "
                     "amglobal.gcastle amglobal.guild amglobal.party GCastle Guild Party ");
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
    EXPECT_EQ(support::Rows(root, "SELECT ENGINE, COUNT(DISTINCT table_schema, table_name), COUNT(*), "
                                  "SUM(column_key = 'PRI'), SUM(extra = 'auto_increment') "
                                  "FROM information_schema.tables JOIN information_schema.columns "
                                  "USING (table_schema, table_name) WHERE table_schema IN "
                                  "('glogin', 'amcharacter', 'amglobal') GROUP BY ENGINE"),
              std::vector<std::string>{"MyISAM|10|110|10|2"});
}

} // namespace
