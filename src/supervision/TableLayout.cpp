#include "supervision/TableLayout.h"

#include "common/Text.h"
#include "database/Error.h"
#include "supervision/TableCheck.h"

#include <algorithm>

namespace supervision {

namespace {

using database::SessionPtr;
using database::TextForm;

/// A word of the server's that becomes part of a statement; "" for one that is more than a word.
std::string PlainWord(const std::string& word) {
    const bool plain = std::ranges::all_of(word, [](char letter) {
        return letter == '_' || (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z') ||
               (letter >= 'A' && letter <= 'Z');
    });
    return plain ? word : "";
}

/// Of the other engines one loses its rows when the server ends, and another has none of its own.
bool KeepsRows(const std::string& engine) {
    constexpr const char* kEngines[] = {"MyISAM", "InnoDB", "Aria"};
    return std::ranges::find(kEngines, engine) != std::end(kEngines);
}

/// Old servers call it by another name. One that lacks the engine uses its own.
void UseEngine(const SessionPtr& session, const std::string& engine) {
    ExecuteKnown(session, {"SET SESSION default_storage_engine = " + engine,
                           "SET SESSION storage_engine = " + engine});
}

} // namespace

std::string ColumnList(const std::vector<Column>& columns) {
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

std::string ShowColumns(const Place& place) {
    return "SHOW COLUMNS FROM " + place.Name();
}

std::vector<Column> Columns(const SessionPtr& session, const std::string& sql, TextForm form) {
    std::vector<Column> columns;
    const database::Answer answer = database::ReadAll(session, sql, {}, form);
    for (std::size_t row = 0; row < answer.Count(); ++row) {
        // Looked up by name: servers add fields of their own between these.
        const auto field = [&](const char* name) { return answer.At(row, answer.Position(name)); };
        const database::Value defaultValue = field("Default");
        columns.push_back(
            {.field = field("Field").AsText(),
             .type = field("Type").AsText(),
             .null = field("Null").AsText(),
             .key = field("Key").AsText(),
             .defaultValue = defaultValue.IsNull() ? std::nullopt : std::optional(defaultValue.AsText()),
             .extra = field("Extra").AsText()});
    }
    return columns;
}

TableLayout LayoutOf(const SessionPtr& session, const Place& place) {
    TableLayout layout{Columns(session, ShowColumns(place), TextForm::Utf8), {}, {}};
    try {
        const database::Answer status =
            database::ReadAll(session, "SHOW TABLE STATUS FROM " + place.database);
        for (std::size_t row = 0; row < status.Count(); ++row) {
            const auto word = [&](const char* name) {
                const database::Value told = status.At(row, status.Position(name));
                return told.IsNull() ? "" : PlainWord(told.AsText());
            };
            if (status.At(row, status.Position("Name")).AsText() != place.table)
                continue;
            layout.engine = word("Engine");
            layout.collation = word("Collation");
        }
    } catch (const database::Error& error) {
        // Old servers do not tell it under these names.
        if (error.ConnectionLost())
            throw;
    }
    return layout;
}

std::string CollationOf(const SessionPtr& session, const std::string& database) {
    try {
        const database::Answer answer = database::ReadAll(
            session, "SELECT DEFAULT_COLLATION_NAME FROM information_schema.SCHEMATA WHERE SCHEMA_NAME = ?",
            {database});
        const database::Value told = answer.Count() > 0 ? answer.At(0, 0) : database::Value();
        return told.IsNull() ? "" : PlainWord(told.AsText());
    } catch (const database::Error& error) {
        // Servers before 5.0 have no table that tells.
        if (error.ConnectionLost())
            throw;
        return {};
    }
}

std::string CharacterSetOf(const std::string& collation) {
    return collation.substr(0, collation.find('_'));
}

void SetCollation(const SessionPtr& session, const std::string& database, const std::string& collation) {
    if (!collation.empty() && collation != CollationOf(session, database))
        ExecuteKnown(session, {"ALTER DATABASE " + database + " COLLATE " + collation,
                               "ALTER DATABASE " + database + " CHARACTER SET " + CharacterSetOf(collation)});
}

std::vector<std::string> MakeTable(const SessionPtr& session, const Place& place, const TableLayout& layout,
                                   bool keep) {
    // The choice for the table before would stay in force.
    UseEngine(session, "DEFAULT");
    if (KeepsRows(layout.engine))
        UseEngine(session, layout.engine);
    database::Execute(session, "USE " + place.database + ";");
    if (!keep)
        database::Execute(session, "DROP TABLE IF EXISTS " + place.Name());
    database::Execute(session,
                      "CREATE TABLE IF NOT EXISTS " + place.Name() + " (" + ColumnList(layout.columns) + ");",
                      TextForm::Utf8);
    std::vector<std::string> names;
    const database::RowReader none(session, "SELECT * FROM " + place.Name() + " LIMIT 0");
    for (const database::Column& column : none.Columns())
        names.push_back(column.name);
    return names;
}

} // namespace supervision
