#include "accounts/frmAccountEditor.h"

#include "accounts/frmAccountChanges.h"
#include "accounts/frmAccountConflict.h"
#include "accounts/frmPrivilegeFile.h"
#include "accounts/Sending.h"
#include "accounts/WaitingChanges.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "gui/WaitCursor.h"
#include "gui/Waiting.h"
#include "servers/Databases.h"
#include "servers/Servers.h"
#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"

namespace {

constexpr const char* kTitle = "Kerno Tools :: Accounts Editor";
constexpr const char* kNotAdvised = "You are advised not to continue as Kerno Tools might not act properly";
constexpr const char* kNoGMData =
    "Kerno Tools failed to load GM data. Please make sure all files are in proper place";
constexpr const char* kWithoutHeader =
    "The first line of id_table.txt should be its header, but is the row of an account. It is not read, and "
    "Save puts the header in its place. If somebody took the header away, please put a line in front of that "
    "row before you go on, and press Reload";

/// Sets a flag as long as it lives.
class Flag {
public:
    explicit Flag(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
    ~Flag() { flag_ = before_; }
    Flag(const Flag&) = delete;

private:
    bool& flag_;
    bool before_;
};

} // namespace

// ---- Opening and closing

void frmAccountEditor::Form_Load() {
    cboSex.AddItem("Female - 0");
    cboSex.AddItem("Male - 1");
    cboSex.ListIndex(0);
    ShowNone();
    // In sight while the accounts are read, which takes its time on a large server.
    Visible(true);
    UpdateWindow(Window());

    AccountsDB.Reading = [this](std::size_t count) { TellProgress(count); };
    AccountsDB.AccountSQLAccountName = [this](const std::string& name) {
        cboAccountName.AddItem(name);
        rows_.push_back(*AccountsDB.CurrentRow());
    };
    Start(LoadAccounts());
}

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

void frmAccountEditor::Form_Unload() {
    if (frmFindAccount* find = find_.Peek())
        find->Unload();
    if (frmAccountList* list = list_.Peek())
        list->Unload();
    AccountsDB.DisconnectSQL();
}

/// Logs in as the login server does.
gui::Task<bool> frmAccountEditor::Connect() {
    const Flag busy(busy_);
    const gui::Waiting waiting(*this);
    AccountsDB.SQLHostname("localhost");
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

void frmAccountEditor::FillList() {
    const gui::WaitCursor wait;
    rows_.clear();
    cboAccountName.Fill(AccountsDB.NumOfAccounts(), [this] { AccountsDB.GetAccountList(); });
    RefreshList();
}

void frmAccountEditor::RefreshList() {
    if (frmAccountList* list = list_.Peek())
        list->Refresh();
}

void frmAccountEditor::TellProgress(std::size_t accountsRead) {
    const std::string count = common::ThousandsText(static_cast<double>(accountsRead));
    std::string caption = kTitle;
    caption.append(" - loading ").append(count).append(" accounts");
    Caption(caption);
}

/// Shows a message of the editor, whose caption may be about something else at the moment.
void frmAccountEditor::TellOperator(const std::string& text) {
    Tell(text, MB_OK, kTitle);
}

void frmAccountEditor::TellHeader() {
    if (AccountsDB.GMData().WithoutHeader())
        TellOperator(kWithoutHeader);
}

void frmAccountEditor::TellSelected() {
    if (!keeper_.Current())
        return lblSelected.Caption("No account is selected.");
    const std::string& name = keeper_.Current()->stored.fields.name;
    const std::string account = name + " (" + std::to_string(keeper_.Current()->id) + ")";
    if (cboAccountName.Text() == name)
        lblSelected.Caption("Selected account: " + account +
                            (AccountsDB.NameIsLossy(keeper_.Current()->row)
                                 ? ". Its name has characters that cannot be shown here."
                                 : ""));
    else
        lblSelected.Caption("Save renames " + account +
                            ", Add makes a new account, Enter goes to the account.");
}

/// Says beside Save how many accounts it would change.
void frmAccountEditor::TellWaiting() {
    if (showing_)
        return;
    const bool edited = keeper_.Differs(Edit(cboAccountName.Text()));
    const std::size_t count =
        accounts::WaitingAccounts(AccountsDB, edited ? std::optional(keeper_.Current()->row) : std::nullopt);
    std::string text;
    if (count > 0)
        text = std::to_string(count) + (count == 1 ? " account waits" : " accounts wait") + " for Save";
    if (lblWaiting.Caption() != text)
        lblWaiting.Caption(text);
    if (cmdChanges.Enabled() != (count > 0))
        cmdChanges.Enabled(count > 0);
}

// ---- Choosing and showing

void frmAccountEditor::cboAccountName_Click() {
    const int index = cboAccountName.ListIndex();
    if (index < 0 || index >= cboAccountName.ListCount())
        return;
    // Search box and list can choose while the accounts are sent or read.
    if (busy_)
        return cboAccountName.Shown(cboAccountName.Shown());
    Choose(index);
}

void frmAccountEditor::Choose(int index) {
    const std::size_t row = rows_[static_cast<std::size_t>(index)];
    if (!Keep(cboAccountName.Edited())) {
        // What was typed in the other fields stays, to be put right.
        cboAccountName.Shown(cboAccountName.Shown());
        TellSelected();
        return;
    }
    const auto before = keeper_.Current();
    if (ShowRow(row))
        return;
    TellOperator(
        accounts::WithReason("Kerno Tools failed to show account '" + cboAccountName.Names().At(index) + "'",
                             AccountsDB.LastError()));
    if (!before || !ShowRow(before->row))
        ShowNone();
}

/// Keeps what was typed for the selected account, whose name is `name` now. Tells why not; false then.
bool frmAccountEditor::Keep(const std::string& name) {
    if (!keeper_.Current())
        return true;
    const accounts::AccountEdit edit = Edit(name);
    std::string refusal = keeper_.RefusalToKeep(edit);
    if (refusal.empty())
        refusal = keeper_.Keep(edit).message;
    if (!refusal.empty()) {
        TellOperator(refusal);
        return false;
    }
    cboAccountName.Rename(cboAccountName.Shown(), name);
    return true;
}

int frmAccountEditor::IndexOfRow(std::size_t row) const {
    const auto found = std::ranges::find(rows_, row);
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

bool frmAccountEditor::ShowRow(std::size_t row) {
    const int index = IndexOfRow(row);
    if (index < 0 || !keeper_.Select(row))
        return false;
    const accounts::AccountEdit& stored = keeper_.Current()->stored;
    {
        const Flag showing(showing_);
        txtAccountID.Text(stored.fields.id);
        txtAccountPassword.Text(stored.fields.password);
        txtEmail.Text(stored.fields.email);
        cboSex.ListIndex(stored.sex.value_or(-1));
        ShowPrivileges(stored);
        cboAccountName.Rename(index, stored.fields.name);
        cboAccountName.Shown(index);
        TellSelected();
    }
    TellWaiting();
    return true;
}

void frmAccountEditor::ShowPrivileges(const accounts::AccountEdit& edit) {
    AccountsDB.IsAGM(edit.isGameMaster);
    chkIsGM.Value(edit.isGameMaster);
    for (std::size_t i = 0; i < PrivilegeBoxes.size(); ++i)
        PrivilegeBoxes[i]->Value(edit.isGameMaster && edit.privileges[i] != 0);
}

void frmAccountEditor::ShowNone() {
    keeper_.SelectNone();
    const Flag showing(showing_);
    cboAccountName.Shown(-1);
    cmdClearAll_Click();
    ShowPrivileges({});
}

void frmAccountEditor::chkIsGM_Click() {
    for (gui::CheckBox* box : PrivilegeBoxes)
        box->Enabled(chkIsGM.Value() != 0);
    cmdGiveAllPrivileges.Enabled(chkIsGM.Value() != 0);
    cmdRemoveAllPrivileges.Enabled(chkIsGM.Value() != 0);
    TellWaiting();
}

void frmAccountEditor::Tick(int value) {
    {
        const Flag showing(showing_);
        for (gui::CheckBox* box : PrivilegeBoxes)
            box->Value(value);
    }
    TellWaiting();
}

void frmAccountEditor::cmdClearAll_Click() {
    cboAccountName.Text("");
    txtAccountID.Text("");
    txtAccountPassword.Text("");
    txtEmail.Text("");
    TellSelected();
    TellWaiting();
}

void frmAccountEditor::cmdAutofillID_Click() {
    if (const std::int32_t id = AccountsDB.GetUniqueAccountID())
        txtAccountID.Text(std::to_string(id));
    else
        TellOperator(accounts::WithReason("Kerno Tools failed to find a free ID. Please enter one",
                                          AccountsDB.LastError()));
}

// ---- Finding

void frmAccountEditor::cmdFind_Click() {
    frmFindAccount& find = find_.Get();
    find.Load(this, true);
    find.Show();
}

void frmAccountEditor::cmdList_Click() {
    frmAccountList& list = list_.Get();
    list.Load(this, true);
    list.Show();
}

void frmAccountEditor::ChooseRow(std::size_t row) {
    if (const int index = IndexOfRow(row); index >= 0)
        cboAccountName.ListIndex(index);
}

void frmAccountEditor::Form_MouseDown(gui::MouseButton button, int /*x*/, int /*y*/) {
    if (button == gui::MouseButton::Right)
        mnuPopup3.Show();
}

// ---- Keeping what was typed, and saving

/// What stands in fields and boxes, with a name for the account.
accounts::AccountEdit frmAccountEditor::Edit(const std::string& name) const {
    accounts::AccountEdit edit;
    edit.fields = {name, txtAccountID.Text(), txtAccountPassword.Text(), txtEmail.Text()};
    if (cboSex.ListIndex() >= 0)
        edit.sex = static_cast<std::int16_t>(cboSex.ListIndex());
    edit.isGameMaster = chkIsGM.Value() != 0;
    for (std::size_t i = 0; edit.isGameMaster && i < edit.privileges.size(); ++i)
        edit.privileges[i] = static_cast<std::int16_t>(PrivilegeBoxes[i]->Value());
    return edit;
}

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
    accounts::SendResult result = co_await Send();
    // Rows that somebody else has changed meanwhile are decided one by one, and sent again.
    while (!result.connectionLost && !result.conflicts.empty()) {
        for (const accounts::Conflict& conflict : result.conflicts) {
            gui::Local<frmAccountConflict> question(conflict);
            co_await question->ShowModal(*this);
            if (!question->Decision()) {
                TellSent(result);
                co_return;
            }
            accounts::Decide(AccountsDB, conflict, *question->Decision());
        }
        const std::vector<std::string> notes = std::move(result.notes);
        result = co_await Send();
        result.notes.insert(result.notes.begin(), notes.begin(), notes.end());
    }
    TellSent(result);
}

/// Sends all that waits.
gui::Task<accounts::SendResult> frmAccountEditor::Send() {
    const Flag busy(busy_);
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

gui::Task<> frmAccountEditor::cmdReload_Click() {
    ShowNone();
    bool done = co_await Refresh();
    if (!done && !AccountsDB.Connected())
        done = co_await Connect();
    const auto reason = AccountsDB.LastError();
    FillList();
    TellSelected();
    // Privileges that wait belong to the accounts that were given up just now.
    const bool load = done || AccountsDB.GMDataMissing();
    const bool loaded = !load || AccountsDB.LoadGMData() == 1;
    const auto gmReason = AccountsDB.LastError();
    TellWaiting();
    if (!done)
        TellOperator(accounts::WithReason(
            "Kerno Tools failed to reload the accounts. Please make sure MySQL server is "
            "running and reload again",
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

// ---- What waits, and the privilege file

gui::Task<> frmAccountEditor::cmdChanges_Click() {
    if (!Keep(cboAccountName.Text()))
        co_return;
    gui::Local<frmAccountChanges> changes(AccountsDB);
    co_await changes->ShowModal(*this);
    ShowChanged();
}

gui::Task<> frmAccountEditor::cmdPrivilegeFile_Click() {
    if (!Keep(cboAccountName.Text()))
        co_return;
    gui::Local<frmPrivilegeFile> file(AccountsDB);
    co_await file->ShowModal(*this);
    ShowChanged();
}

/// Lists the accounts anew after they were changed elsewhere than in the fields.
void frmAccountEditor::ShowChanged() {
    const auto selected = keeper_.Current();
    FillList();
    if (selected && ShowRow(selected->row))
        return;
    if (rows_.empty() || !ShowRow(rows_[0]))
        ShowNone();
    TellWaiting();
}
