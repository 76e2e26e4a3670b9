#include "database/Blocks.h"

#include "database/Error.h"

namespace database {

gui::Task<> BlockReader::Open(std::string sql) {
    auto open = [sql = std::move(sql)](const SessionPtr& session) {
        auto reader = std::make_unique<RowReader>(session, sql);
        const std::size_t rowsToCome = reader->RowsToCome();
        return std::pair(gui::EndedAside(std::move(reader)), rowsToCome);
    };
    auto opened = co_await connection_.Call(open);
    reader_ = std::move(opened.first);
    rowsToCome_ = opened.second;
    columns_ = reader_->Columns();
}

gui::Task<RowStore> BlockReader::Read(RowStore rows) {
    auto read = [reader = reader_, rows = std::move(rows)](const SessionPtr&) mutable {
        reader->Read(rows);
        return std::move(rows);
    };
    return connection_.CallMeanwhile(read);
}

gui::Task<> BlockInserter::Open(std::string table, std::vector<std::string> columns) {
    auto open = [table = std::move(table), columns = std::move(columns)](const SessionPtr& session) {
        return gui::EndedAside(std::make_unique<BulkInserter>(session, table, columns));
    };
    inserter_ = co_await connection_.Call(open);
}

gui::Task<RowStore> BlockInserter::Insert(RowStore rows) {
    auto insert = [inserter = inserter_, rows = std::move(rows)](const SessionPtr&) mutable {
        inserter->Insert(rows);
        return std::move(rows);
    };
    try {
        RowStore back = co_await connection_.Call(insert);
        sent_ = inserter_->Sent();
        co_return back;
    } catch (const Error& error) {
        // A call that is still out goes on counting.
        if (!error.Unanswered())
            sent_ = inserter_->Sent();
        throw;
    }
}

} // namespace database
