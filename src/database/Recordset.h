#pragma once

#include "database/Connection.h"
#include "database/Error.h"
#include "database/TableWriter.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace database {

/// The rows of a query, all held on this side, with a current row. Changes are kept here until UpdateBatch
/// sends them; without it they are lost. Raises Error with the numbers of database/Error.h: kObjectClosed by
/// everything on a closed set, kNoCurrentRecord where a current row is needed. While a task waits in Open,
/// Requery or UpdateBatch, nothing else is asked of the set.
class Recordset {
public:
    /// Told the number of rows read so far after every block of them.
    using Progress = std::function<void(std::size_t rows)>;
    /// Asked before the changes that set one of its columns, with their row and fields. An Error that it
    /// raises prevents the change.
    struct Check {
        std::vector<std::size_t> columns;
        std::function<gui::Task<>(std::size_t row, const Fields& set)> ask;
        bool Concerns(const Fields& set) const;
    };
    /// A change that was not made, and why.
    struct Refusal {
        std::size_t row;
        Error error;
        /// With kRowChanged: another row was sent from here by now to where the server had this one.
        bool taken = false;
    };

    /// Runs the query and reads all its rows; the first becomes current. The connection must outlive the
    /// set, but may be closed and opened again meanwhile. Raises Error; the set is then closed.
    gui::Task<> Open(Connection& connection, std::string sql, Progress progress = {});
    bool IsOpen() const { return connection_ != nullptr; }
    /// Forgets rows and changes. Nothing happens to a closed set.
    void Close();
    /// Runs the query again, with a new login when the server was gone. Changes that were not sent are lost.
    gui::Task<> Requery(Progress progress = {});

    std::size_t RecordCount() const;
    std::size_t ColumnCount() const { return columns_.size(); }
    /// The position of the field, letter case aside. Raises kItemNotFound.
    std::size_t FieldIndex(std::string_view name) const;

    /// Columns that beside the key tell which row it is, such as a name: when somebody else has put another
    /// row under a key, UpdateBatch leaves that one alone (kRowChanged). Good until Close.
    void Identity(std::vector<std::size_t> columns) { identity_ = std::move(columns); }

    /// True before the first row and after the last; both in a set without rows. After Delete neither is
    /// until the next move, not even when that was the last row that was left.
    bool Bof() const;
    bool Eof() const;
    /// True on a row that can be read: on one of the set that has not been deleted.
    bool IsCurrent() const;
    /// The moves finish an edit in progress as Update does. First and last raise kNoCurrentRecord in an empty
    /// set, next does at the end and previous at the beginning.
    void MoveFirst();
    void MoveNext();
    void MovePrevious();
    void MoveLast();

    /// The current row's mark, good until Requery. Setting it makes that row current again; raises
    /// kNoCurrentRecord when the row has been deleted.
    std::size_t Bookmark() const;
    void Bookmark(std::size_t row);

    /// A field of the current row, with the edits made so far. Raises kItemNotFound.
    Value Field(std::size_t index) const;
    Value Field(std::string_view name) const { return Field(FieldIndex(name)); }
    /// Edits a field of the current row; Update or a move takes the edits over.
    void Field(std::size_t index, Value value);
    void Field(std::string_view name, Value value) { Field(FieldIndex(name), std::move(value)); }

    /// Begins a new row, which Update puts behind the last one. Fields that are not set get their defaults
    /// from the server.
    void AddNew();
    /// Takes the edits of the current row over into the changes to be sent.
    void Update();
    /// Drops the edits of the current row, or the new row.
    void CancelUpdate() { edit_.reset(); }
    /// Deletes the current row, which stays current and can no longer be read.
    void Delete();

    /// Sends the changes in the order they were made, with a new login when the server was gone. What was
    /// sent stays sent. A change that the server or a change of somebody else prevents (kRowChanged) stays
    /// here and the ones behind it are tried; when one of these is of the same row, both are tried as one
    /// there. A refused one never reaches a row that was sent from here into the place of its own, which has
    /// gone. The first error is raised at the end. When the connection is lost the rest stays here at once.
    /// Either way UpdateBatch can be tried again.
    gui::Task<> UpdateBatch(Check check = {});
    /// What the last UpdateBatch met, in the order of the changes.
    const std::vector<Refusal>& Refusals() const { return refusals_; }

    /// Changes that are not sent yet.
    std::size_t PendingChanges() const { return changes_.size(); }

    // The rows and what waits for them, by their bookmarks.

    enum class State { Unchanged, Added, Changed, Deleted };
    /// All rows of the set, first to last.
    std::vector<std::size_t> Rows() const;
    /// The rows with changes that are not sent yet, each once, in the order of their first change.
    std::vector<std::size_t> PendingRows() const;
    State StateOf(std::size_t row) const;
    /// True when the row here is as the server has it, as far as known, whatever waits for it.
    bool IsAsOnServer(std::size_t row) const;
    /// True when a change that waits sets the field and may have arrived already.
    bool MayHaveArrived(std::size_t row, std::size_t column) const;
    /// A field as this side has it, also of a deleted row.
    Value At(std::size_t row, std::size_t column) const;
    /// A field as the server has it, as far as this side knows; none when it does not, as for a new row.
    std::optional<Value> ServerValue(std::size_t row, std::size_t column) const;
    /// True when the field is shown with other characters than the server holds.
    bool IsLossy(std::size_t row, std::size_t column) const;
    /// Forgets the changes of a row: a new one disappears, a deleted one comes back. False, and nothing
    /// happens, when one of them may have arrived at the server already.
    bool TakeBack(std::size_t row);
    /// The same for one field of a changed row.
    bool TakeBack(std::size_t row, std::size_t column);
    /// Takes a row's fields over as the server has them by now; changes that wait for the row stay.
    void ServerHas(std::size_t row, const Fields& fields) { Merge(sent_, row, fields); }
    /// Forgets a deleted row that the server does not have any more.
    void Forget(std::size_t row);

private:
    enum class Kind { Add, Update, Delete };
    struct Change {
        Kind kind;
        std::size_t row;
        Fields set;
        bool inDoubt = false;
        bool refused = false;
    };
    /// What the server said to a change.
    struct Answered {
        /// The number that it gave to a new row; null where it gave none.
        Value number;
        std::optional<Error> error;
    };
    struct Edit {
        bool adding = false;
        Fields set;
    };
    using FieldsOfRows = std::unordered_map<std::size_t, Fields>;

    void CheckOpen() const;
    void CheckCurrent() const;
    void FinishEdit();
    gui::Task<> Load(Progress progress);
    void Move(std::ptrdiff_t from, std::ptrdiff_t step);
    std::ptrdiff_t End() const { return static_cast<std::ptrdiff_t>(deleted_.size()); }
    bool InDoubt(std::size_t row) const;
    static const Value* FieldOf(const FieldsOfRows& rows, std::size_t row, std::size_t column);
    void Merge(FieldsOfRows& into, std::size_t row, const Fields& set) const;

    std::size_t AddsFrom(std::size_t first, const TableWriter& writer) const;
    using Writer = std::shared_ptr<TableWriter>;
    gui::Task<> SendAdds(std::size_t first, std::size_t count, Writer writer, std::vector<bool>& done);
    bool IsTaken(std::size_t row, const TableWriter& writer) const;
    std::size_t InOneCall(std::size_t first, const Check& check) const;
    static Answered SendOn(TableWriter& writer, const Change& change, const Fields& known);
    gui::Task<> SendEach(std::size_t first, std::size_t count, Writer writer, std::vector<bool>& done);
    void Refuse(std::size_t change, const Error& error, std::vector<bool>& done);
    bool HandOn(std::size_t refused, std::vector<bool>& done);
    void TakeSent(const std::vector<bool>& done);

    Connection* connection_ = nullptr;
    std::string sql_;
    std::vector<Column> columns_;
    /// The rows as they were read; rows added since stand behind them by number only.
    RowStore read_;
    std::vector<bool> deleted_;
    std::size_t count_ = 0;
    /// What the server holds of a row that differs from what was read, and what this side does.
    FieldsOfRows sent_;
    FieldsOfRows local_;
    std::vector<Change> changes_;
    std::vector<Refusal> refusals_;
    std::vector<std::size_t> identity_;
    std::optional<Edit> edit_;
    /// -1 before the first row.
    std::ptrdiff_t row_ = -1;
};

} // namespace database
