#pragma once

#include "database/Connection.h"

namespace database {

/// One transaction, which is rolled back unless Commit has ended it: an engine that knows transactions writes
/// its changes out once, and keeps none of what failed.
class Transaction {
public:
    /// Raises Error, as Commit does.
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Commit();

private:
    Connection& connection_;
    bool committed_ = false;
};

} // namespace database
