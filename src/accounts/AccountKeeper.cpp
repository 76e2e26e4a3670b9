#include "accounts/AccountKeeper.h"

#include "accounts/AccountChecks.h"

namespace accounts {

std::string WithReason(const std::string& text, const std::optional<RuntimeError>& error) {
    if (!error)
        return text;
    return text + "\n\n[" + std::to_string(error->Number()) + "] " + error->Description();
}

std::string FailureText(const std::string& text, const std::string& action, bool serverGone,
                        const std::optional<RuntimeError>& error) {
    const bool cancelled = error && error->Number() == database::kCancelled;
    if (cancelled)
        return WithReason(text + " You can " + action + " again", error);
    return WithReason(text + " Please make sure " +
                          (serverGone ? "MySQL server is running" : "that the reason below is removed") +
                          " and " + action + " again",
                      error);
}

bool AccountKeeper::Select(std::size_t row) {
    if (!store_.MoveToRow(row))
        return false;
    Selected selected;
    selected.row = row;
    selected.id = store_.AccountID();
    selected.stored.fields = {store_.AccountName(), std::to_string(selected.id), store_.AccountPassword(),
                              store_.AccountEmail()};
    if (store_.AccountSex() == 0 || store_.AccountSex() == 1)
        selected.stored.sex = store_.AccountSex();
    const Privileges privileges = store_.RetrieveGMData(selected.id);
    selected.stored.isGameMaster = privileges[0] != kLeaveAsItIs;
    for (std::size_t i = 0; i < privileges.size(); ++i)
        selected.stored.privileges[i] = selected.stored.isGameMaster && privileges[i] != 0;
    selected_ = std::move(selected);
    return true;
}

std::string AccountKeeper::RefusalToKeep(const AccountEdit& edit) const {
    const AccountFields stored = selected_ ? selected_->stored.fields : AccountFields();
    return Refusal(
        edit.fields, stored, store_.ColumnWidths(),
        [&](const std::string& name) {
            return selected_ && name != stored.name && !store_.CheckAccountName(name);
        },
        [&](std::int32_t id) { return selected_ && id != selected_->id && !store_.CheckAccountID(id); });
}

void AccountKeeper::RemovePrivileges(std::int32_t id) {
    // A file that was written by hand may have several rows of an account.
    while (store_.RemoveGMData(id)) {
    }
}

AccountKeeper::Outcome AccountKeeper::Keep(const AccountEdit& edit) {
    const std::string& name = edit.fields.name;
    const std::int32_t id = AccountNumber(edit.fields.id).value_or(selected_->id);
    RemovePrivileges(id);
    RemovePrivileges(selected_->id);
    if (edit.isGameMaster && !store_.ModifyGMData(id, edit.privileges))
        return Failure("Kerno Tools failed to keep the privileges of '" + name + "'");
    if (store_.MoveToRow(selected_->row)) {
        store_.AccountName(name);
        store_.AccountID(id);
        store_.AccountPassword(edit.fields.password);
        store_.AccountEmail(edit.fields.email);
        store_.AccountSex(edit.sex.value_or(store_.AccountSex()));
        if (store_.SaveCurrentRecord()) {
            selected_ = Selected{selected_->row, id, edit};
            return {true, {}};
        }
    }
    return Failure("Kerno Tools failed to keep the changes of '" + name + "'");
}

AccountKeeper::Outcome AccountKeeper::Add(const AccountEdit& edit) {
    const AccountFields& fields = edit.fields;
    const bool connected = store_.Connected();
    const std::string refusal = Refusal(
        fields, {}, store_.ColumnWidths(),
        [&](const std::string& name) { return connected && !store_.CheckAccountName(name); },
        [&](std::int32_t id) { return connected && !store_.CheckAccountID(id); });
    if (!refusal.empty())
        return {false, refusal};
    if (!connected)
        return {false, "Kerno Tools is not connected to SQL server. Please press Reload to connect"};
    const std::int32_t id = *AccountNumber(fields.id);
    if (!store_.AddNewAccount(fields.name, fields.password, fields.email, edit.sex.value_or(0), id))
        return Failure("Kerno Tools failed to add the account");
    RemovePrivileges(id);
    const bool withPrivileges = !edit.isGameMaster || store_.ModifyGMData(id, edit.privileges) == 1;
    const auto reason = store_.LastError();
    Select(*store_.CurrentRow());
    if (withPrivileges)
        return {true, "Account Added"};
    return {true, WithReason("Account Added, but Kerno Tools failed to keep its privileges", reason)};
}

AccountKeeper::Outcome AccountKeeper::Delete(std::size_t row) {
    const auto id = AccountNumber(store_.Text(row, Field::Id));
    if (!store_.DeleteRow(row))
        return Failure("Kerno Tools failed to delete the account");
    if (id)
        RemovePrivileges(*id);
    if (selected_ && selected_->row == row)
        SelectNone();
    return {true, "Account deleted."};
}

} // namespace accounts
