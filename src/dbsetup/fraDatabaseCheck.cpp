#include "dbsetup/fraDatabaseCheck.h"

#include "dbsetup/DatabaseCheck.h"
#include "gui/WaitCursor.h"

void fraDatabaseCheck::Form_Load() {
    // As MySQL is installed, so that a first-time operator types the password only.
    txtRootHostname.Text("localhost");
    txtRootUsername.Text("root");
}

dbsetup::AdministratorLogin fraDatabaseCheck::Administrator() const {
    return {txtRootHostname.Text(), txtRootUsername.Text(), txtRootPassword.Text()};
}

void fraDatabaseCheck::cmdCheckDB_Click() {
    const gui::WaitCursor waiting;
    const auto databases = suite::Databases();
    struct Row {
        const suite::Database& database;
        bool exists;
        gui::Label& presence;
        gui::Label& tables;
    };
    server_.LogIn();
    const dbsetup::NameSet existing = server_.ExistingDatabases();
    const auto exists = [&](std::size_t i) { return existing.contains(std::string(databases[i].name)); };
    const Row rows[] = {{databases[0], exists(0), lblGlogin, lblGloginTables},
                        {databases[1], exists(1), lblAMCharacter, lblAMCharacterTables},
                        {databases[2], exists(2), lblAMGlobal, lblAMGlobalTables}};
    // What is known already stands there even when the server goes away while it is asked for the tables.
    for (const Row& row : rows) {
        row.presence.Caption(dbsetup::PresenceText(row.exists));
        row.tables.Caption(dbsetup::NoTablesText(row.database));
    }
    for (const Row& row : rows)
        if (row.exists)
            row.tables.Caption(dbsetup::TablesText(row.database, server_.ExistingTables(row.database)));
}
