#include "database/Recordset.h"

#include "common/Text.h"
#include "database/Blocks.h"
#include "database/Error.h"

#include <algorithm>

namespace database {

gui::Task<> Recordset::Open(Connection& connection, std::string sql, Progress progress) {
    Close();
    connection_ = &connection;
    sql_ = std::move(sql);
    try {
        co_await Load(std::move(progress));
    } catch (const RuntimeError&) {
        Close();
        throw;
    }
}

void Recordset::Close() {
    *this = Recordset();
}

gui::Task<> Recordset::Requery(Progress progress) {
    CheckOpen();
    co_await connection_->Revive();
    Connection& connection = *connection_;
    co_await Open(connection, std::string(sql_), std::move(progress));
}

gui::Task<> Recordset::Load(Progress progress) {
    BlockReader reader(*connection_);
    co_await reader.Open(sql_);
    columns_ = reader.Columns();
    read_ = RowStore(columns_.size());
    // A driver's word is not good for more memory than a large table takes.
    constexpr std::size_t kMostExpected = 1'000'000;
    read_.Expect(std::min(reader.RowsToCome(), kMostExpected));
    for (std::size_t before = 0;; before = read_.Rows()) {
        read_ = co_await reader.Read(std::move(read_));
        if (read_.Rows() == before)
            break;
        if (progress)
            progress(read_.Rows());
    }
    count_ = read_.Rows();
    deleted_.assign(count_, false);
    row_ = count_ == 0 ? -1 : 0;
}

void Recordset::CheckOpen() const {
    if (!IsOpen())
        Raise(kObjectClosed);
}

bool Recordset::IsCurrent() const {
    return row_ >= 0 && row_ < End() && !deleted_[static_cast<std::size_t>(row_)];
}

void Recordset::CheckCurrent() const {
    CheckOpen();
    if (!IsCurrent() && !(edit_ && edit_->adding))
        Raise(kNoCurrentRecord);
}

std::size_t Recordset::RecordCount() const {
    CheckOpen();
    return count_;
}

std::size_t Recordset::FieldIndex(std::string_view name) const {
    // Callers nearly always write the name as the table does.
    auto at = std::ranges::find(columns_, name, &Column::name);
    if (at == columns_.end())
        at = std::ranges::find_if(
            columns_, [name](const Column& column) { return common::EqualsIgnoreCase(column.name, name); });
    if (at == columns_.end())
        Raise(kItemNotFound);
    return static_cast<std::size_t>(at - columns_.begin());
}

bool Recordset::Bof() const {
    CheckOpen();
    return !edit_ && (row_ < 0 || (count_ == 0 && row_ >= End()));
}

bool Recordset::Eof() const {
    CheckOpen();
    return !edit_ && (row_ >= End() || (count_ == 0 && row_ < 0));
}

void Recordset::FinishEdit() {
    CheckOpen();
    if (edit_)
        Update();
}

void Recordset::Move(std::ptrdiff_t from, std::ptrdiff_t step) {
    do
        from += step;
    while (from >= 0 && from < End() && deleted_[static_cast<std::size_t>(from)]);
    row_ = from;
}

void Recordset::MoveFirst() {
    FinishEdit();
    if (count_ == 0)
        Raise(kNoCurrentRecord);
    Move(-1, 1);
}

void Recordset::MoveLast() {
    FinishEdit();
    if (count_ == 0)
        Raise(kNoCurrentRecord);
    Move(End(), -1);
}

void Recordset::MoveNext() {
    FinishEdit();
    if (Eof())
        Raise(kNoCurrentRecord);
    Move(row_, 1);
}

void Recordset::MovePrevious() {
    FinishEdit();
    if (Bof())
        Raise(kNoCurrentRecord);
    Move(row_, -1);
}

std::size_t Recordset::Bookmark() const {
    CheckOpen();
    if (!IsCurrent())
        Raise(kNoCurrentRecord);
    return static_cast<std::size_t>(row_);
}

void Recordset::Bookmark(std::size_t row) {
    FinishEdit();
    if (row >= deleted_.size() || deleted_[row])
        Raise(kNoCurrentRecord);
    row_ = static_cast<std::ptrdiff_t>(row);
}

/// Null when the row has no such field among these.
const Value* Recordset::FieldOf(const FieldsOfRows& rows, std::size_t row, std::size_t column) {
    const auto fields = rows.find(row);
    return fields != rows.end() && fields->second[column] ? &*fields->second[column] : nullptr;
}

std::optional<Value> Recordset::ServerValue(std::size_t row, std::size_t column) const {
    if (const Value* sent = FieldOf(sent_, row, column))
        return *sent;
    if (row < read_.Rows())
        return read_.At(row, column).ToValue();
    return std::nullopt;
}

Value Recordset::Field(std::size_t index) const {
    CheckCurrent();
    if (index >= columns_.size())
        Raise(kItemNotFound);
    if (edit_ && edit_->set[index])
        return *edit_->set[index];
    if (edit_ && edit_->adding)
        return {};
    return At(static_cast<std::size_t>(row_), index);
}

void Recordset::Field(std::size_t index, Value value) {
    CheckCurrent();
    if (index >= columns_.size())
        Raise(kItemNotFound);
    if (!edit_)
        edit_ = Edit{false, Fields(columns_.size())};
    edit_->set[index] = std::move(value);
}

void Recordset::AddNew() {
    FinishEdit();
    edit_ = Edit{true, Fields(columns_.size())};
}

void Recordset::Merge(FieldsOfRows& into, std::size_t row, const Fields& set) const {
    Fields& fields = into.try_emplace(row, columns_.size()).first->second;
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (set[i])
            fields[i] = set[i];
    }
}

void Recordset::Update() {
    CheckOpen();
    if (!edit_)
        return;
    Edit edit = std::move(*edit_);
    edit_.reset();
    if (edit.adding) {
        row_ = End();
        deleted_.push_back(false);
        ++count_;
    }
    const auto row = static_cast<std::size_t>(row_);
    if (!edit.adding) {
        // A value that is what it was changes nothing, and must not stand against somebody else's change.
        for (std::size_t i = 0; i < edit.set.size(); ++i) {
            if (edit.set[i] && SameValue(*edit.set[i], Field(i)))
                edit.set[i].reset();
        }
        if (std::ranges::none_of(edit.set, [](const auto& value) { return value.has_value(); }))
            return;
    }
    Merge(local_, row, edit.set);
    if (!edit.adding && !changes_.empty() && changes_.back().row == row && !changes_.back().inDoubt) {
        Fields& set = changes_.back().set;
        for (std::size_t i = 0; i < set.size(); ++i) {
            if (edit.set[i])
                set[i] = std::move(edit.set[i]);
        }
        return;
    }
    changes_.push_back({edit.adding ? Kind::Add : Kind::Update, row, std::move(edit.set)});
}

void Recordset::Delete() {
    CheckOpen();
    // A new row that was not taken over yet is only given up.
    if (edit_ && edit_->adding) {
        edit_.reset();
        return;
    }
    edit_.reset();
    CheckCurrent();
    const auto row = static_cast<std::size_t>(row_);
    deleted_[row] = true;
    --count_;
    const auto isUnsentAdd = [row](const Change& change) {
        return change.row == row && change.kind == Kind::Add && !change.inDoubt;
    };
    // The server never needs to hear of a row that came and went here.
    if (std::ranges::any_of(changes_, isUnsentAdd))
        std::erase_if(changes_, [row](const Change& change) { return change.row == row; });
    else
        changes_.push_back({Kind::Delete, row, Fields(columns_.size())});
}

} // namespace database
