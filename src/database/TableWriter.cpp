#include "database/TableWriter.h"

#include "common/Text.h"
#include "database/Error.h"

#include <algorithm>

namespace database {

bool SameValue(const Value& a, const Value& b) {
    if (a.IsNull() || b.IsNull() || a.Get().index() == b.Get().index())
        return a == b;
    return a.AsText() == b.AsText();
}

TableWriter::TableWriter(SessionPtr session, std::vector<Column> columns, std::vector<std::size_t> identity)
    : session_(std::move(session)), columns_(std::move(columns)), identity_(std::move(identity)) {
    if (columns_.empty() || columns_.front().baseTable.empty())
        Raise(kReadOnly);
    const Column& first = columns_.front();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (columns_[i].baseTable != first.baseTable || columns_[i].baseDatabase != first.baseDatabase ||
            columns_[i].baseName.empty())
            Raise(kReadOnly);
        if (columns_[i].autoNumber)
            autoNumber_ = i;
    }
    table_ = first.baseDatabase.empty() ? "" : Quoted(first.baseDatabase) + ".";
    table_ += Quoted(first.baseTable);

    const std::vector<std::string> names = PrimaryKey();
    for (const std::string& name : names) {
        const auto at = std::ranges::find(columns_, name, &Column::baseName);
        if (at != columns_.end())
            key_.push_back(static_cast<std::size_t>(at - columns_.begin()));
    }
    // The query may have left out columns of the key, and those that it read can be alike in several rows.
    hasKey_ = !names.empty() && key_.size() == names.size();
    if (!hasKey_) {
        key_.clear();
        for (std::size_t i = 0; i < columns_.size(); ++i)
            key_.push_back(i);
    }
}

std::vector<std::string> TableWriter::PrimaryKey() const {
    const Answer keys = ReadAll(session_, "SHOW KEYS FROM " + table_);
    const std::size_t key = keys.Position("Key_name");
    const std::size_t column = keys.Position("Column_name");
    std::vector<std::string> names;
    for (std::size_t row = 0; row < keys.Count(); ++row) {
        if (keys.At(row, key) == Value("PRIMARY"))
            names.push_back(keys.At(row, column).AsText());
    }
    return names;
}

bool TableWriter::GivesKey(const Fields& set) const {
    return hasKey_ && std::ranges::all_of(key_, [&set](std::size_t column) {
               return set[column].has_value() && !set[column]->IsNull();
           });
}

bool TableWriter::AreSameRow(const Before& one, const Before& other) const {
    const auto differs = [&](std::size_t column) {
        const auto a = one(column);
        const auto b = other(column);
        return !a || !b || !SameValue(*a, *b);
    };
    return std::ranges::none_of(key_, differs) && std::ranges::none_of(identity_, differs);
}

void TableWriter::AddTest(Clause& clause, std::size_t column, const Value& value) const {
    clause.sql += (clause.sql.empty() ? "" : " AND ") + Name(column) + " <=> ?";
    clause.values.push_back(value);
}

void TableWriter::AddIdentity(Clause& clause, const Before& before) const {
    for (const std::size_t column : identity_) {
        const auto value = before(column);
        if (!value)
            continue;
        // The server's own comparison takes "Bob " for "bob".
        const auto exactly = [](const std::string& text) { return "HEX(CONVERT(" + text + " USING utf8))"; };
        clause.sql += " AND " + exactly(Name(column)) + " <=> " + exactly("?");
        clause.values.push_back(*value);
    }
}

TableWriter::Clause TableWriter::Address(const Before& before) const {
    Clause clause;
    for (const std::size_t column : key_) {
        if (const auto value = before(column))
            AddTest(clause, column, *value);
    }
    // A row of which nothing is known cannot be found.
    if (clause.sql.empty())
        Raise(kRowChanged);
    return clause;
}

std::optional<Answer> TableWriter::Find(const Clause& where) const {
    std::string names;
    for (std::size_t i = 0; i < columns_.size(); ++i)
        names += (i == 0 ? "" : ",") + Name(i);
    Answer rows = ReadAll(
        session_, "SELECT " + names + " FROM " + table_ + " WHERE " + where.sql + " LIMIT 1", where.values);
    if (rows.Count() == 0)
        return std::nullopt;
    return rows;
}

/// The row that has the key and identity of `before`.
std::optional<Answer> TableWriter::FindSame(const Before& before) const {
    auto row = Find(Address(before));
    for (const std::size_t column : identity_) {
        const auto value = before(column);
        if (row && value && !SameValue(row->At(0, column), *value))
            row.reset();
    }
    return row;
}

std::int64_t TableWriter::Send(const std::string& sql, const std::vector<Value>& values) {
    // A statement that fails is not used again.
    std::unique_ptr<odbc::Statement> statement = std::move(statement_);
    if (!statement || sql != sql_) {
        statement = std::make_unique<odbc::Statement>(session_);
        statement->Prepare(sql);
        sql_ = sql;
    }
    parameters_.Fill(session_->WideText(), 1, values.size(),
                     [&values](std::size_t, std::size_t column) { return Cell::Of(values[column]); });
    parameters_.BindRows(*statement);
    statement->Execute();
    statement_ = std::move(statement);
    return statement_->RowCount();
}

std::int64_t TableWriter::SendUpdate(const Fields& set, const Clause& where) {
    std::string assignments;
    std::vector<Value> values;
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (!set[i])
            continue;
        assignments += (assignments.empty() ? "" : ",") + Name(i) + "=?";
        values.push_back(*set[i]);
    }
    values.insert(values.end(), where.values.begin(), where.values.end());
    return Send("UPDATE " + table_ + " SET " + assignments + " WHERE " + where.sql + " LIMIT 1", values);
}

void TableWriter::RaiseChanged(const Clause& address) const {
    std::string row;
    if (hasKey_) {
        for (std::size_t i = 0; i < key_.size(); ++i)
            row += ", " + columns_[key_[i]].baseName + " " + address.values[i].AsText();
    }
    Raise(kRowChanged, " (" + columns_.front().baseTable + row + ")");
}

Value TableWriter::Insert(const Fields& set, bool inDoubt) {
    std::string names;
    std::string marks;
    std::vector<Value> values;
    Clause same;
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (!set[i])
            continue;
        names += (names.empty() ? "" : ",") + Name(i);
        marks += marks.empty() ? "?" : ",?";
        values.push_back(*set[i]);
        AddTest(same, i, *set[i]);
    }
    const bool numbered = autoNumber_ && !set[*autoNumber_];
    if (inDoubt && !same.sql.empty()) {
        if (const auto row = Find(same))
            return numbered ? row->At(0, *autoNumber_) : Value();
    }
    Send("INSERT INTO " + table_ + " (" + names + ") VALUES (" + marks + ")", values);
    if (!numbered)
        return {};
    return Scalar(session_, "SELECT LAST_INSERT_ID()").AsInteger();
}

void TableWriter::Update(const Before& before, const Fields& set, bool inDoubt) {
    const Clause address = Address(before);
    Clause unchanged = address;
    AddIdentity(unchanged, before);
    for (std::size_t i = 0; i < set.size(); ++i) {
        const bool addressed =
            std::ranges::find(key_, i) != key_.end() || std::ranges::find(identity_, i) != identity_.end();
        if (const auto value = set[i] && !addressed ? before(i) : std::nullopt)
            AddTest(unchanged, i, *value);
    }
    if (SendUpdate(set, unchanged) > 0)
        return;

    // No row met, or the driver counts only rows that became different, or a value does not compare equal
    // to itself after its journey (characters that the code page lacks): look at the row.
    const auto matches = [&](const Answer& row, const Before& expected) {
        for (std::size_t i = 0; i < set.size(); ++i) {
            const auto value = set[i] ? expected(i) : std::nullopt;
            if (value && !SameValue(row.At(0, i), *value))
                return false;
        }
        return true;
    };
    const Before after = [&](std::size_t column) { return set[column] ? set[column] : before(column); };
    auto row = FindSame(before);
    if (!row && inDoubt)
        row = FindSame(after);
    if (!row)
        RaiseChanged(address);
    if (matches(*row, after))
        return;
    if (!matches(*row, before) || SendUpdate(set, address) == 0)
        RaiseChanged(address);
}

void TableWriter::Delete(const Before& before, bool inDoubt) {
    const Clause address = Address(before);
    Clause same = address;
    AddIdentity(same, before);
    const auto send = [this](const Clause& where) {
        return Send("DELETE FROM " + table_ + " WHERE " + where.sql + " LIMIT 1", where.values) > 0;
    };
    if (send(same))
        return;
    // As for Update: characters that the code page lacks do not come back equal.
    const bool deleted = !identity_.empty() && FindSame(before) && send(address);
    if (!deleted && !inDoubt)
        RaiseChanged(address);
}

} // namespace database
