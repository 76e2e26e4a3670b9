#include "dbsetup/Schema.h"

#include <gtest/gtest.h>

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
    }
    EXPECT_EQ(order, "glogin.account glogin.storageinfo amcharacter.charinfo amcharacter.cartinfo "
                     "amcharacter.iteminfo amcharacter.flaginfo amcharacter.skillinfo amglobal.gcastle "
                     "amglobal.guild amglobal.party ");
}

} // namespace
