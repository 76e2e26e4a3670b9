#pragma once

#include "database/Connection.h"

namespace database {

/// One transaction, which is rolled back unless Commit has ended it: an engine that knows transactions writes
/// its changes out once, and keeps none of what failed. The rollback waits for what is asked of the
/// connection next, or for its end.
class Transaction {
public:
    explicit Transaction(Connection& connection) : connection_(connection) {}
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Both raise Error.
    gui::Task<> Begin();
    gui::Task<> Commit();

private:
    Connection& connection_;
    bool open_ = false;
};

} // namespace database
