#include "accounts/frmAccountEditor.h"

#include "common/Numbers.h"
#include "common/Text.h"
#include "database/Error.h"
#include "gui/WaitCursor.h"
#include "servers/Databases.h"
#include "servers/Servers.h"
#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"

#include <utility>

namespace {

constexpr const char* kTitle = "Kerno Tools :: Accounts Editor";
constexpr const char* kNotAdvised = "You are advised not to continue as Kerno Tools might not act properly";
constexpr const char* kNoGMData =
    "Kerno Tools failed to load GM data. Please make sure all files are in proper place";

std::string WithReason(const std::string& text, const std::optional<RuntimeError>& error) {
    if (!error)
        return text;
    return text + "\n\n[" + std::to_string(error->Number()) + "] " + error->Description();
}

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
    AccountsDB.AccountSQLAccountName = [this](const std::string& name) { cboAccountName.AddItem(name); };
    if (!Connect() &&
        !(Tell("Kerno Tools failed to connect to SQL server. Please make sure you have set up MySQL server "
               "properly") &&
          Tell(kNotAdvised)))
        return;
    FillList();
    AccountsDB.KernoPath(modServerControl::KernoPath());
    if (!AccountsDB.LoadGMData() && !(Tell(kNoGMData) && Tell(kNotAdvised)))
        return;
    if (cboAccountName.ListCount() > 0)
        cboAccountName.ListIndex(0);
}

void frmAccountEditor::Form_Unload() {
    if (frmFindAccount* find = find_.Peek())
        find->Unload();
    AccountsDB.DisconnectSQL();
}

/// Logs in as the login server does.
bool frmAccountEditor::Connect() {
    const gui::WaitCursor wait;
    AccountsDB.SQLHostname("localhost");
    try {
        ReadLogin();
    } catch (const RuntimeError&) {
        // Without the servers' file there is no login to try; the connection tells.
        AccountsDB.SQLUsername("");
    }
    const bool connected = AccountsDB.ConnectSQL() == 1;
    Caption(kTitle);
    return connected;
}

void frmAccountEditor::ReadLogin() {
    const clsINI kerno(settings::KernoIniPath(modServerControl::KernoPath()));
    const suite::Login login = suite::ReadLogin(kerno, suite::LoginDatabase());
    AccountsDB.SQLUsername(login.user);
    AccountsDB.SQLPassword(login.password);
}

void frmAccountEditor::FillList() {
    const gui::WaitCursor wait;
    cboAccountName.Clear();
    cboAccountName.Fill(AccountsDB.NumOfAccounts(), [this] { AccountsDB.GetAccountList(); });
}

void frmAccountEditor::TellProgress(std::size_t accountsRead) {
    const std::string count = common::ThousandsText(static_cast<double>(accountsRead));
    std::string caption = kTitle;
    caption.append(" - loading ").append(count).append(" accounts");
    Caption(caption);
}

/// A message of the editor; false when the editor was closed meanwhile.
bool frmAccountEditor::Tell(const std::string& text) {
    MsgBoxNow(text, MB_OK, kTitle);
    return Loaded();
}

void frmAccountEditor::TellFailure(const std::string& text) {
    Tell(WithReason(text, AccountsDB.LastError()));
}

void frmAccountEditor::TellSelected() {
    if (!IsSelected())
        return lblSelected.Caption("No account is selected.");
    const std::string account = selected_.stored.name + " (" + std::to_string(selected_.id) + ")";
    if (cboAccountName.Text() == selected_.stored.name)
        lblSelected.Caption("Selected account: " + account);
    else
        lblSelected.Caption("Save renames " + account +
                            ", Add makes a new account, Enter goes to the account.");
}

// ---- Choosing and showing

void frmAccountEditor::cboAccountName_Click() {
    const int index = cboAccountName.ListIndex();
    if (index < 0 || index >= cboAccountName.Names().Count())
        return;
    // The search box can choose on while a message of the last choice is open.
    if (choosing_) {
        cboAccountName.Shown(cboAccountName.Shown());
        return;
    }
    struct Choosing {
        explicit Choosing(bool& flag) : on(flag) { on = true; }
        ~Choosing() { on = false; }
        bool& on;
    } choosing(choosing_);
    Choose(index);
}

void frmAccountEditor::Choose(int index) {
    const int before = cboAccountName.Shown();
    if (IsSelected()) {
        const accounts::AccountFields fields = Fields(cboAccountName.Edited());
        const std::string refusal = RefusalToKeep(fields);
        if (!refusal.empty() || !Keep(fields)) {
            const bool open = refusal.empty() || Tell(refusal);
            if (open)
                ShowAccount(before);
            return;
        }
    }
    if (ShowAccount(index))
        return;
    const std::string name = cboAccountName.Names().At(index);
    TellFailure("Kerno Tools failed to show account '" + name + "'");
    if (Loaded() && (before < 0 || !ShowAccount(before)))
        ShowNone();
}

bool frmAccountEditor::ShowAccount(int index) {
    if (!AccountsDB.MoveToAccount(cboAccountName.Names().At(index)))
        return false;
    txtAccountID.Text(std::to_string(AccountsDB.AccountID()));
    txtAccountPassword.Text(AccountsDB.AccountPassword());
    txtEmail.Text(AccountsDB.AccountEmail());
    selected_ = {Fields(AccountsDB.AccountName()), AccountsDB.AccountID()};
    cboSex.ListIndex(AccountsDB.AccountSex());
    ShowPrivileges(AccountsDB.RetrieveGMData(AccountsDB.AccountID()));
    cboAccountName.Shown(index);
    TellSelected();
    return true;
}

void frmAccountEditor::ShowPrivileges(const accounts::Privileges& privileges) {
    const bool isGM = privileges[0] != accounts::kLeaveAsItIs;
    AccountsDB.IsAGM(isGM);
    chkIsGM.Value(isGM);
    for (std::size_t i = 0; i < PrivilegeBoxes.size(); ++i)
        PrivilegeBoxes[i]->Value(isGM && privileges[i] != 0);
}

void frmAccountEditor::ShowNone() {
    selected_ = {};
    cboAccountName.Shown(-1);
    cmdClearAll_Click();
    ShowPrivileges({accounts::kLeaveAsItIs});
}

void frmAccountEditor::chkIsGM_Click() {
    for (gui::CheckBox* box : PrivilegeBoxes)
        box->Enabled(chkIsGM.Value() != 0);
}

void frmAccountEditor::Tick(int value) {
    for (gui::CheckBox* box : PrivilegeBoxes)
        box->Value(value);
}

void frmAccountEditor::cmdClearAll_Click() {
    cboAccountName.Text("");
    txtAccountID.Text("");
    txtAccountPassword.Text("");
    txtEmail.Text("");
    TellSelected();
}

void frmAccountEditor::cmdAutofillID_Click() {
    if (const std::int32_t id = AccountsDB.GetUniqueAccountID())
        txtAccountID.Text(std::to_string(id));
    else
        TellFailure("Kerno Tools failed to find a free ID. Please enter one");
}

// ---- Finding

void frmAccountEditor::cmdFind_Click() {
    frmFindAccount& find = find_.Get();
    find.Load(this, true);
    find.Show();
}

void frmAccountEditor::Form_MouseDown(gui::MouseButton button, int /*x*/, int /*y*/) {
    if (button == gui::MouseButton::Right)
        mnuPopup3.Show();
}

// ---- Keeping what was typed

accounts::AccountFields frmAccountEditor::Fields(const std::string& name) const {
    return {name, txtAccountID.Text(), txtAccountPassword.Text(), txtEmail.Text()};
}

accounts::Privileges frmAccountEditor::Boxes() const {
    accounts::Privileges flags{};
    for (std::size_t i = 0; i < flags.size(); ++i)
        flags[i] = static_cast<std::int16_t>(PrivilegeBoxes[i]->Value());
    return flags;
}

std::int16_t frmAccountEditor::Sex() const {
    const int index = cboSex.ListIndex();
    // A value that the list does not have stays as the server has it.
    return index < 0 ? AccountsDB.AccountSex() : static_cast<std::int16_t>(index);
}

std::string frmAccountEditor::RefusalToKeep(const accounts::AccountFields& fields) {
    return accounts::Refusal(
        fields, selected_.stored,
        [this](const std::string& name) {
            return IsSelected() && name != selected_.stored.name && !AccountsDB.CheckAccountName(name);
        },
        [this](std::int32_t id) {
            return IsSelected() && id != selected_.id && !AccountsDB.CheckAccountID(id);
        });
}

void frmAccountEditor::RemovePrivileges(std::int32_t id) {
    // A file that was written by hand may have several rows of an account.
    while (AccountsDB.RemoveGMData(id)) {
    }
}

/// Takes the fields and boxes over into the store's selected account; tells when that fails.
bool frmAccountEditor::Keep(const accounts::AccountFields& fields) {
    const std::int32_t id = accounts::AccountNumber(fields.id).value_or(selected_.id);
    RemovePrivileges(id);
    // The privileges go with the account; whoever gets its old number later must not find them there.
    RemovePrivileges(selected_.id);
    if (chkIsGM.Value() && !AccountsDB.ModifyGMData(id, Boxes())) {
        TellFailure("Kerno Tools failed to keep the privileges of '" + fields.name + "'");
        return false;
    }
    AccountsDB.AccountName(fields.name);
    AccountsDB.AccountID(id);
    AccountsDB.AccountPassword(fields.password);
    AccountsDB.AccountEmail(fields.email);
    AccountsDB.AccountSex(Sex());
    if (!AccountsDB.SaveCurrentRecord()) {
        TellFailure("Kerno Tools failed to keep the changes of '" + fields.name + "'");
        return false;
    }
    cboAccountName.Rename(cboAccountName.Shown(), fields.name);
    selected_ = {fields, id};
    return true;
}

void frmAccountEditor::cmdSave_Click() {
    const accounts::AccountFields fields = Fields(cboAccountName.Text());
    // After the last account was deleted there is none to save, but still the deletion to send.
    const bool onlySend =
        !IsSelected() && fields.name.empty() && fields.id.empty() && AccountsDB.PendingChanges() > 0;
    if (!onlySend) {
        std::string refusal = RefusalToKeep(fields);
        if (refusal.empty() && !IsSelected())
            refusal =
                "There is no account selected. Please choose one from the list to change it, or press Add "
                "to make a new account";
        if (!refusal.empty()) {
            Tell(refusal);
            return;
        }
        if (!Keep(fields))
            return;
        TellSelected();
    }
    Send();
}

void frmAccountEditor::Send() {
    const auto update = [this](std::int16_t (clsAccountSQL::*operation)()) {
        const gui::WaitCursor wait;
        return (AccountsDB.*operation)() == 1;
    };
    if (!update(&clsAccountSQL::UpdateAccountSQL)) {
        const auto& error = AccountsDB.LastError();
        if (error && error->Number() == database::kRowChanged)
            TellFailure(
                "Kerno Tools did not save all changes because somebody else has changed or removed an "
                "account in the meantime. Nothing of theirs was overwritten. Press Reload to see the "
                "accounts as they are now and make the missing change again");
        else
            TellFailure(
                "Kerno Tools failed to save to SQL server. Nothing that you changed is lost. Please make "
                "sure MySQL server is running and save again");
        return;
    }
    if (!update(&clsAccountSQL::UpdateGMData)) {
        if (AccountsDB.GMDataMissing() && AccountsDB.LastError()->Number() == common::kPathFileAccess)
            return TellFailure(
                "Kerno Tools did not save GM data because it could not load it before. The accounts are "
                "saved. Please make sure the file can be read, press Reload and set the privileges again");
        TellFailure(
            "Kerno Tools failed to save GM data. The accounts are saved. Please put right what is said "
            "below and save again");
        return;
    }
    Tell("Account saved successfully");
}

void frmAccountEditor::cmdAddAccount_Click() {
    const accounts::AccountFields fields = Fields(cboAccountName.Text());
    const bool connected = AccountsDB.Connected();
    const std::string refusal = accounts::Refusal(
        fields, {}, [&](const std::string& name) { return connected && !AccountsDB.CheckAccountName(name); },
        [&](std::int32_t id) { return connected && !AccountsDB.CheckAccountID(id); });
    if (!refusal.empty()) {
        Tell(refusal);
        return;
    }
    if (!connected) {
        Tell("Kerno Tools is not connected to SQL server. Please press Reload to connect");
        return;
    }
    const std::int32_t id = *accounts::AccountNumber(fields.id);
    if (!AccountsDB.AddNewAccount(fields.name, fields.password, fields.email, Sex(), id)) {
        TellFailure("Kerno Tools failed to add the account");
        return;
    }
    cboAccountName.AddItem(fields.name);
    // What an account that is gone has left under this number is not for the new one.
    RemovePrivileges(id);
    const bool withPrivileges = !chkIsGM.Value() || AccountsDB.ModifyGMData(id, Boxes()) == 1;
    // The new account is the one that the fields show from now on.
    const auto reason = AccountsDB.LastError();
    ShowAccount(cboAccountName.Names().Count() - 1);
    if (withPrivileges)
        Tell("Account Added");
    else
        Tell(WithReason("Account Added, but Kerno Tools failed to keep its privileges", reason));
}

void frmAccountEditor::cmdDeleteAccount_Click() {
    const std::string name = cboAccountName.Text();
    const int index = cboAccountName.Names().IndexOf(name);
    if (index < 0) {
        Tell("There is no account '" + name + "' to delete. Please choose one from the list");
        return;
    }
    if (MsgBoxNow("Are you sure you want to delete account '" + name + "' ?", MB_YESNO, kTitle) != IDYES ||
        !Loaded())
        return;
    const bool ofSelected = name == selected_.stored.name;
    if (!AccountsDB.DeleteRecord(name)) {
        TellFailure("Kerno Tools failed to delete the account");
        return;
    }
    cboAccountName.RemoveItem(index);
    // What is in the fields must belong to the store's current account, or the next choice or Save would
    // write it into some other one. The search box can choose while the message is open.
    const int next = ofSelected ? 0 : cboAccountName.Shown();
    if (next >= cboAccountName.Names().Count() || !ShowAccount(next))
        ShowNone();
    Tell("Account deleted.");
}

void frmAccountEditor::cmdReload_Click() {
    ShowNone();
    const bool done = [this] {
        const gui::WaitCursor wait;
        const bool refreshed = AccountsDB.RefreshAccountSQL() == 1;
        Caption(kTitle);
        return refreshed;
    }() || (!AccountsDB.Connected() && Connect());
    const auto reason = AccountsDB.LastError();
    FillList();
    TellSelected();
    if (!done &&
        !Tell(WithReason("Kerno Tools failed to reload the accounts. Please make sure MySQL server is "
                         "running and reload again",
                         reason)))
        return;
    // Privileges that were loaded wait for Save; without them Save would refuse for ever.
    if (AccountsDB.GMDataMissing() && !AccountsDB.LoadGMData())
        TellFailure(kNoGMData);
}
