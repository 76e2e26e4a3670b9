#include "database/BulkInserter.h"
#include "database/Recordset.h"

#include <algorithm>
#include <unordered_set>

namespace database {

// ---- Sending

void Recordset::UpdateBatch(const Check& check) {
    FinishEdit();
    refusals_.clear();
    if (changes_.empty())
        return;
    connection_->Revive();
    TableWriter writer(connection_->Session(), columns_, identity_);
    std::vector<bool> done(changes_.size());
    for (std::size_t i = 0; i < changes_.size();) {
        // Changes are checked one by one, each after those before it have arrived.
        const std::size_t adds = done[i] || check ? 0 : AddsFrom(i, writer);
        bool sending = false;
        try {
            if (check && !done[i])
                check(changes_[i].row, changes_[i].set);
            sending = true;
            if (adds > 1)
                SendAdds(i, adds, writer, done);
            else if (!done[i])
                SendOne(changes_[i], writer);
            done[i] = true;
            i += std::max<std::size_t>(adds, 1);
        } catch (const Error& error) {
            if (error.ConnectionLost()) {
                changes_[i].inDoubt = changes_[i].inDoubt || sending;
                TakeSent(done);
                throw;
            }
            // Adds that failed together are tried again one by one.
            if (adds > 1)
                continue;
            // The server has answered: the change is not there.
            if (sending)
                changes_[i].inDoubt = false;
            if (!HandOn(i, done))
                refusals_.push_back({changes_[i].row, error});
            ++i;
        }
    }
    TakeSent(done);
    if (!refusals_.empty())
        throw Error(refusals_.front().error);
}

std::size_t Recordset::AddsFrom(std::size_t first, const TableWriter& writer) const {
    const auto given = [this](std::size_t change, std::size_t column) {
        return changes_[change].set[column].has_value();
    };
    std::size_t last = first;
    for (; last < changes_.size(); ++last) {
        const Change& change = changes_[last];
        if (change.kind != Kind::Add || change.inDoubt || !writer.GivesKey(change.set))
            break;
        bool alike = true;
        for (std::size_t column = 0; column < columns_.size(); ++column)
            alike = alike && given(last, column) == given(first, column);
        if (!alike)
            break;
    }
    return last - first;
}

void Recordset::SendAdds(std::size_t first, std::size_t count, const TableWriter& writer,
                         std::vector<bool>& done) {
    std::vector<std::string> names;
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (changes_[first].set[column]) {
            names.push_back(columns_[column].baseName);
            columns.push_back(column);
        }
    }
    RowStore rows(columns.size());
    for (std::size_t i = 0; i < count; ++i) {
        for (const std::size_t column : columns)
            rows.Append(Cell::Of(*changes_[first + i].set[column]));
    }
    BulkInserter inserter(connection_->Session(), writer.Table(), names);
    const auto takeSent = [&] {
        for (std::size_t i = first; i < first + inserter.Sent(); ++i) {
            done[i] = true;
            Merge(sent_, changes_[i].row, changes_[i].set);
        }
    };
    try {
        inserter.Insert(rows);
    } catch (const Error&) {
        takeSent();
        // A server without transactions keeps the rows before the one it refused.
        const std::size_t from = first + inserter.Sent();
        for (std::size_t i = from; i < std::min(from + BulkInserter::kBatchRows, first + count); ++i)
            changes_[i].inDoubt = true;
        throw;
    }
    takeSent();
}

void Recordset::SendOne(Change& change, TableWriter& writer) {
    const auto before = [&](std::size_t column) { return ServerValue(change.row, column); };
    switch (change.kind) {
    case Kind::Add:
        if (Value number = writer.Insert(change.set, change.inDoubt); !number.IsNull())
            change.set[*writer.AutoNumber()] = std::move(number);
        break;
    case Kind::Update:
        writer.Update(before, change.set, change.inDoubt);
        break;
    case Kind::Delete:
        writer.Delete(before, change.inDoubt);
        break;
    }
    Merge(sent_, change.row, change.set);
}

/// Puts a change that was refused into the next one of its row, which corrects it or takes the row away and
/// would not find it without. False when there is none.
bool Recordset::HandOn(std::size_t refused, std::vector<bool>& done) {
    const Change& change = changes_[refused];
    const auto next =
        std::find_if(changes_.begin() + static_cast<std::ptrdiff_t>(refused) + 1, changes_.end(),
                     [&change](const Change& later) { return later.row == change.row; });
    if (next == changes_.end() || change.kind == Kind::Delete)
        return false;
    done[refused] = true;
    if (next->kind == Kind::Delete) {
        // A row that the server never got needs no deletion.
        if (change.kind == Kind::Add)
            done[static_cast<std::size_t>(next - changes_.begin())] = true;
        return true;
    }
    next->kind = change.kind;
    for (std::size_t i = 0; i < next->set.size(); ++i) {
        if (!next->set[i])
            next->set[i] = change.set[i];
    }
    return true;
}

void Recordset::TakeSent(const std::vector<bool>& done) {
    std::vector<Change> rest;
    for (std::size_t i = 0; i < changes_.size(); ++i) {
        if (done[i])
            local_.erase(changes_[i].row);
        else
            rest.push_back(std::move(changes_[i]));
    }
    changes_ = std::move(rest);
    // A row with some changes sent and some not looks here as it will when all are.
    for (const Change& change : changes_)
        Merge(local_, change.row, change.set);
}

// ---- The rows and what waits for them

std::vector<std::size_t> Recordset::Rows() const {
    std::vector<std::size_t> rows;
    rows.reserve(count_);
    for (std::size_t row = 0; row < deleted_.size(); ++row) {
        if (!deleted_[row])
            rows.push_back(row);
    }
    return rows;
}

std::vector<std::size_t> Recordset::PendingRows() const {
    std::vector<std::size_t> rows;
    std::unordered_set<std::size_t> seen;
    for (const Change& change : changes_) {
        if (seen.insert(change.row).second)
            rows.push_back(change.row);
    }
    return rows;
}

Recordset::State Recordset::StateOf(std::size_t row) const {
    auto state = State::Unchanged;
    for (const Change& change : changes_) {
        if (change.row != row)
            continue;
        if (change.kind == Kind::Delete)
            return State::Deleted;
        if (change.kind == Kind::Add)
            state = State::Added;
        else if (state == State::Unchanged)
            state = State::Changed;
    }
    return state;
}

Value Recordset::At(std::size_t row, std::size_t column) const {
    if (const auto local = local_.find(row); local != local_.end() && local->second[column])
        return *local->second[column];
    return ServerValue(row, column).value_or(Value());
}

bool Recordset::IsLossy(std::size_t row, std::size_t column) const {
    return row < read_.Rows() && read_.At(row, column).lossy &&
           At(row, column) == read_.At(row, column).ToValue();
}

bool Recordset::InDoubt(std::size_t row) const {
    return std::ranges::any_of(changes_,
                               [row](const Change& change) { return change.row == row && change.inDoubt; });
}

bool Recordset::TakeBack(std::size_t row) {
    FinishEdit();
    if (InDoubt(row))
        return false;
    const State state = StateOf(row);
    std::erase_if(changes_, [row](const Change& change) { return change.row == row; });
    local_.erase(row);
    if (state == State::Added) {
        deleted_[row] = true;
        --count_;
    } else if (state == State::Deleted) {
        deleted_[row] = false;
        ++count_;
    }
    return true;
}

bool Recordset::TakeBack(std::size_t row, std::size_t column) {
    FinishEdit();
    if (InDoubt(row))
        return false;
    for (Change& change : changes_) {
        if (change.row == row)
            change.set[column].reset();
    }
    std::erase_if(changes_, [row](const Change& change) {
        return change.row == row && change.kind == Kind::Update &&
               std::ranges::none_of(change.set, [](const auto& value) { return value.has_value(); });
    });
    if (const auto local = local_.find(row); local != local_.end())
        local->second[column].reset();
    return true;
}

void Recordset::Forget(std::size_t row) {
    std::erase_if(changes_, [row](const Change& change) { return change.row == row; });
}

} // namespace database
