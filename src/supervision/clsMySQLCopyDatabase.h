#pragma once

#include "common/Property.h"
#include "database/Connection.h"
#include "supervision/TableLayout.h"
#include "supervision/TableSum.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Copies tables and whole databases from one MySQL server to another over two connections. A copied table
/// has the columns of the source, its primary key where that is one column, its engine where the destination
/// knows it, its character set, and no default values and no other keys; tables, indexes and rights of the
/// source are never changed.
///
/// The operations return 1 when they are done and 0 when they are not. What server or driver report is raised
/// (database::Error); only a missing connection is told by SQLCopyError. One operation at a time.
class clsMySQLCopyDatabase {
public:
    using Status = gui::Task<std::int16_t>;
    using Column = supervision::Column;
    using NameList = gui::Task<std::vector<std::string>>;
    using ColumnTask = gui::Task<std::vector<Column>>;

    /// The number of SQLCopyError.
    static constexpr long kNotConnected = 12345;

    common::Property<std::string> SourceHostname;
    common::Property<std::string> SourceUsername;
    common::Property<std::string> SourcePassword;
    common::Property<std::string> DestinationHostname;
    common::Property<std::string> DestinationUsername;
    common::Property<std::string> DestinationPassword;

    bool SourceConnected() const { return source_.IsOpen(); }
    bool DestinationConnected() const { return destination_.IsOpen(); }

    /// A side has no connection.
    std::function<void(long number, const std::string& description)> SQLCopyError;

    /// Told of every table that is begun, and after each block of at most a thousand rows how many have
    /// arrived.
    std::function<void(const std::string& table, std::size_t rows)> CopyProgress;

    /// Connects with the properties, anew when there is a connection. Raises when the server declines.
    Status ConnectSource();
    Status ConnectDestination();
    std::int16_t DisconnectSource();
    std::int16_t DisconnectDestination();

    /// Makes the table and copies all rows, field by field in their order whatever the columns' names.
    /// `NoDelete` keeps a table that is there and adds to it; `FlushFirst` makes the source write what its
    /// tables hold in memory. A primary key of several columns is marked at each of them, which servers
    /// reject. Where it is ended in the middle, an engine with transactions keeps none of the table's rows,
    /// any other those that have arrived.
    Status CopyTable(std::string SourceDatabase, std::string SourceTable, std::string DestinationDatabase,
                     std::string DestinationTable, bool NoDelete = false, bool FlushFirst = false);

    /// Copies every table under its own name. Without `NoDBDelete` the destination is dropped first, so that
    /// a copy that fails has also lost the one before it.
    Status CopyDatabase(std::string SourceDatabase, std::string DestinationDatabase, bool NoDBDelete = false);

    /// What the tables that the last CopyDatabase has copied came to while their rows passed.
    const supervision::TableSums& Copied() const { return copied_; }
    /// What the tables of a database at the destination come to when they are read now.
    gui::Task<supervision::TableSums> ReadBack(std::string DestinationDatabase);

    /// The two sides, for what is asked of them beside copying.
    database::Connection& Source() { return source_; }
    database::Connection& Destination() { return destination_; }

    /// Empty without a connection.
    NameList GetSourceDatabaseList();
    NameList GetSourceTableList(std::string SourceDatabase);
    ColumnTask GetSourceColumnList(std::string SourceDatabase, std::string SourceTable);
    NameList GetDestinationDatabaseList();
    NameList GetDestinationTableList(std::string DestinationDatabase);
    ColumnTask GetDestinationColumnList(std::string DestinationDatabase, std::string DestinationTable);

private:
    bool RequireBoth() const;
    bool Require(const database::Connection& side, const char* description) const;
    NameList ListOf(database::Connection& side, const char* missing, std::string sql);
    ColumnTask ColumnsOf(database::Connection& side, const char* missing, std::string sql);
    void Progress(const std::string& table, std::size_t rows) const;
    gui::Task<> Transfer(supervision::Place from, supervision::Place to, bool keep, bool ownDatabase);

    database::Connection source_;
    database::Connection destination_;
    supervision::TableSums copied_;
};
