#include "database/Transaction.h"

#include "common/RuntimeError.h"

namespace database {

Transaction::Transaction(Connection& connection) : connection_(connection) {
    connection_.Execute("START TRANSACTION");
}

Transaction::~Transaction() {
    try {
        if (!committed_)
            connection_.Execute("ROLLBACK");
    } catch (const RuntimeError&) {
        // The connection is gone, and with it the transaction.
    }
}

void Transaction::Commit() {
    connection_.Execute("COMMIT");
    committed_ = true;
}

} // namespace database
