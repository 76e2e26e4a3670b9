#include "accounts/Sending.h"

#include "accounts/AccountKeeper.h"
#include "common/Numbers.h"
#include "database/Error.h"

#include <algorithm>

namespace accounts {

namespace {

using State = clsAccountSQL::State;

std::string Quote(const std::string& name) {
    return "'" + name + "'";
}

std::string AccountText(const clsAccountSQL& store, std::size_t row) {
    const auto name = store.ServerText(row, Field::Name);
    const auto id = store.ServerText(row, Field::Id);
    return Quote(name.value_or(store.Text(row, Field::Name))) + " (" +
           id.value_or(store.Text(row, Field::Id)) + ")";
}

FieldTexts TextsOf(const clsAccountSQL& store, std::size_t row, bool onServer) {
    FieldTexts texts;
    for (const Field field : kFields)
        texts[Index(field)] = onServer ? store.ServerText(row, field) : std::optional(store.Text(row, field));
    return texts;
}

/// Finds out why the row was not there as it was read. `taken` where another account was sent there from
/// here.
gui::Task<> LookAt(clsAccountSQL& store, std::size_t row, bool taken, SendResult& result) {
    const std::string account = AccountText(store, row);
    const FieldTexts read = TextsOf(store, row, true);
    const std::int64_t id = common::CLng(read[Index(Field::Id)].value_or("0"));
    const clsAccountSQL::Found found = co_await store.AskServer(id);
    if (!found.asked) {
        result.refused.push_back(WithReason(account + ": it was changed on the server", store.LastError()));
        co_return;
    }
    // An account of ours that stands there now is not what somebody else has made of this one.
    const auto theirs = taken ? std::nullopt : found.texts;
    const bool isDeleted = store.StateOf(row) == State::Deleted;
    if (!theirs && isDeleted) {
        store.Forget(row);
        result.notes.push_back("Account " + account + " had been removed from the server already.");
    } else if (!theirs) {
        result.refused.push_back(account +
                                 ": somebody else has removed it from the server. Nothing was sent");
    } else if ((*theirs)[Index(Field::Name)] != read[Index(Field::Name)]) {
        result.refused.push_back(account + ": its number belongs to " +
                                 Quote((*theirs)[Index(Field::Name)].value_or("")) +
                                 " now, whose account was left as it is");
    } else {
        result.conflicts.push_back({row, read, *theirs, TextsOf(store, row, false)});
    }
}

void Stop(const clsAccountSQL& store, SendResult& result) {
    result.stopped = true;
    result.serverGone = store.ConnectionLost();
    result.error = store.LastError();
}

gui::Task<> SendAccounts(clsAccountSQL& store, SendResult& result) {
    const std::int16_t sent = co_await store.UpdateAccountSQL();
    if (sent)
        co_return;
    if (store.ConnectionLost() || store.Refusals().empty()) {
        Stop(store, result);
        co_return;
    }
    const auto refusals = store.Refusals();
    for (const auto& refusal : refusals) {
        if (refusal.error.Number() == database::kRowChanged)
            co_await LookAt(store, refusal.row, refusal.taken, result);
        else
            result.refused.push_back(AccountText(store, refusal.row) + ": [" +
                                     std::to_string(refusal.error.Number()) + "] " +
                                     refusal.error.Description());
    }
}

/// The numbers of the accounts that still wait, whose privileges wait with them.
std::set<std::int32_t> WaitingNumbers(const clsAccountSQL& store) {
    std::set<std::int32_t> numbers;
    for (const std::size_t row : store.WaitingRows()) {
        for (const auto& text :
             {std::optional(store.Text(row, Field::Id)), store.ServerText(row, Field::Id)}) {
            if (const auto number = text ? AccountNumber(*text) : std::nullopt)
                numbers.insert(*number);
        }
    }
    return numbers;
}

/// Decides about each change of the privileges, with the names that the server has at this moment.
class PrivilegeJudge {
public:
    PrivilegeJudge(const clsAccountSQL& store, SendResult& result,
                   const std::map<std::int32_t, std::string>& owners, const std::set<std::int32_t>& waiting)
        : store_(store), result_(result), owners_(owners), waiting_(waiting) {}

    GMTable::Verdict operator()(std::int32_t id, bool changedThere) const {
        using enum GMTable::Verdict;
        if (waiting_.contains(id))
            return Hold;
        const auto row = store_.RowOfAccount(id);
        const auto owner = owners_.find(id);
        const bool isOwned = owner != owners_.end();
        if (row && isOwned && owner->second == store_.ServerText(*row, Field::Name))
            return Write;
        const bool isRemoval = !store_.GMData().Contains(id);
        const std::string number = std::to_string(id);
        // Privileges that nobody has any more here are taken from the file, unless somebody has given the
        // number new ones.
        if (!row && isRemoval) {
            if (!isOwned || !changedThere)
                return Write;
            result_.notes.push_back("Account " + Quote(owner->second) + " (" + number +
                                    ") was given its privileges by somebody else and keeps them.");
            return Forget;
        }
        result_.refused.push_back("The privileges of " + number + ": the number belongs to " +
                                  (isOwned ? Quote(owner->second) : "no account") + " now");
        return Hold;
    }

private:
    const clsAccountSQL& store_;
    SendResult& result_;
    const std::map<std::int32_t, std::string>& owners_;
    const std::set<std::int32_t>& waiting_;
};

void TellMet(const GMTable::Met& met, SendResult& result) {
    if (!met.changed)
        return;
    std::string note = "Somebody else has changed id_table.txt since it was read. What was changed there "
                       "stays, and what was changed here is in it too.";
    if (!met.both.empty()) {
        note += " The privileges of these accounts were changed in both places:";
        for (const std::int32_t id : met.both)
            note += " " + std::to_string(id);
        note += ".";
    }
    if (met.withoutHeader)
        note += " Its header line was missing: the account in its first line has lost its privileges to the "
                "header. id_table.bak has the line.";
    result.notes.push_back(note);
}

gui::Task<> SendPrivileges(clsAccountSQL& store, SendResult& result) {
    const auto waiting = WaitingNumbers(store);
    std::vector<std::int32_t> changed;
    std::ranges::set_difference(store.GMData().ChangedIds(), waiting, std::back_inserter(changed));
    const auto owners = co_await store.AskNames(std::move(changed));
    if (!owners) {
        Stop(store, result);
        co_return;
    }
    if (store.UpdateGMData(PrivilegeJudge(store, result, *owners, waiting))) {
        TellMet(store.GMDataMet(), result);
        co_return;
    }
    result.error = store.LastError();
    result.privilegesFailed = true;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += "\n\n" + line;
    return text;
}

} // namespace

gui::Task<SendResult> Send(clsAccountSQL& store) {
    SendResult result;
    co_await SendAccounts(store, result);
    if (!result.stopped)
        co_await SendPrivileges(store, result);
    co_return result;
}

void Decide(clsAccountSQL& store, const Conflict& conflict, const std::array<bool, kFields.size()>& mine) {
    store.ServerHas(conflict.row, conflict.theirs);
    for (const Field field : kFields) {
        if (!mine[Index(field)])
            store.TakeBack(conflict.row, field);
    }
}

std::string TextOf(const SendResult& result, const clsAccountSQL& store) {
    if (result.stopped)
        return FailureText("Kerno Tools failed to save to SQL server. Nothing that you changed is lost.",
                           "save", result.serverGone, result.error);
    std::vector<std::string> refused = result.refused;
    for (const Conflict& conflict : result.conflicts)
        refused.push_back(AccountText(store, conflict.row) +
                          ": somebody else has changed it since it was read. Nothing of theirs was "
                          "overwritten; save again to decide");
    if (!refused.empty())
        return "Kerno Tools did not save all changes. These wait under \"Changes...\", where you can take "
               "them "
               "back; all others are saved" +
               Joined(refused);
    if (!result.privilegesFailed)
        return "Account saved successfully";
    if (store.GMDataMissing() && result.error->Number() == common::kPathFileAccess)
        return WithReason(
            "Kerno Tools did not save GM data because it could not load it before. The accounts are "
            "saved. Please make sure the file can be read, press Reload and set the privileges again",
            result.error);
    return WithReason("Kerno Tools failed to save GM data. The accounts are saved. Please make sure that the "
                      "file can be written, and save again",
                      result.error);
}

} // namespace accounts
