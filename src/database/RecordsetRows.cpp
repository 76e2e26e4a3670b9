#include "database/Recordset.h"

#include <algorithm>
#include <unordered_set>

namespace database {

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
