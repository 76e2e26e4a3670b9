#include "supervision/clsMySQLCopyDatabase.h"

#include "common/RuntimeError.h"
#include "common/Text.h"
#include "database/Blocks.h"
#include "database/Error.h"
#include "database/Transaction.h"

#include <algorithm>

namespace {

using database::Connection;
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

/// Runs the first of the statements that the server knows; old servers know none of them.
gui::Task<> ExecuteKnown(Connection& connection, std::vector<std::string> statements) {
    for (const std::string& statement : statements) {
        try {
            co_await connection.Execute(statement);
            co_return;
        } catch (const database::Error& error) {
            if (error.ConnectionLost())
                throw;
        }
    }
}

gui::Task<std::vector<std::string>> Names(Connection& connection, std::string sql) {
    std::vector<std::string> names;
    const database::Answer rows = co_await connection.ReadAll(sql);
    for (std::size_t row = 0; row < rows.Count(); ++row)
        names.push_back(rows.At(row, 0).AsText());
    co_return names;
}

gui::Task<std::vector<Column>> Columns(Connection& connection, std::string sql) {
    std::vector<Column> columns;
    const database::Answer rows = co_await connection.ReadAll(sql);
    for (std::size_t row = 0; row < rows.Count(); ++row) {
        // Looked up by name: servers add fields of their own between these.
        const auto field = [&](const char* name) { return rows.At(row, rows.Position(name)); };
        const database::Value defaultValue = field("Default");
        columns.push_back(
            {.field = field("Field").AsText(),
             .type = field("Type").AsText(),
             .null = field("Null").AsText(),
             .key = field("Key").AsText(),
             .defaultValue = defaultValue.IsNull() ? std::nullopt : std::optional(defaultValue.AsText()),
             .extra = field("Extra").AsText()});
    }
    co_return columns;
}

constexpr const char* kShowDatabases = "SHOW DATABASES;";

std::string ShowTables(const std::string& database) {
    return "SHOW TABLES FROM " + database + ";";
}

std::string ShowColumns(const std::string& database, const std::string& table) {
    return "SHOW COLUMNS FROM " + database + "." + table;
}

/// Of the other engines one loses its rows when the server ends, and another has none of its own.
bool KeepsRows(const std::string& engine) {
    constexpr const char* kEngines[] = {"MyISAM", "InnoDB", "Aria"};
    return std::ranges::find(kEngines, engine) != std::end(kEngines);
}

/// Has the destination make databases in the character set of the source's: texts that are different in one
/// may be the same in another, or not exist there. Old servers do not tell.
gui::Task<> UseCollationOf(Connection& source, std::string database, Connection& destination) {
    const std::string question =
        "SELECT DEFAULT_COLLATION_NAME FROM information_schema.SCHEMATA WHERE SCHEMA_NAME = '" + database +
        "'";
    try {
        const database::Value collation = co_await source.Scalar(question);
        const std::string name = collation.IsNull() ? "" : collation.AsText();
        if (name.empty())
            co_return;
        std::vector<std::string> statements{"SET SESSION collation_server = " + name,
                                            "SET SESSION character_set_server = " +
                                                name.substr(0, name.find('_'))};
        co_await ExecuteKnown(destination, std::move(statements));
    } catch (const database::Error& error) {
        if (error.ConnectionLost())
            throw;
    }
}

gui::Task<> UseEngine(Connection& destination, std::string engine) {
    // Old servers call it by another name.
    std::vector<std::string> statements{"SET SESSION default_storage_engine = " + engine,
                                        "SET SESSION storage_engine = " + engine};
    co_await ExecuteKnown(destination, std::move(statements));
}

/// Has the next table made with the engine of the source's: the suite's tables are to stay MyISAM, whose
/// files a file backup copies, also where a server's own choice is another one. A destination that lacks the
/// engine uses its own, as does a view's copy.
gui::Task<> UseEngineOf(Connection& source, std::string database, std::string table,
                        Connection& destination) {
    try {
        // The choice for the table before would stay in force.
        co_await UseEngine(destination, "DEFAULT");
        const database::Answer status = co_await source.ReadAll("SHOW TABLE STATUS FROM " + database);
        for (std::size_t row = 0; row < status.Count(); ++row) {
            const std::string engine = status.At(row, status.Position("Engine")).AsText();
            if (status.At(row, status.Position("Name")).AsText() == table && KeepsRows(engine))
                co_await UseEngine(destination, engine);
        }
    } catch (const database::Error& error) {
        // Nor do all of them tell a table's engine under this name.
        if (error.ConnectionLost())
            throw;
    }
}

/// The names by which values are given to the columns of a table that exists.
gui::Task<std::vector<std::string>> ColumnNames(Connection& connection, std::string table) {
    const database::Answer none = co_await connection.ReadAll("SELECT * FROM " + table + " LIMIT 0");
    std::vector<std::string> names;
    for (const database::Column& column : none.columns)
        names.push_back(column.name);
    co_return names;
}

} // namespace

std::string supervision::ColumnList(const std::vector<Column>& columns) {
    std::string list;
    for (const Column& column : columns) {
        // Servers have written this word in several ways.
        const bool null = common::EqualsIgnoreCase(column.null, "Yes");
        list += "`" + column.field + "` " + column.type + " " + (null ? "NULL" : "NOT NULL") + " " +
                column.extra + (column.key == "PRI" ? " PRIMARY KEY" : "") + ",";
    }
    if (!list.empty())
        list.pop_back();
    return list;
}

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
    std::vector<std::string> statements{kSameTimeZone};
    co_await ExecuteKnown(source_, std::move(statements));
    co_return std::int16_t{1};
}

Status clsMySQLCopyDatabase::ConnectDestination() {
    co_await destination_.Open(
        database::MySQLConnectionString(DestinationHostname(), DestinationUsername(), DestinationPassword()));
    std::vector<std::string> sameTimeZone{kSameTimeZone};
    co_await ExecuteKnown(destination_, std::move(sameTimeZone));
    std::vector<std::string> mode{kValuesAsTheyAre, kKeepZeros};
    co_await ExecuteKnown(destination_, std::move(mode));
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
    // All names before anything is dropped: a source that does not answer costs no copy.
    const std::vector<std::string> tables = co_await Names(source_, ShowTables(SourceDatabase));
    co_await UseCollationOf(source_, SourceDatabase, destination_);
    if (!NoDBDelete)
        co_await destination_.Execute("DROP DATABASE IF EXISTS " + DestinationDatabase + ";");
    co_await destination_.Execute("CREATE DATABASE IF NOT EXISTS " + DestinationDatabase + ";");
    for (const std::string& table : tables) {
        const std::int16_t copied = co_await CopyTable(SourceDatabase, table, DestinationDatabase, table);
        if (!copied)
            co_return std::int16_t{0};
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
    const std::string from = SourceDatabase + "." + SourceTable;
    const std::string to = DestinationDatabase + "." + DestinationTable;
    Progress(SourceTable, 0);
    const std::vector<Column> layout = co_await Columns(source_, ShowColumns(SourceDatabase, SourceTable));
    co_await UseEngineOf(source_, SourceDatabase, SourceTable, destination_);
    // The source has answered in full before the destination is touched.
    database::BlockReader rows(source_);
    co_await rows.Open("SELECT * FROM " + from);
    co_await destination_.Execute("USE " + DestinationDatabase + ";");
    if (!NoDelete)
        co_await destination_.Execute("DROP TABLE IF EXISTS " + to);
    co_await destination_.Execute("CREATE TABLE IF NOT EXISTS " + to + " (" +
                                  supervision::ColumnList(layout) + ");");

    std::vector<std::string> columns = co_await ColumnNames(destination_, to);
    database::RowStore block(rows.Columns().size(), database::TextForm::Utf8);
    block = co_await rows.Read(std::move(block));
    if (block.Rows() > 0 && columns.size() < rows.Columns().size())
        database::Raise(database::kItemNotFound);
    columns.resize(rows.Columns().size());
    database::Transaction transaction(destination_);
    co_await transaction.Begin();
    database::BlockInserter inserter(destination_);
    co_await inserter.Open(to, columns);
    while (block.Rows() > 0) {
        block = co_await inserter.Insert(std::move(block));
        Progress(SourceTable, inserter.Sent());
        co_await gui::NextTurn();
        block.Clear();
        block = co_await rows.Read(std::move(block));
    }
    co_await transaction.Commit();
    co_return std::int16_t{1};
}

gui::Task<> clsMySQLCopyDatabase::CheckSource(std::string SourceDatabase) {
    const std::vector<std::string> tables = co_await Names(source_, ShowTables(SourceDatabase));
    std::string list;
    for (const std::string& table : tables)
        list += (list.empty() ? "" : ", ") + SourceDatabase + "." + database::Quoted(table);
    if (list.empty())
        co_return;
    const database::Answer answer = co_await source_.ReadAll("CHECK TABLE " + list);
    for (std::size_t row = 0; row < answer.Count(); ++row) {
        const auto text = [&](const char* name) { return answer.At(row, answer.Position(name)).AsText(); };
        // Notes and warnings tell of tables that are open, or of an engine that has nothing to check.
        if (common::EqualsIgnoreCase(text("Msg_type"), "error"))
            throw RuntimeError(kTableDamaged, text("Table") + " is damaged: " + text("Msg_text") +
                                                  ". It is not copied; the earlier copy stays");
    }
}

NameList clsMySQLCopyDatabase::ListOf(Connection& side, const char* missing, std::string sql) {
    if (!Require(side, missing))
        co_return std::vector<std::string>{};
    std::vector<std::string> names = co_await Names(side, sql);
    co_return names;
}

ColumnTask clsMySQLCopyDatabase::ColumnsOf(Connection& side, const char* missing, std::string sql) {
    if (!Require(side, missing))
        co_return std::vector<Column>{};
    std::vector<Column> columns = co_await Columns(side, sql);
    co_return columns;
}

NameList clsMySQLCopyDatabase::GetSourceDatabaseList() {
    return ListOf(source_, kNoSource, kShowDatabases);
}

NameList clsMySQLCopyDatabase::GetSourceTableList(std::string SourceDatabase) {
    return ListOf(source_, kNoSource, ShowTables(SourceDatabase));
}

ColumnTask clsMySQLCopyDatabase::GetSourceColumnList(std::string SourceDatabase, std::string SourceTable) {
    return ColumnsOf(source_, kNoSource, ShowColumns(SourceDatabase, SourceTable) + ";");
}

NameList clsMySQLCopyDatabase::GetDestinationDatabaseList() {
    return ListOf(destination_, kNoDestination, kShowDatabases);
}

NameList clsMySQLCopyDatabase::GetDestinationTableList(std::string DestinationDatabase) {
    return ListOf(destination_, kNoDestination, ShowTables(DestinationDatabase));
}

ColumnTask clsMySQLCopyDatabase::GetDestinationColumnList(std::string DestinationDatabase,
                                                          std::string DestinationTable) {
    return ColumnsOf(destination_, kNoDestination, ShowColumns(DestinationDatabase, DestinationTable) + ";");
}
