// Prints the statements that make the databases and tables on a server of today.
#include "dbsetup/Schema.h"

#include <cstdio>

int main() {
    for (const auto& database : dbsetup::Databases()) {
        std::puts(std::string(database.createStatement).c_str());
        for (const auto& table : database.tables)
            std::puts(dbsetup::EngineForm(table.CreateStatement()).c_str());
    }
}
