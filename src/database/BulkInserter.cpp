#include "database/BulkInserter.h"

#include "database/Error.h"
#include "database/Query.h"

#include <algorithm>

namespace database {

namespace {

/// Arrays are as wide as their longest field: a few long rows among short ones must not fill the memory.
constexpr std::size_t kArrayBytes = std::size_t{32} * 1024 * 1024;
/// Newer Wines take 1,024 question marks in a statement. Servers take 65,535, but the time to prepare them
/// grows.
constexpr std::size_t kMostMarks = 1000;

} // namespace

BulkInserter::BulkInserter(SessionPtr session, std::string table, const std::vector<std::string>& columns)
    : session_(std::move(session)), columns_(columns.size()) {
    std::string names;
    for (const std::string& column : columns) {
        names += (names.empty() ? "" : ",") + Quoted(column);
        rowOfMarks_ += rowOfMarks_.empty() ? "(?" : ",?";
    }
    rowOfMarks_ += ")";
    // A strict server is strict with every row of a MyISAM table only when told so; otherwise all but a
    // statement's first row are cut to fit without an error.
    try {
        Execute(session_, "SET SESSION sql_mode = IF(@@sql_mode LIKE '%STRICT_TRANS_TABLES%', "
                          "CONCAT(@@sql_mode, ',STRICT_ALL_TABLES'), @@sql_mode)");
    } catch (const Error& error) {
        // Servers before 5.0 know no modes.
        if (error.ConnectionLost())
            throw;
    }
    head_ = "INSERT INTO " + std::move(table) + " (" + names + ") VALUES ";
}

std::size_t BulkInserter::BatchRows(const RowStore& rows, std::size_t first, std::size_t count) const {
    // A driver without arrays writes the values into the statement's text, where a byte may need two.
    const std::size_t packet =
        session_->PacketSize() / 2 - std::min<std::size_t>(session_->PacketSize() / 4, 16384);
    const std::size_t most = session_->ParameterArrays()
                                 ? kBatchRows
                                 : std::clamp<std::size_t>(kMostMarks / columns_, 1, kBatchRows);
    std::vector<std::size_t> longest(columns_);
    std::size_t width = 0;
    std::size_t bytes = 0;
    std::size_t batch = 0;
    for (; batch < std::min(count, most); ++batch) {
        for (std::size_t column = 0; column < columns_; ++column) {
            const Cell& cell = rows.At(first + batch, column);
            const std::size_t size = cell.HasCharacters() ? cell.length : sizeof cell.integer;
            bytes += size + 4;
            if (size > longest[column]) {
                width += size - longest[column];
                longest[column] = size;
            }
        }
        if (batch > 0 && (bytes > packet || width * (batch + 1) > kArrayBytes))
            break;
    }
    return batch;
}

void BulkInserter::Insert(const RowStore& rows, std::size_t first, std::size_t count) {
    while (count > 0) {
        std::size_t batch = BatchRows(rows, first, count);
        if (session_->ParameterArrays())
            batch = SendArrays(rows, first, batch);
        else
            SendStatement(rows, first, batch);
        sent_ += batch;
        first += batch;
        count -= batch;
    }
}

odbc::Statement& BulkInserter::Prepared(std::size_t rowsOfStatement) {
    if (!statement_ || rowsOfStatement_ != rowsOfStatement) {
        std::string sql = head_ + rowOfMarks_;
        for (std::size_t row = 1; row < rowsOfStatement; ++row)
            sql += "," + rowOfMarks_;
        statement_ = std::make_unique<odbc::Statement>(session_);
        statement_->Prepare(sql);
        rowsOfStatement_ = rowsOfStatement;
    }
    return *statement_;
}

void BulkInserter::Fill(const RowStore& rows, std::size_t first, std::size_t count) {
    parameters_.Fill(
        session_->WideText(), count, columns_,
        [&](std::size_t row, std::size_t column) { return rows.At(first + row, column); }, rows.Form());
}

std::size_t BulkInserter::SendArrays(const RowStore& rows, std::size_t first, std::size_t count) {
    odbc::Statement& statement = Prepared(1);
    Fill(rows, first, count);
    processed_ = 0;
    statement.Set(SQL_ATTR_PARAMSET_SIZE, count);
    statement.SetPointer(SQL_ATTR_PARAMS_PROCESSED_PTR, &processed_);
    // Of a set that was not tried, a driver may say nothing.
    status_.assign(count, SQL_PARAM_UNUSED);
    statement.SetPointer(SQL_ATTR_PARAM_STATUS_PTR, status_.data());
    parameters_.BindArrays(statement);
    const SQLRETURN result = statement.TryExecute();
    // A driver that sends set by set calls it a success when only some of them were refused.
    if (!odbc::HasSucceeded(result) || std::ranges::find(status_, SQL_PARAM_ERROR) != status_.end()) {
        const auto arrived = [](SQLUSMALLINT status) {
            return status == SQL_PARAM_SUCCESS || status == SQL_PARAM_SUCCESS_WITH_INFO;
        };
        sent_ += static_cast<std::size_t>(std::ranges::find_if_not(status_, arrived) - status_.begin());
        statement.Fail(result, "SQLExecute");
    }
    const std::size_t sent = processed_ > 0
                                 ? processed_
                                 : static_cast<std::size_t>(std::max<std::int64_t>(statement.RowCount(), 1));
    if (sent < count) {
        // The driver took the array's size and sent its beginning only.
        session_->DeclineParameterArrays();
        statement_.reset();
    }
    return std::min(sent, count);
}

void BulkInserter::SendStatement(const RowStore& rows, std::size_t first, std::size_t count) {
    odbc::Statement& statement = Prepared(count);
    Fill(rows, first, count);
    parameters_.BindRows(statement);
    statement.Execute();
}

} // namespace database
