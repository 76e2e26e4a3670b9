#pragma once

#include "database/BulkInserter.h"
#include "database/Connection.h"
#include "database/RowReader.h"

namespace database {

/// Reads the rows of a query in blocks, each in one call aside. The connection outlives it and is asked for
/// nothing else before the reader has ended where its driver can do only one thing at a time.
class BlockReader {
public:
    explicit BlockReader(Connection& connection) : connection_(connection) {}

    /// Runs the query. Raises Error.
    gui::Task<> Open(std::string sql);
    const std::vector<Column>& Columns() const { return columns_; }
    /// How many rows will come, where the driver knows it before they do; 0 where it does not.
    std::size_t RowsToCome() const { return rowsToCome_; }
    /// Begins to append the next rows, at most a thousand. The task waits for them and hands the store back,
    /// without more rows at the end. Raises Error; the store is gone then.
    gui::Task<RowStore> Read(RowStore rows);

private:
    Connection& connection_;
    std::shared_ptr<RowReader> reader_;
    std::vector<Column> columns_;
    std::size_t rowsToCome_ = 0;
};

/// Puts many rows into a table, the rows of a store in one call aside.
class BlockInserter {
public:
    explicit BlockInserter(Connection& connection) : connection_(connection) {}

    /// As BulkInserter's. Raises Error.
    gui::Task<> Open(std::string table, std::vector<std::string> columns);
    /// Sends the rows and hands the store back. Raises Error; the store is gone then.
    gui::Task<RowStore> Insert(RowStore rows);
    /// Rows that are known to have arrived.
    std::size_t Sent() const { return sent_; }

private:
    Connection& connection_;
    std::shared_ptr<BulkInserter> inserter_;
    std::size_t sent_ = 0;
};

} // namespace database
