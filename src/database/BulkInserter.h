#pragma once

#include "database/Parameters.h"
#include "database/RowStore.h"

#include <memory>
#include <string>
#include <vector>

namespace database {

/// Puts many rows into a table, by the fastest way that the driver offers: parameter arrays, else several
/// rows a statement.
class BulkInserter {
public:
    /// The most rows that are sent at once: so many may or may not have arrived when Insert raises an error.
    static constexpr std::size_t kBatchRows = 1000;

    /// `table` as SQL writes it ("database.table", quoted by the caller where it must be), `columns` the
    /// plain names of the columns that Insert gives values for.
    BulkInserter(SessionPtr session, std::string table, const std::vector<std::string>& columns);

    /// Sends `count` rows of `rows` from `first` on, which have a field for each column. Raises Error: rows
    /// before the refused one may have arrived all the same. Sent() counts those that are known to have.
    void Insert(const RowStore& rows, std::size_t first, std::size_t count);
    void Insert(const RowStore& rows) { Insert(rows, 0, rows.Rows()); }

    /// Rows that have arrived.
    std::size_t Sent() const { return sent_; }

private:
    std::size_t BatchRows(const RowStore& rows, std::size_t first, std::size_t count) const;
    odbc::Statement& Prepared(std::size_t rowsOfStatement);
    void Fill(const RowStore& rows, std::size_t first, std::size_t count);
    std::size_t SendArrays(const RowStore& rows, std::size_t first, std::size_t count);
    void SendStatement(const RowStore& rows, std::size_t first, std::size_t count);

    SessionPtr session_;
    std::string head_;
    std::string rowOfMarks_;
    std::size_t columns_;
    Parameters parameters_;
    std::unique_ptr<odbc::Statement> statement_;
    std::size_t rowsOfStatement_ = 0;
    std::size_t sent_ = 0;
    SQLULEN processed_ = 0;
    std::vector<SQLUSMALLINT> status_;
};

} // namespace database
