#pragma once

#include "support/Database.h"

namespace bench {

/// Makes the login database with so many accounts, whose numbers leave no gap.
void FillAccounts(database::Connection& root, int accounts);

/// Adds the storage of the first `blobs` accounts: 1,000 bytes each, of every value.
void FillStorage(database::Connection& root, int blobs);

/// Drops what FillAccounts and copies of it have made.
void DropDatabases(database::Connection& connection);

} // namespace bench
