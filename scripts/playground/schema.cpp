// Prints the statements that make the databases and tables on a server of today.
#include "dbsetup/Schema.h"

#include <cstdio>

int main() {
    for (const auto& database : suite::Databases()) {
        std::puts(dbsetup::CreateStatement(database).c_str());
        for (const auto& table : database.tables)
            std::puts(dbsetup::EngineForm(dbsetup::CreateStatement(table)).c_str());
    }
}
