#include "database/Transaction.h"

namespace database {

Transaction::~Transaction() {
    if (open_)
        connection_.ExecuteLater("ROLLBACK");
}

gui::Task<> Transaction::Begin() {
    co_await connection_.Execute("START TRANSACTION");
    open_ = true;
}

gui::Task<> Transaction::Commit() {
    co_await connection_.Execute("COMMIT");
    open_ = false;
}

} // namespace database
