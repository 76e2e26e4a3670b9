#include "supervision/clsMySQLCopyDatabase.h"

#include "database/Blocks.h"
#include "database/Error.h"
#include "database/Transaction.h"
#include "gui/TaskWaits.h"
#include "supervision/TableCheck.h"

namespace {

using database::Connection;
using database::SessionPtr;
using database::TextForm;
using supervision::Place;
using supervision::TableSum;
using Column = clsMySQLCopyDatabase::Column;
using Status = clsMySQLCopyDatabase::Status;
using NameList = clsMySQLCopyDatabase::NameList;
using ColumnTask = clsMySQLCopyDatabase::ColumnTask;

constexpr const char* kNoSource = "Not connected to source MySQL server";
constexpr const char* kNoDestination = "Not connected to destination MySQL server";
constexpr const char* kNotBoth = "Not connected to both source and destination MySQL server";

// Otherwise a time stamp would be read in one time zone and written in another.
constexpr const char* kSameTimeZone = "SET SESSION time_zone = '+00:00'";
// A numbered column keeps a 0, and dates that are none stay as they are; nothing is cut silently.
constexpr const char* kValuesAsTheyAre =
    "SET SESSION sql_mode = "
    "'NO_AUTO_VALUE_ON_ZERO,ALLOW_INVALID_DATES,STRICT_TRANS_TABLES,STRICT_ALL_TABLES'";
constexpr const char* kKeepZeros = "SET SESSION sql_mode = 'NO_AUTO_VALUE_ON_ZERO'";

constexpr const char* kShowDatabases = "SHOW DATABASES;";

gui::Task<> ExecuteKnownAside(Connection& side, std::vector<std::string> statements) {
    auto execute = [statements](const SessionPtr& session) {
        supervision::ExecuteKnown(session, statements);
    };
    co_await side.Call(execute);
}

NameList NamesAside(Connection& side, std::string sql) {
    auto ask = [sql](const SessionPtr& session) { return supervision::Names(session, sql); };
    std::vector<std::string> names = co_await side.Call(ask);
    co_return names;
}

gui::Task<TableSum> SumOf(Connection& side, std::string table) {
    database::BlockReader rows(side);
    {
        const supervision::LongRequests large(side);
        co_await rows.Open("SELECT * FROM " + table);
    }
    database::RowStore block(rows.Columns().size(), TextForm::Utf8);
    database::RowStore next(rows.Columns().size(), TextForm::Utf8);
    TableSum sum;
    block = co_await rows.Read(std::move(block));
    while (block.Rows() > 0) {
        next.Clear();
        auto coming = rows.Read(std::move(next));
        sum.Add(block);
        next = std::move(block);
        block = co_await std::move(coming);
        co_await gui::NextTurn();
    }
    co_return sum;
}

} // namespace

bool clsMySQLCopyDatabase::Require(const Connection& side, const char* description) const {
    if (side.IsOpen())
        return true;
    if (SQLCopyError)
        SQLCopyError(kNotConnected, description);
    return false;
}

bool clsMySQLCopyDatabase::RequireBoth() const {
    return Require(source_.IsOpen() ? destination_ : source_, kNotBoth);
}

void clsMySQLCopyDatabase::Progress(const std::string& table, std::size_t rows) const {
    if (CopyProgress)
        CopyProgress(table, rows);
}

Status clsMySQLCopyDatabase::ConnectSource() {
    co_await source_.Open(
        database::MySQLConnectionString(SourceHostname(), SourceUsername(), SourcePassword()));
    const std::vector<std::string> statements{kSameTimeZone};
    co_await ExecuteKnownAside(source_, statements);
    co_return std::int16_t{1};
}

Status clsMySQLCopyDatabase::ConnectDestination() {
    co_await destination_.Open(
        database::MySQLConnectionString(DestinationHostname(), DestinationUsername(), DestinationPassword()));
    const std::vector<std::string> timeZone{kSameTimeZone};
    co_await ExecuteKnownAside(destination_, timeZone);
    const std::vector<std::string> mode{kValuesAsTheyAre, kKeepZeros};
    co_await ExecuteKnownAside(destination_, mode);
    co_return std::int16_t{1};
}

std::int16_t clsMySQLCopyDatabase::DisconnectSource() {
    source_.Close();
    return 1;
}

std::int16_t clsMySQLCopyDatabase::DisconnectDestination() {
    destination_.Close();
    return 1;
}

Status clsMySQLCopyDatabase::CopyDatabase(std::string SourceDatabase, std::string DestinationDatabase,
                                          bool NoDBDelete) {
    if (!RequireBoth())
        co_return std::int16_t{0};
    copied_.clear();
    // All names before anything is dropped: a source that does not answer costs no copy.
    const std::vector<std::string> tables =
        co_await NamesAside(source_, supervision::ShowTables(SourceDatabase));
    auto ask = [SourceDatabase](const SessionPtr& session) {
        return supervision::CollationOf(session, SourceDatabase);
    };
    const std::string collation = co_await source_.Call(ask);
    // Texts that are different in one character set may be the same in another, or not exist there.
    if (!collation.empty()) {
        const std::vector<std::string> statements{"SET SESSION collation_server = " + collation,
                                                  "SET SESSION character_set_server = " +
                                                      supervision::CharacterSetOf(collation)};
        co_await ExecuteKnownAside(destination_, statements);
    }
    if (!NoDBDelete)
        co_await destination_.Execute("DROP DATABASE IF EXISTS " + DestinationDatabase + ";");
    co_await destination_.Execute("CREATE DATABASE IF NOT EXISTS " + DestinationDatabase + ";");
    for (const std::string& table : tables) {
        const Place from{SourceDatabase, table};
        const Place to{DestinationDatabase, table};
        co_await Transfer(from, to, false, !NoDBDelete);
    }
    if (!NoDBDelete) {
        auto set = [DestinationDatabase, collation](const SessionPtr& session) {
            supervision::SetCollation(session, DestinationDatabase, collation);
        };
        co_await destination_.Call(set);
    }
    co_return std::int16_t{1};
}

Status clsMySQLCopyDatabase::CopyTable(std::string SourceDatabase, std::string SourceTable,
                                       std::string DestinationDatabase, std::string DestinationTable,
                                       bool NoDelete, bool FlushFirst) {
    if (!RequireBoth())
        co_return std::int16_t{0};
    if (FlushFirst)
        co_await source_.Execute("FLUSH TABLES;");
    const Place from{SourceDatabase, SourceTable};
    const Place to{DestinationDatabase, DestinationTable};
    co_await Transfer(from, to, NoDelete, false);
    co_return std::int16_t{1};
}

/// The source has answered in full before the destination is touched. A table is made in its database's
/// character set, which is only changed where the database is there for this copy alone.
gui::Task<> clsMySQLCopyDatabase::Transfer(Place from, Place to, bool keep, bool ownDatabase) {
    Progress(from.table, 0);
    database::BlockReader rows(source_);
    {
        const supervision::LongRequests large(source_);
        co_await rows.Open("SELECT * FROM " + from.Name());
    }
    auto describe = [from](const SessionPtr& session) { return supervision::LayoutOf(session, from); };
    const supervision::TableLayout layout = co_await source_.Call(describe);
    auto make = [to, layout, keep, ownDatabase](const SessionPtr& session) {
        if (ownDatabase)
            supervision::SetCollation(session, to.database, layout.collation);
        return supervision::MakeTable(session, to, layout, keep);
    };
    std::vector<std::string> columns = co_await destination_.Call(make);
    database::RowStore block(rows.Columns().size(), TextForm::Utf8);
    database::RowStore next(rows.Columns().size(), TextForm::Utf8);
    block = co_await rows.Read(std::move(block));
    if (block.Rows() > 0 && columns.size() < rows.Columns().size())
        database::Raise(database::kItemNotFound);
    columns.resize(rows.Columns().size());
    database::Transaction transaction(destination_);
    co_await transaction.Begin();
    database::BlockInserter inserter(destination_);
    co_await inserter.Open(to.Name(), columns);
    TableSum sum;
    while (block.Rows() > 0) {
        // The next rows come while these go.
        next.Clear();
        auto coming = rows.Read(std::move(next));
        sum.Add(block);
        std::exception_ptr refused;
        try {
            next = co_await inserter.Insert(std::move(block));
            Progress(from.table, inserter.Sent());
        } catch (...) {
            refused = std::current_exception();
        }
        // Also when the destination took none: the source is left with no request out.
        block = co_await std::move(coming);
        if (refused)
            std::rethrow_exception(refused);
        co_await gui::NextTurn();
    }
    co_await transaction.Commit();
    copied_[from.table] = sum;
}

gui::Task<supervision::TableSums> clsMySQLCopyDatabase::ReadBack(std::string DestinationDatabase) {
    supervision::TableSums sums;
    const std::vector<std::string> tables =
        co_await NamesAside(destination_, supervision::ShowTables(DestinationDatabase));
    for (const std::string& table : tables) {
        const TableSum sum = co_await SumOf(destination_, DestinationDatabase + "." + table);
        sums[table] = sum;
    }
    co_return sums;
}

NameList clsMySQLCopyDatabase::ListOf(Connection& side, const char* missing, std::string sql) {
    if (!Require(side, missing))
        co_return std::vector<std::string>{};
    std::vector<std::string> names = co_await NamesAside(side, sql);
    co_return names;
}

ColumnTask clsMySQLCopyDatabase::ColumnsOf(Connection& side, const char* missing, std::string sql) {
    if (!Require(side, missing))
        co_return std::vector<Column>{};
    auto ask = [sql](const SessionPtr& session) {
        return supervision::Columns(session, sql, TextForm::Ansi);
    };
    std::vector<Column> columns = co_await side.Call(ask);
    co_return columns;
}

NameList clsMySQLCopyDatabase::GetSourceDatabaseList() {
    return ListOf(source_, kNoSource, kShowDatabases);
}

NameList clsMySQLCopyDatabase::GetSourceTableList(std::string SourceDatabase) {
    return ListOf(source_, kNoSource, supervision::ShowTables(SourceDatabase));
}

ColumnTask clsMySQLCopyDatabase::GetSourceColumnList(std::string SourceDatabase, std::string SourceTable) {
    return ColumnsOf(source_, kNoSource, supervision::ShowColumns({SourceDatabase, SourceTable}) + ";");
}

NameList clsMySQLCopyDatabase::GetDestinationDatabaseList() {
    return ListOf(destination_, kNoDestination, kShowDatabases);
}

NameList clsMySQLCopyDatabase::GetDestinationTableList(std::string DestinationDatabase) {
    return ListOf(destination_, kNoDestination, supervision::ShowTables(DestinationDatabase));
}

ColumnTask clsMySQLCopyDatabase::GetDestinationColumnList(std::string DestinationDatabase,
                                                          std::string DestinationTable) {
    return ColumnsOf(destination_, kNoDestination,
                     supervision::ShowColumns({DestinationDatabase, DestinationTable}) + ";");
}
