#pragma once

#include "support/Database.h"

namespace bench {

/// Makes the login database with so many accounts, whose numbers leave no gap.
void FillAccounts(support::Client& root, int accounts);

/// Adds the storage of the first `blobs` accounts: 1,000 bytes each, of every value.
void FillStorage(support::Client& root, int blobs);

/// Drops what FillAccounts and copies of it have made.
void DropDatabases(support::Client& connection);

} // namespace bench
