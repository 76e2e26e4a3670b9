#include "dbsetup/DatabaseCheck.h"

namespace dbsetup {

std::string PresenceText(bool exists) {
    return exists ? "Existed" : "Not Existed";
}

std::string NoTablesText(const suite::Database& database) {
    // The misspelling is what operators know and search their forum for.
    return database.name == "amglobal" ? "All tables mising" : "All tables missing";
}

std::string TablesText(const suite::Database& database, const NameSet& existing) {
    std::string missing;
    for (const std::size_t position : database.displayOrder) {
        const suite::Table& table = database.tables[position];
        if (!existing.contains(std::string(table.name)))
            missing += table.displayName;
    }
    return missing.empty() ? "All tables existed" : "Missing table(s) [" + missing + "]";
}

} // namespace dbsetup
