#include "accounts/frmAccountEditor.h"

#include "accounts/WaitingChanges.h"
#include "common/Text.h"
#include "gui/WaitCursor.h"

// ---- Opening and closing

void frmAccountEditor::Form_Load() {
    cboSex.AddItem("Female - 0");
    cboSex.AddItem("Male - 1");
    cboSex.ListIndex(0);
    chkIsGM_Click();
    ShowNone();
    // In sight while the accounts are read, which takes its time on a large server. It is drawn with the
    // first account, or when the reading takes so long that the loop runs: drawing it twice holds both up.
    Visible(true);

    AccountsDB.Reading = [this](std::size_t count) { TellProgress(count); };
    AccountsDB.AccountSQLAccountName = [this](const std::string& name) { cboAccountName.AddItem(name); };
    Start(LoadAccounts());
}

void frmAccountEditor::Form_Unload() {
    if (frmFindAccount* find = find_.Peek())
        find->Unload();
    if (frmAccountList* list = list_.Peek())
        list->Unload();
    AccountsDB.DisconnectSQL();
}

void frmAccountEditor::FillList() {
    const gui::WaitCursor wait;
    rows_ = AccountsDB.Rows();
    cboAccountName.Fill(AccountsDB.NumOfAccounts(), [this] { AccountsDB.GetAccountList(); });
    RefreshList();
}

void frmAccountEditor::RefreshList() {
    if (frmAccountList* list = list_.Peek())
        list->Refresh();
}

/// Shows a message of the editor, whose caption may be about something else at the moment.
void frmAccountEditor::TellOperator(const std::string& text) {
    Tell(text, MB_OK, kTitle);
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
    const auto found = std::ranges::lower_bound(rows_, row);
    return found == rows_.end() || *found != row ? -1 : static_cast<int>(found - rows_.begin());
}

bool frmAccountEditor::ShowRow(std::size_t row) {
    const int index = IndexOfRow(row);
    if (index < 0 || !keeper_.Select(row))
        return false;
    const accounts::AccountEdit& stored = keeper_.Current()->stored;
    {
        const Flag showing(showing_);
        cboAccountName.Rename(index, stored.fields.name);
        cboAccountName.Shown(index);
        ShowEdit(stored);
    }
    TellWaiting();
    return true;
}

/// Much is the same for the next account, and changing a control costs more than asking it.
void frmAccountEditor::ShowEdit(const accounts::AccountEdit& edit) {
    const Flag showing(showing_);
    const auto show = [](gui::TextBox& box, const std::string& text) {
        if (box.Text() != text)
            box.Text(text);
    };
    show(txtAccountID, edit.fields.id);
    show(txtAccountPassword, edit.fields.password);
    show(txtEmail, edit.fields.email);
    if (cboSex.ListIndex() != edit.sex.value_or(-1))
        cboSex.ListIndex(edit.sex.value_or(-1));
    ShowPrivileges(edit);
    TellSelected();
}

void frmAccountEditor::ShowPrivileges(const accounts::AccountEdit& edit) {
    AccountsDB.IsAGM(edit.isGameMaster);
    if (chkIsGM.Value() != int{edit.isGameMaster})
        chkIsGM.Value(edit.isGameMaster);
    for (std::size_t i = 0; i < PrivilegeBoxes.size(); ++i) {
        const int granted = edit.isGameMaster && edit.privileges[i] != 0;
        if (PrivilegeBoxes[i]->Value() != granted)
            PrivilegeBoxes[i]->Value(granted);
    }
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

void frmAccountEditor::ShowNone() {
    keeper_.SelectNone();
    const Flag showing(showing_);
    cboAccountName.Shown(-1);
    cmdClearAll_Click();
    ShowPrivileges({});
}

void frmAccountEditor::chkIsGM_Click() {
    const bool isGameMaster = chkIsGM.Value() != 0;
    for (gui::CheckBox* box : PrivilegeBoxes)
        box->Enabled(isGameMaster);
    cmdGiveAllPrivileges.Enabled(isGameMaster);
    cmdRemoveAllPrivileges.Enabled(isGameMaster);
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
    if (busy_)
        return Refuse();
    if (const int index = IndexOfRow(row); index >= 0)
        cboAccountName.ListIndex(index);
}

void frmAccountEditor::Form_MouseDown(gui::MouseButton button, int /*x*/, int /*y*/) {
    if (button == gui::MouseButton::Right)
        mnuPopup3.Show();
}
