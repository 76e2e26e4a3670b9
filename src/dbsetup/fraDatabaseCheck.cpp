#include "dbsetup/fraDatabaseCheck.h"

#include "dbsetup/DatabaseCheck.h"
#include "gui/Waiting.h"
#include "servers/Databases.h"

void fraDatabaseCheck::Form_Load() {
    // As MySQL is installed, so that a first-time operator types the password only.
    txtRootHostname.Text(suite::kThisComputer);
    txtRootUsername.Text("root");
    txtRootPassword.Enter(cmdCheckDB);
}

dbsetup::AdministratorLogin fraDatabaseCheck::Administrator() const {
    return {txtRootHostname.Text(), txtRootUsername.Text(), txtRootPassword.Text()};
}

gui::Task<> fraDatabaseCheck::cmdCheckDB_Click() {
    const gui::Waiting waiting(*this);
    const auto databases = suite::Databases();
    struct Row {
        const suite::Database& database;
        bool exists;
        gui::Label& presence;
        gui::Label& tables;
    };
    txtServerCard.Text("");
    co_await server_.LogIn();
    const dbsetup::NameSet existing = co_await server_.ExistingDatabases();
    const auto exists = [&](std::size_t i) { return existing.contains(std::string(databases[i].name)); };
    const Row rows[] = {{databases[0], exists(0), lblGlogin, lblGloginTables},
                        {databases[1], exists(1), lblAMCharacter, lblAMCharacterTables},
                        {databases[2], exists(2), lblAMGlobal, lblAMGlobalTables}};
    // What is known already stands there even when the server goes away while it is asked for the tables.
    for (const Row& row : rows) {
        row.presence.Caption(dbsetup::PresenceText(row.exists));
        row.tables.Caption(dbsetup::NoTablesText(row.database));
    }
    for (const Row& row : rows) {
        if (!row.exists)
            continue;
        const dbsetup::NameSet tables = co_await server_.ExistingTables(row.database.name);
        row.tables.Caption(dbsetup::TablesText(row.database, tables));
    }
    const std::string card = co_await server_.Card();
    txtServerCard.Text(card);
    const std::string contents = co_await server_.Contents();
    if (Counted)
        Counted(contents);
}
