#include "dbsetup/Schema.h"

#include "support/Test.h"

namespace {

const std::vector<std::string> kStatements{
#include "Statements.inc"
};

TEST(Schema, StatementsAreExactAndInTheirOrder) {
    std::vector<std::string> statements;
    for (const auto& database : dbsetup::Databases()) {
        statements.emplace_back(database.createStatement);
        for (const auto& table : database.tables)
            statements.push_back(table.CreateStatement());
    }
    EXPECT_EQ(statements, kStatements);
}

} // namespace
