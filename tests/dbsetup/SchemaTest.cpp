#include "dbsetup/Schema.h"

#include "support/Test.h"

namespace {

const std::vector<std::string> kStatements{
#include "Statements.inc"
};

TEST(Schema, StatementsAreExactAndInTheirOrder) {
    std::vector<std::string> statements;
    for (const auto& database : suite::Databases()) {
        statements.push_back(dbsetup::CreateStatement(database));
        for (const auto& table : database.tables)
            statements.push_back(dbsetup::CreateStatement(table));
    }
    EXPECT_EQ(statements, kStatements);
}

} // namespace
