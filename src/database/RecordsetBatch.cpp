#include "database/Blocks.h"
#include "database/Recordset.h"

#include <algorithm>
#include <unordered_set>

namespace database {

// ---- Sending

gui::Task<> Recordset::UpdateBatch(Check check) {
    FinishEdit();
    refusals_.clear();
    if (changes_.empty())
        co_return;
    co_await connection_->Revive();
    auto make = [columns = columns_, identity = identity_](const SessionPtr& session) {
        return gui::EndedAside(std::make_unique<TableWriter>(session, columns, identity));
    };
    const Writer writer = co_await connection_->Call(make);
    std::vector<bool> done(changes_.size());
    for (std::size_t i = 0; i < changes_.size();) {
        // Changes are checked one by one, each after those before it have arrived.
        const std::size_t adds = done[i] || check ? 0 : AddsFrom(i, *writer);
        bool sending = false;
        std::optional<Error> error;
        try {
            if (check && !done[i])
                co_await check(changes_[i].row, changes_[i].set);
            sending = true;
            if (adds > 1)
                co_await SendAdds(i, adds, writer, done);
            else if (!done[i])
                co_await SendOne(changes_[i], writer);
        } catch (const Error& raised) {
            error = raised;
        }
        if (!error) {
            done[i] = true;
            i += std::max<std::size_t>(adds, 1);
        } else if (error->ConnectionLost()) {
            changes_[i].inDoubt = changes_[i].inDoubt || sending;
            TakeSent(done);
            throw Error(*error);
        } else if (adds <= 1) {
            // The server has answered: the change is not there.
            if (sending)
                changes_[i].inDoubt = false;
            if (!HandOn(i, done))
                refusals_.push_back({changes_[i].row, *error});
            ++i;
        }
        // Adds that failed together are tried again one by one.
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

gui::Task<> Recordset::SendAdds(std::size_t first, std::size_t count, Writer writer,
                                std::vector<bool>& done) {
    std::vector<std::string> names;
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (changes_[first].set[column]) {
            names.push_back(columns_[column].baseName);
            columns.push_back(column);
        }
    }
    BlockInserter inserter(*connection_);
    co_await inserter.Open(writer->Table(), std::move(names));
    for (std::size_t from = first; from < first + count;) {
        const std::size_t end = std::min(from + BulkInserter::kBatchRows, first + count);
        RowStore rows(columns.size());
        for (std::size_t i = from; i < end; ++i) {
            for (const std::size_t column : columns)
                rows.Append(Cell::Of(*changes_[i].set[column]));
        }
        std::optional<Error> error;
        try {
            co_await inserter.Insert(std::move(rows));
        } catch (const Error& raised) {
            error = raised;
        }
        for (; from < first + inserter.Sent(); ++from) {
            done[from] = true;
            Merge(sent_, changes_[from].row, changes_[from].set);
        }
        if (!error)
            continue;
        // A server without transactions keeps the rows before the one it refused.
        for (; from < end; ++from)
            changes_[from].inDoubt = true;
        throw Error(*error);
    }
}

gui::Task<> Recordset::SendOne(Change& change, Writer writer) {
    Fields known(columns_.size());
    if (change.kind != Kind::Add)
        for (std::size_t column = 0; column < known.size(); ++column)
            known[column] = ServerValue(change.row, column);
    auto send = [writer, kind = change.kind, set = change.set, inDoubt = change.inDoubt,
                 known = std::move(known)](const SessionPtr&) {
        const auto before = [&known](std::size_t column) { return known[column]; };
        if (kind == Kind::Add)
            return writer->Insert(set, inDoubt);
        if (kind == Kind::Update)
            writer->Update(before, set, inDoubt);
        else
            writer->Delete(before, inDoubt);
        return Value();
    };
    Value number = co_await connection_->Call(send);
    if (!number.IsNull())
        change.set[*writer->AutoNumber()] = std::move(number);
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
    for (const FieldsOfRows* changed : {&local_, &sent_})
        if (const Value* value = FieldOf(*changed, row, column))
            return *value;
    return row < read_.Rows() ? read_.At(row, column).ToValue() : Value();
}

bool Recordset::IsLossy(std::size_t row, std::size_t column) const {
    return row < read_.Rows() && read_.At(row, column).lossy &&
           At(row, column) == read_.At(row, column).ToValue();
}

bool Recordset::IsAsOnServer(std::size_t row) const {
    const State state = StateOf(row);
    if (state != State::Changed)
        return state == State::Unchanged;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (At(row, column) != ServerValue(row, column))
            return false;
    }
    return true;
}

bool Recordset::MayHaveArrived(std::size_t row, std::size_t column) const {
    return std::ranges::any_of(changes_, [&](const Change& change) {
        return change.row == row && change.inDoubt && change.set[column].has_value();
    });
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
