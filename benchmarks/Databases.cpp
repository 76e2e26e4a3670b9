#include "Databases.h"

#include "dbsetup/Schema.h"

namespace bench {

void FillAccounts(support::Client& root, int accounts) {
    DropDatabases(root);
    const suite::Database& login = suite::LoginDatabase();
    root.Execute(dbsetup::CreateStatement(login));
    root.Execute(dbsetup::EngineForm(dbsetup::CreateStatement(login.tables[0])));
    root.Execute("INSERT INTO glogin.account (AID, Name, Pass, Gender, Mail) SELECT 100000 + seq, "
                 "CONCAT('account', seq), 'secret', seq % 2, CONCAT('a', seq, '@example.org') "
                 "FROM glogin.seq_1_to_" +
                 std::to_string(accounts));
}

void FillStorage(support::Client& root, int blobs) {
    root.Execute(dbsetup::EngineForm(dbsetup::CreateStatement(suite::LoginDatabase().tables[1])));
    root.Execute("INSERT INTO glogin.storageinfo "
                 "SELECT seq, LEFT(REPEAT(UNHEX(SHA2(seq, 512)), 16), 1000) FROM glogin.seq_1_to_" +
                 std::to_string(blobs));
}

void DropDatabases(support::Client& connection) {
    support::Clean(connection);
}

} // namespace bench
