#pragma once

#include "database/Query.h"

#include <optional>
#include <string>
#include <vector>

/// How the copier learns what a table is like, and makes one like it, aside. All of it raises
/// database::Error.
namespace supervision {

/// A column as the server describes it.
struct Column {
    std::string field;
    std::string type;
    std::string null; ///< "YES" where it may be null
    std::string key;  ///< "PRI" where it belongs to the primary key
    std::optional<std::string> defaultValue;
    std::string extra;
};

/// A table's database and name.
struct Place {
    std::string database;
    std::string table;

    std::string Name() const { return database + "." + table; }
};

/// What a table is like; the texts in UTF-8.
struct TableLayout {
    std::vector<Column> columns;
    std::string engine;    ///< "" where the server does not tell, and for a view
    std::string collation; ///< its character set and order; "" where the server does not tell
};

/// The columns as the definition of a table lists them: without default values, each column of a primary key
/// marked as one by itself.
std::string ColumnList(const std::vector<Column>& columns);

/// "SHOW COLUMNS FROM glogin.account"
std::string ShowColumns(const Place& place);

/// The columns that SHOW COLUMNS tells. In UTF-8 the values of an enum survive in every language.
std::vector<Column> Columns(const database::SessionPtr& session, const std::string& sql,
                            database::TextForm form);

TableLayout LayoutOf(const database::SessionPtr& session, const Place& place);

/// The character set and order of a database; "" when the server does not tell.
std::string CollationOf(const database::SessionPtr& session, const std::string& database);

/// "utf8mb4" of "utf8mb4_bin": a collation's name begins with its character set's.
std::string CharacterSetOf(const std::string& collation);

/// Has the tables that are made in a database from now on be of this character set and order, or of this
/// character set where the server knows the order by another name. Nothing happens for "".
void SetCollation(const database::SessionPtr& session, const std::string& database,
                  const std::string& collation);

/// Makes the table, with its engine where that keeps rows in a table: MyISAM, whose files a file backup
/// copies, InnoDB and Aria. A table of another engine, and a view's copy, get the server's own. Unless `keep`
/// it replaces one that is there. Returns the names by which values are given to its columns.
std::vector<std::string> MakeTable(const database::SessionPtr& session, const Place& place,
                                   const TableLayout& layout, bool keep);

} // namespace supervision
