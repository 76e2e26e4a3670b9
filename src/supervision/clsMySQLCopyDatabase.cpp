#include "supervision/clsMySQLCopyDatabase.h"

#include "common/RuntimeError.h"
#include "common/Text.h"
#include "database/Blocks.h"
#include "database/Error.h"
#include "database/Recordset.h"
#include "database/Transaction.h"
#include "gui/RunNow.h"

#include <algorithm>
#include <initializer_list>

namespace {

using database::Connection;
using database::Recordset;
using Column = clsMySQLCopyDatabase::Column;

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
void ExecuteKnown(Connection& connection, std::initializer_list<std::string> statements) {
    for (const std::string& statement : statements) {
        try {
            gui::RunNow(connection.Execute(statement));
            return;
        } catch (const database::Error& error) {
            if (error.ConnectionLost())
                throw;
        }
    }
}

std::vector<std::string> Names(Connection& connection, const std::string& sql) {
    std::vector<std::string> names;
    Recordset rows;
    for (gui::RunNow(rows.Open(connection, sql)); !rows.Eof(); rows.MoveNext())
        names.push_back(rows.Field(0).AsText());
    return names;
}

std::vector<Column> Columns(Connection& connection, const std::string& sql) {
    std::vector<Column> columns;
    Recordset rows;
    for (gui::RunNow(rows.Open(connection, sql)); !rows.Eof(); rows.MoveNext()) {
        // Looked up by name: servers add fields of their own between these.
        const database::Value defaultValue = rows.Field("Default");
        columns.push_back(
            {.field = rows.Field("Field").AsText(),
             .type = rows.Field("Type").AsText(),
             .null = rows.Field("Null").AsText(),
             .key = rows.Field("Key").AsText(),
             .defaultValue = defaultValue.IsNull() ? std::nullopt : std::optional(defaultValue.AsText()),
             .extra = rows.Field("Extra").AsText()});
    }
    return columns;
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
void UseCollationOf(Connection& source, const std::string& database, Connection& destination) {
    try {
        const database::Value collation = gui::RunNow(source.Scalar(
            "SELECT DEFAULT_COLLATION_NAME FROM information_schema.SCHEMATA WHERE SCHEMA_NAME = '" +
            database + "'"));
        const std::string name = collation.IsNull() ? "" : collation.AsText();
        if (!name.empty())
            ExecuteKnown(destination,
                         {"SET SESSION collation_server = " + name,
                          "SET SESSION character_set_server = " + name.substr(0, name.find('_'))});
    } catch (const database::Error& error) {
        if (error.ConnectionLost())
            throw;
    }
}

/// Has the next table made with the engine of the source's: the suite's tables are to stay MyISAM, whose
/// files a file backup copies, also where a server's own choice is another one. A destination that lacks the
/// engine uses its own, as does a view's copy.
void UseEngineOf(Connection& source, const std::string& database, const std::string& table,
                 Connection& destination) {
    // Old servers call it by another name.
    const auto use = [&destination](const std::string& engine) {
        ExecuteKnown(destination, {"SET SESSION default_storage_engine = " + engine,
                                   "SET SESSION storage_engine = " + engine});
    };
    try {
        // The choice for the table before would stay in force.
        use("DEFAULT");
        Recordset status;
        for (gui::RunNow(status.Open(source, "SHOW TABLE STATUS FROM " + database)); !status.Eof();
             status.MoveNext()) {
            const std::string engine = status.Field("Engine").AsText();
            if (status.Field("Name").AsText() == table && KeepsRows(engine))
                use(engine);
        }
    } catch (const database::Error& error) {
        // Nor do all of them tell a table's engine under this name.
        if (error.ConnectionLost())
            throw;
    }
}

/// The names by which values are given to the columns of a table that exists.
std::vector<std::string> ColumnNames(Connection& connection, const std::string& table) {
    const database::Answer none = gui::RunNow(connection.ReadAll("SELECT * FROM " + table + " LIMIT 0"));
    std::vector<std::string> names;
    for (const database::Column& column : none.columns)
        names.push_back(column.name);
    return names;
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

bool clsMySQLCopyDatabase::Progress(const std::string& table, std::size_t rows) const {
    return !CopyProgress || CopyProgress(table, rows);
}

std::int16_t clsMySQLCopyDatabase::ConnectSource() {
    gui::RunNow(
        source_.Open(database::MySQLConnectionString(SourceHostname(), SourceUsername(), SourcePassword())));
    ExecuteKnown(source_, {kSameTimeZone});
    return 1;
}

std::int16_t clsMySQLCopyDatabase::ConnectDestination() {
    gui::RunNow(destination_.Open(database::MySQLConnectionString(
        DestinationHostname(), DestinationUsername(), DestinationPassword())));
    ExecuteKnown(destination_, {kSameTimeZone});
    ExecuteKnown(destination_, {kValuesAsTheyAre, kKeepZeros});
    return 1;
}

std::int16_t clsMySQLCopyDatabase::DisconnectSource() {
    source_.Close();
    return 1;
}

std::int16_t clsMySQLCopyDatabase::DisconnectDestination() {
    destination_.Close();
    return 1;
}

std::int16_t clsMySQLCopyDatabase::CopyDatabase(const std::string& SourceDatabase,
                                                const std::string& DestinationDatabase, bool NoDBDelete) {
    if (!RequireBoth())
        return 0;
    // All names before anything is dropped: a source that does not answer costs no copy.
    const std::vector<std::string> tables = Names(source_, ShowTables(SourceDatabase));
    UseCollationOf(source_, SourceDatabase, destination_);
    if (!NoDBDelete)
        gui::RunNow(destination_.Execute("DROP DATABASE IF EXISTS " + DestinationDatabase + ";"));
    gui::RunNow(destination_.Execute("CREATE DATABASE IF NOT EXISTS " + DestinationDatabase + ";"));
    for (const std::string& table : tables) {
        if (!CopyTable(SourceDatabase, table, DestinationDatabase, table))
            return 0;
    }
    return 1;
}

std::int16_t clsMySQLCopyDatabase::CopyTable(const std::string& SourceDatabase,
                                             const std::string& SourceTable,
                                             const std::string& DestinationDatabase,
                                             const std::string& DestinationTable, bool NoDelete,
                                             bool FlushFirst) {
    if (!RequireBoth())
        return 0;
    if (FlushFirst)
        gui::RunNow(source_.Execute("FLUSH TABLES;"));
    const std::string from = SourceDatabase + "." + SourceTable;
    const std::string to = DestinationDatabase + "." + DestinationTable;
    if (!Progress(SourceTable, 0))
        return 0;
    const std::string list =
        supervision::ColumnList(Columns(source_, ShowColumns(SourceDatabase, SourceTable)));
    UseEngineOf(source_, SourceDatabase, SourceTable, destination_);
    // The source has answered in full before the destination is touched.
    database::BlockReader rows(source_);
    gui::RunNow(rows.Open("SELECT * FROM " + from));
    gui::RunNow(destination_.Execute("USE " + DestinationDatabase + ";"));
    if (!NoDelete)
        gui::RunNow(destination_.Execute("DROP TABLE IF EXISTS " + to));
    gui::RunNow(destination_.Execute("CREATE TABLE IF NOT EXISTS " + to + " (" + list + ");"));

    std::vector<std::string> columns = ColumnNames(destination_, to);
    database::RowStore block(rows.Columns().size(), database::TextForm::Utf8);
    block = gui::RunNow(rows.Read(std::move(block)));
    if (block.Rows() > 0 && columns.size() < rows.Columns().size())
        database::Raise(database::kItemNotFound);
    columns.resize(rows.Columns().size());
    database::Transaction transaction(destination_);
    gui::RunNow(transaction.Begin());
    database::BlockInserter inserter(destination_);
    gui::RunNow(inserter.Open(to, columns));
    while (block.Rows() > 0) {
        block = gui::RunNow(inserter.Insert(std::move(block)));
        if (!Progress(SourceTable, inserter.Sent()))
            return 0;
        block.Clear();
        block = gui::RunNow(rows.Read(std::move(block)));
    }
    gui::RunNow(transaction.Commit());
    return 1;
}

void clsMySQLCopyDatabase::CheckSource(const std::string& SourceDatabase) {
    std::string list;
    for (const std::string& table : Names(source_, ShowTables(SourceDatabase)))
        list += (list.empty() ? "" : ", ") + SourceDatabase + "." + database::Quoted(table);
    if (list.empty())
        return;
    const database::Answer answer = gui::RunNow(source_.ReadAll("CHECK TABLE " + list));
    for (std::size_t row = 0; row < answer.Count(); ++row) {
        const auto text = [&](const char* name) { return answer.At(row, answer.Position(name)).AsText(); };
        // Notes and warnings tell of tables that are open, or of an engine that has nothing to check.
        if (common::EqualsIgnoreCase(text("Msg_type"), "error"))
            throw RuntimeError(kTableDamaged, text("Table") + " is damaged: " + text("Msg_text") +
                                                  ". It is not copied; the earlier copy stays");
    }
}

std::vector<std::string> clsMySQLCopyDatabase::GetSourceDatabaseList() {
    return Require(source_, kNoSource) ? Names(source_, kShowDatabases) : std::vector<std::string>{};
}

std::vector<std::string> clsMySQLCopyDatabase::GetSourceTableList(const std::string& SourceDatabase) {
    return Require(source_, kNoSource) ? Names(source_, ShowTables(SourceDatabase))
                                       : std::vector<std::string>{};
}

std::vector<Column> clsMySQLCopyDatabase::GetSourceColumnList(const std::string& SourceDatabase,
                                                              const std::string& SourceTable) {
    return Require(source_, kNoSource) ? Columns(source_, ShowColumns(SourceDatabase, SourceTable) + ";")
                                       : std::vector<Column>{};
}

std::vector<std::string> clsMySQLCopyDatabase::GetDestinationDatabaseList() {
    return Require(destination_, kNoDestination) ? Names(destination_, kShowDatabases)
                                                 : std::vector<std::string>{};
}

std::vector<std::string>
clsMySQLCopyDatabase::GetDestinationTableList(const std::string& DestinationDatabase) {
    return Require(destination_, kNoDestination) ? Names(destination_, ShowTables(DestinationDatabase))
                                                 : std::vector<std::string>{};
}

std::vector<Column> clsMySQLCopyDatabase::GetDestinationColumnList(const std::string& DestinationDatabase,
                                                                   const std::string& DestinationTable) {
    return Require(destination_, kNoDestination)
               ? Columns(destination_, ShowColumns(DestinationDatabase, DestinationTable) + ";")
               : std::vector<Column>{};
}
