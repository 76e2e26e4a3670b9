#include "accounts/WaitingChanges.h"

#include <unordered_set>

namespace accounts {

namespace {

using Kind = WaitingChange::Kind;
using State = clsAccountSQL::State;

std::string AccountText(const std::string& name, const std::string& id) {
    return id.empty() ? name : name + " (" + id + ")";
}

/// Name and number as the operator knows the account: as it is here.
std::string AccountText(const clsAccountSQL& store, std::size_t row) {
    return AccountText(store.Text(row, Field::Name), store.Text(row, Field::Id));
}

/// The numbers whose privileges go with the account.
std::vector<std::int32_t> NumbersOf(const clsAccountSQL& store, std::size_t row) {
    std::vector<std::int32_t> numbers;
    for (const auto& text : {std::optional(store.Text(row, Field::Id)), store.ServerText(row, Field::Id)}) {
        if (const auto number = text ? AccountNumber(*text) : std::nullopt)
            numbers.push_back(*number);
    }
    return numbers;
}

/// Why the account cannot have its server's name and number again.
std::string Obstacle(const clsAccountSQL& store, std::size_t row, bool name, bool id) {
    const auto oldName = store.ServerText(row, Field::Name);
    const auto oldId = store.ServerText(row, Field::Id);
    const auto nameHolder = name && oldName ? store.RowOfName(*oldName) : std::nullopt;
    const auto number = id && oldId ? AccountNumber(*oldId) : std::nullopt;
    const auto idHolder = number ? store.RowOfAccount(*number) : std::nullopt;
    for (const auto& holder : {nameHolder, idHolder}) {
        if (holder && *holder != row)
            return "Account " + AccountText(store, *holder) +
                   " has got its name or number here. Please take that back first";
    }
    return {};
}

constexpr const char* kInDoubt =
    "The connection was lost while this was sent, so it may have arrived. Please save again, or press Reload";

} // namespace

std::string PrivilegesText(const std::optional<Privileges>& privileges) {
    if (!privileges)
        return "no game master";
    std::string names;
    std::size_t granted = 0;
    for (std::size_t i = 0; i < kPrivilegeCount; ++i) {
        if ((*privileges)[i] == 0)
            continue;
        ++granted;
        names.append(names.empty() ? "" : ", ").append(kPrivilegeNames[i]);
    }
    if (granted == 0)
        return "game master without privileges";
    return granted == kPrivilegeCount ? "all" : names;
}

std::vector<WaitingChange> WaitingChanges(const clsAccountSQL& store) {
    std::vector<WaitingChange> changes;
    for (const std::size_t row : store.WaitingRows()) {
        const std::string account = AccountText(store, row);
        const State state = store.StateOf(row);
        if (state == State::Added)
            changes.push_back(
                {Kind::Added, row, {}, 0, account, "new account", "", store.Text(row, Field::Email)});
        if (state == State::Deleted)
            changes.push_back(
                {Kind::Deleted, row, {}, 0, account, "deleted", store.Text(row, Field::Email), ""});
        if (state != State::Changed)
            continue;
        for (const Field field : kFields) {
            const std::string before = store.ServerText(row, field).value_or("");
            const std::string after = store.Text(row, field);
            if (before != after || store.MayHaveArrived(row, field))
                changes.push_back({Kind::FieldChanged, row, field, 0, account, FieldName(field),
                                   before != after ? FieldText(field, before) : "not known",
                                   FieldText(field, after)});
        }
    }
    for (const GMTable::Change& change : store.GMData().Changes()) {
        const auto row = store.RowOfAccount(change.id);
        const std::string name = row ? store.Text(*row, Field::Name) : std::string("no account");
        changes.push_back({Kind::PrivilegesChanged,
                           0,
                           {},
                           change.id,
                           AccountText(name, std::to_string(change.id)),
                           "Privileges",
                           PrivilegesText(change.before),
                           PrivilegesText(change.after)});
        if (change.before == change.after)
            changes.back().after = "one row instead of several";
    }
    return changes;
}

std::size_t WaitingAccounts(const clsAccountSQL& store, std::optional<std::size_t> edited) {
    const auto waiting = store.WaitingRows();
    std::unordered_set<std::size_t> rows(waiting.begin(), waiting.end());
    if (edited)
        rows.insert(*edited);
    std::unordered_set<std::int32_t> numbers;
    for (const std::size_t row : waiting)
        for (const std::int32_t number : NumbersOf(store, row))
            numbers.insert(number);
    std::size_t others = 0;
    for (const std::int32_t id : store.GMData().ChangedIds()) {
        const auto row = store.RowOfAccount(id);
        if (!numbers.contains(id) && !(row && rows.contains(*row)))
            ++others;
    }
    return rows.size() + others;
}

std::string TakeBack(clsAccountSQL& store, const WaitingChange& change) {
    if (change.kind == Kind::PrivilegesChanged) {
        store.TakeBackGMData(change.id);
        return {};
    }
    const bool whole = change.kind != Kind::FieldChanged;
    const bool withNumber = whole || change.field == Field::Id;
    const std::string obstacle =
        change.kind == Kind::Added
            ? std::string()
            : Obstacle(store, change.row, whole || change.field == Field::Name, withNumber);
    if (!obstacle.empty())
        return obstacle;
    const auto numbers = NumbersOf(store, change.row);
    if (!(whole ? store.TakeBack(change.row) : store.TakeBack(change.row, change.field)))
        return kInDoubt;
    if (withNumber) {
        for (const std::int32_t number : numbers)
            store.TakeBackGMData(number);
    }
    return {};
}

} // namespace accounts
