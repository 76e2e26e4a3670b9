#include "accounts/frmAccountChanges.h"
#include "accounts/frmAccountConflict.h"
#include "accounts/frmAccountEditor.h"
#include "accounts/frmPrivilegeFile.h"
#include "accounts/WaitingChanges.h"
#include "common/Numbers.h"
#include "gui/Waiting.h"
#include "servers/Databases.h"
#include "servers/Servers.h"
#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"

// What the editor does with server and privilege file: loading, adding, deleting, saving, reloading, and the
// windows about what waits.

namespace {

constexpr const char* kNotAdvised = "You are advised not to continue as Kerno Tools might not act properly";
constexpr const char* kNoGMData =
    "Kerno Tools failed to load GM data. Please make sure all files are in proper place";
constexpr const char* kWithoutHeader =
    "The first line of id_table.txt should be its header, but is the row of an account. It is not read, and "
    "Save puts the header in its place. If somebody took the header away, please put a line in front of that "
    "row before you go on, and press Reload";

} // namespace

// ---- Loading and reloading

gui::Task<> frmAccountEditor::LoadAccounts() {
    const bool connected = co_await Connect();
    if (!connected) {
        co_await MsgBox("Kerno Tools failed to connect to SQL server. Please make sure you have set up MySQL "
                        "server properly",
                        MB_OK, kTitle);
        co_await MsgBox(kNotAdvised, MB_OK, kTitle);
    }
    FillList();
    AccountsDB.KernoPath(modServerControl::KernoPath());
    if (AccountsDB.LoadGMData()) {
        TellHeader();
    } else {
        co_await MsgBox(kNoGMData, MB_OK, kTitle);
        co_await MsgBox(kNotAdvised, MB_OK, kTitle);
    }
    if (cboAccountName.ListCount() > 0)
        cboAccountName.ListIndex(0);
}

/// Logs in as the login server does.
gui::Task<bool> frmAccountEditor::Connect() {
    const Flag busy(busy_);
    const gui::Waiting waiting(*this);
    AccountsDB.SQLHostname(suite::kThisComputer);
    try {
        ReadLogin();
    } catch (const RuntimeError&) {
        // Without the servers' file there is no login to try; the connection tells.
        AccountsDB.SQLUsername("");
    }
    const std::int16_t connected = co_await AccountsDB.ConnectSQL();
    Caption(kTitle);
    co_return connected == 1;
}

void frmAccountEditor::ReadLogin() {
    const clsINI kerno(settings::KernoIniPath(modServerControl::KernoPath()));
    const suite::Login login = suite::ReadLogin(kerno, suite::LoginDatabase());
    AccountsDB.SQLUsername(login.user);
    AccountsDB.SQLPassword(login.password);
}

void frmAccountEditor::TellProgress(std::size_t accountsRead) {
    // Drawing a caption takes as long as reading some hundred accounts.
    constexpr std::chrono::milliseconds kBetween{200};
    const auto now = std::chrono::steady_clock::now();
    if (now - progressTold_ < kBetween)
        return;
    progressTold_ = now;
    const std::string count = common::CountText(accountsRead);
    std::string caption = kTitle;
    caption.append(" - loading ").append(count).append(" accounts");
    Caption(caption);
}

void frmAccountEditor::TellHeader() {
    if (AccountsDB.GMData().WithoutHeader())
        TellOperator(kWithoutHeader);
}

gui::Task<> frmAccountEditor::cmdReload_Click() {
    const auto selected = keeper_.Current();
    const accounts::AccountEdit edit = Edit(cboAccountName.Text());
    ShowNone();
    bool done = co_await Refresh();
    if (!done && !AccountsDB.Connected())
        done = co_await Connect();
    const auto reason = AccountsDB.LastError();
    const bool serverGone = AccountsDB.ConnectionLost();
    FillList();
    TellSelected();
    // Privileges that wait belong to the accounts that were given up just now.
    const bool load = done || AccountsDB.GMDataMissing();
    const bool loaded = !load || AccountsDB.LoadGMData() == 1;
    const auto gmReason = AccountsDB.LastError();
    // Nothing was given up.
    if (!done && selected && ShowRow(selected->row)) {
        cboAccountName.Text(edit.fields.name);
        ShowEdit(edit);
    }
    TellWaiting();
    if (!done)
        TellOperator(accounts::FailureText("Kerno Tools failed to reload the accounts.", "reload", serverGone,
                                           reason));
    if (!loaded)
        TellOperator(accounts::WithReason(kNoGMData, gmReason));
    else if (load)
        TellHeader();
}

gui::Task<bool> frmAccountEditor::Refresh() {
    const Flag busy(busy_);
    const gui::Waiting waiting(*this);
    const std::int16_t refreshed = co_await AccountsDB.RefreshAccountSQL();
    Caption(kTitle);
    co_return refreshed == 1;
}

// ---- Adding and deleting

void frmAccountEditor::cmdAddAccount_Click() {
    const auto outcome = keeper_.Add(Edit(cboAccountName.Text()));
    if (outcome.done) {
        // The new account is the one that the fields show from now on.
        cboAccountName.AddItem(keeper_.Current()->stored.fields.name);
        rows_.push_back(keeper_.Current()->row);
        ShowRow(keeper_.Current()->row);
        RefreshList();
    }
    TellOperator(outcome.message);
}

gui::Task<> frmAccountEditor::cmdDeleteAccount_Click() {
    const std::string name = cboAccountName.Text();
    const auto selected = keeper_.Current();
    const bool isSelected = selected && selected->stored.fields.name == name;
    if (!isSelected && AccountsDB.CountOfName(name) > 1) {
        TellOperator("There are several accounts that look like '" + name +
                     "'. Please choose the one to delete from the list");
        co_return;
    }
    const auto row = isSelected ? std::optional(selected->row) : AccountsDB.RowOfName(name);
    if (!row) {
        TellOperator("There is no account '" + name + "' to delete. Please choose one from the list");
        co_return;
    }
    const int answer =
        co_await MsgBox("Are you sure you want to delete account '" + name + "' ?", MB_YESNO, kTitle);
    if (answer != IDYES)
        co_return;
    // The search box can choose another account while the question is open.
    const int index = IndexOfRow(*row);
    const auto outcome = keeper_.Delete(*row);
    if (outcome.done) {
        rows_.erase(rows_.begin() + index);
        cboAccountName.RemoveItem(index);
        if (keeper_.Current())
            cboAccountName.Shown(cboAccountName.Shown());
        else if (rows_.empty() || !ShowRow(rows_[0]))
            ShowNone();
        TellSelected();
        TellWaiting();
        RefreshList();
    }
    TellOperator(outcome.message);
}

// ---- Saving

gui::Task<> frmAccountEditor::cmdSave_Click() {
    const accounts::AccountEdit edit = Edit(cboAccountName.Text());
    // After the last account was deleted there is none to save, but still the deletion to send.
    const bool onlySend = !keeper_.Current() && edit.fields.name.empty() && edit.fields.id.empty() &&
                          accounts::WaitingAccounts(AccountsDB) > 0;
    if (!onlySend && !keeper_.Current()) {
        const std::string refusal = keeper_.RefusalToKeep(edit);
        TellOperator(!refusal.empty()
                         ? refusal
                         : "There is no account selected. Please choose one from the list to change it, "
                           "or press Add to make a new account");
        co_return;
    }
    if (!Keep(edit.fields.name))
        co_return;
    const Flag busy(busy_);
    accounts::SendResult result = co_await Send();
    // Rows that somebody else has changed meanwhile are decided, and sent again.
    for (bool asking = true; asking && !result.stopped && !result.conflicts.empty();) {
        const std::size_t decided = co_await DecideEach(result.conflicts);
        asking = decided == result.conflicts.size();
        if (decided == 0)
            break;
        const std::vector<std::string> notes = std::move(result.notes);
        result = co_await Send();
        result.notes.insert(result.notes.begin(), notes.begin(), notes.end());
    }
    TellSent(result);
}

/// Asks about one conflict after the other until Cancel; returns how many were decided.
gui::Task<std::size_t> frmAccountEditor::DecideEach(std::vector<accounts::Conflict> conflicts) {
    for (std::size_t i = 0; i < conflicts.size(); ++i) {
        gui::Local<frmAccountConflict> question(conflicts[i]);
        co_await question->ShowModal(*this);
        if (!question->Decision())
            co_return i;
        accounts::Decide(AccountsDB, conflicts[i], *question->Decision());
    }
    co_return conflicts.size();
}

/// Sends all that waits.
gui::Task<accounts::SendResult> frmAccountEditor::Send() {
    const gui::Waiting waiting(*this);
    accounts::SendResult result = co_await accounts::Send(AccountsDB);
    co_return result;
}

void frmAccountEditor::TellSent(const accounts::SendResult& result) {
    if (keeper_.Current())
        ShowRow(keeper_.Current()->row);
    TellWaiting();
    for (const std::string& note : result.notes)
        TellOperator(note);
    TellOperator(accounts::TextOf(result, AccountsDB));
}

// ---- What waits, and the privilege file

/// Shows a window that changes what the store holds.
template <class F> gui::Task<> frmAccountEditor::ShowOverStore() {
    if (!Keep(cboAccountName.Text()))
        co_return;
    const Flag busy(busy_);
    gui::Local<F> form(AccountsDB);
    co_await form->ShowModal(*this);
    ShowChanged();
}

gui::Task<> frmAccountEditor::cmdChanges_Click() {
    return ShowOverStore<frmAccountChanges>();
}

gui::Task<> frmAccountEditor::cmdPrivilegeFile_Click() {
    return ShowOverStore<frmPrivilegeFile>();
}
