#include "database/Blocks.h"
#include "database/Recordset.h"

#include <algorithm>
#include <unordered_set>

namespace database {

bool Recordset::Check::Concerns(const Fields& set) const {
    return std::ranges::any_of(columns, [&set](std::size_t column) { return set[column].has_value(); });
}

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
    std::size_t triedTogether = 0;
    for (std::size_t i = 0; i < changes_.size();) {
        if (done[i]) {
            ++i;
            continue;
        }
        // Adds that failed together are tried again one by one.
        const std::size_t adds = check.ask || i < triedTogether ? 0 : AddsFrom(i, *writer);
        const std::size_t inOneCall = InOneCall(i, check);
        std::optional<Error> error;
        try {
            if (changes_[i].refused && IsTaken(changes_[i].row, *writer))
                Raise(kRowChanged);
            // A change is checked after those before it have arrived.
            if (check.Concerns(changes_[i].set))
                co_await check.ask(changes_[i].row, changes_[i].set);
            if (adds > 1)
                co_await SendAdds(i, adds, writer, done);
            else
                co_await SendEach(i, inOneCall, writer, done);
        } catch (const Error& raised) {
            error = raised;
        }
        if (error && error->ConnectionLost()) {
            TakeSent(done);
            throw Error(*error);
        }
        if (adds > 1) {
            triedTogether = i + adds;
        } else if (error) {
            Refuse(i, *error, done);
            ++i;
        } else {
            i += inOneCall;
        }
    }
    for (Refusal& refusal : refusals_)
        refusal.taken = refusal.error.Number() == kRowChanged && IsTaken(refusal.row, *writer);
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

/// True when another row was sent from here to where the server had this one.
bool Recordset::IsTaken(std::size_t row, const TableWriter& writer) const {
    const auto valuesOf = [this](std::size_t of) {
        return [this, of](std::size_t column) { return ServerValue(of, column); };
    };
    return std::ranges::any_of(sent_, [&](const auto& sent) {
        return sent.first != row && writer.AreSameRow(valuesOf(sent.first), valuesOf(row));
    });
}

/// How many changes from this one on, at least one, may go to the server in one call, one after the other.
/// What becomes of one of them must not matter to the others.
std::size_t Recordset::InOneCall(std::size_t first, const Check& check) const {
    // They share the time that the server has for a call.
    constexpr std::size_t kMost = 20;
    std::unordered_set<std::size_t> rows;
    const auto matters = [&](const Change& change) {
        return change.kind != Kind::Update || change.inDoubt || change.refused ||
               check.Concerns(change.set) || !rows.insert(change.row).second;
    };
    const auto begin = changes_.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = changes_.begin() + static_cast<std::ptrdiff_t>(std::min(first + kMost, changes_.size()));
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(std::find_if(begin, end, matters) - begin, 1));
}

Recordset::Answered Recordset::SendOn(TableWriter& writer, const Change& change, const Fields& known) {
    const auto before = [&known](std::size_t column) { return known[column]; };
    Answered answered;
    try {
        if (change.kind == Kind::Add)
            answered.number = writer.Insert(change.set, change.inDoubt);
        else if (change.kind == Kind::Update)
            writer.Update(before, change.set, change.inDoubt);
        else
            writer.Delete(before, change.inDoubt);
    } catch (const Error& error) {
        answered.error = error;
    }
    return answered;
}

gui::Task<> Recordset::SendEach(std::size_t first, std::size_t count, Writer writer,
                                std::vector<bool>& done) {
    std::vector<std::pair<Change, Fields>> sending;
    for (std::size_t i = first; i < first + count; ++i) {
        Fields known(columns_.size());
        for (std::size_t column = 0; column < known.size() && changes_[i].kind != Kind::Add; ++column)
            known[column] = ServerValue(changes_[i].row, column);
        sending.emplace_back(changes_[i], std::move(known));
    }
    auto send = [writer, sending = std::move(sending)](const SessionPtr&) {
        std::vector<Answered> answers;
        for (const auto& [change, known] : sending) {
            answers.push_back(SendOn(*writer, change, known));
            if (answers.back().error && answers.back().error->ConnectionLost())
                break;
        }
        return answers;
    };
    std::vector<Answered> answers;
    try {
        std::vector<Answered> came = co_await connection_->Call(send);
        answers = std::move(came);
    } catch (const Error& error) {
        for (std::size_t i = first; i < first + count && error.ConnectionLost(); ++i)
            changes_[i].inDoubt = true;
        throw;
    }
    for (std::size_t i = first; i < first + answers.size(); ++i) {
        Answered& answered = answers[i - first];
        Change& change = changes_[i];
        if (answered.error && answered.error->ConnectionLost()) {
            change.inDoubt = true;
            throw Error(*answered.error);
        }
        if (answered.error) {
            // The server has answered: the change is not there.
            change.inDoubt = false;
            Refuse(i, *answered.error, done);
            continue;
        }
        if (!answered.number.IsNull())
            change.set[*writer->AutoNumber()] = std::move(answered.number);
        Merge(sent_, change.row, change.set);
        done[i] = true;
    }
}

void Recordset::Refuse(std::size_t change, const Error& error, std::vector<bool>& done) {
    changes_[change].refused = true;
    if (!HandOn(change, done))
        refusals_.push_back({changes_[change].row, error});
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
    next->refused = true;
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

} // namespace database
