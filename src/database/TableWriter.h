#pragma once

#include "database/Odbc.h"
#include "database/Parameters.h"
#include "database/Query.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace database {

/// Values for some columns of a row, by the columns' positions.
using Fields = std::vector<std::optional<Value>>;

/// True when both say the same, of whatever type ("1" and 1).
bool SameValue(const Value& a, const Value& b);

/// Sends the changes of single rows to the one table that the rows of a result came from.
///
/// A row is addressed by the primary key, or by all values it had where there is none. A change of a row
/// that is gone, or whose changed columns have other values by now, raises kRowChanged: what somebody else
/// did in the meantime is not overwritten. So does a change of a row whose identity columns, compared to the
/// letter, are not what they were: its key was given to another one. `inDoubt` says that the same change may
/// have arrived already, because the connection was lost before the server's answer.
class TableWriter {
public:
    /// The value a row's column had at the server; none when it is not known.
    using Before = std::function<std::optional<Value>(std::size_t column)>;

    /// `identity`: positions of the identity columns. Raises kReadOnly when the columns do not come from one
    /// table.
    TableWriter(SessionPtr session, std::vector<Column> columns, std::vector<std::size_t> identity = {});

    /// The table's name as SQL writes it.
    const std::string& Table() const { return table_; }

    /// True when a new row could be found again by what is given for its primary key.
    bool GivesKey(const Fields& set) const;
    /// True when both are values of the same row of the table: key and identity are equal.
    bool AreSameRow(const Before& one, const Before& other) const;

    /// Inserts a row. Returns the number that the server gave it where it is numbered, else null.
    Value Insert(const Fields& set, bool inDoubt);
    void Update(const Before& before, const Fields& set, bool inDoubt);
    void Delete(const Before& before, bool inDoubt);

    /// The position of the column that the server numbers, none when there is no such column.
    std::optional<std::size_t> AutoNumber() const { return autoNumber_; }

private:
    struct Clause {
        std::string sql;
        std::vector<Value> values;
    };

    std::vector<std::string> PrimaryKey() const;
    std::string Name(std::size_t column) const { return Quoted(columns_[column].baseName); }
    void AddTest(Clause& clause, std::size_t column, const Value& value) const;
    void AddIdentity(Clause& clause, const Before& before) const;
    Clause Address(const Before& before) const;
    std::optional<Answer> Find(const Clause& where) const;
    std::optional<Answer> FindSame(const Before& before) const;
    std::int64_t Send(const std::string& sql, const std::vector<Value>& values);
    std::int64_t SendUpdate(const Fields& set, const Clause& where);
    [[noreturn]] void RaiseChanged(const Clause& address) const;

    SessionPtr session_;
    std::vector<Column> columns_;
    std::vector<std::size_t> identity_;
    std::string table_;
    /// The columns that tell one row from the others.
    std::vector<std::size_t> key_;
    bool hasKey_ = false;
    std::optional<std::size_t> autoNumber_;
    /// What was sent last: changes that look alike are prepared once.
    std::string sql_;
    std::unique_ptr<odbc::Statement> statement_;
    Parameters parameters_;
};

} // namespace database
