#pragma once

#include "accounts/AccountKeeper.h"
#include "accounts/AccountNameBox.h"
#include "accounts/clsAccountSQL.h"
#include "accounts/frmAccountEditor.ids.h"
#include "accounts/frmAccountList.h"
#include "accounts/frmFindAccount.h"
#include "accounts/Sending.h"
#include "gui/Control.h"
#include "gui/FormSlot.h"
#include "gui/Lists.h"
#include "gui/Menu.h"
#include "gui/Text.h"

#include <array>

/// Lists, shows, adds, changes and deletes game accounts and the privileges of game masters. Everything is
/// kept in AccountsDB until Save sends it; the window only shows and asks.
///
/// The account that was chosen last stays the selected one while its name is edited; Save writes to it.
class frmAccountEditor final : public gui::Form {
public:
    frmAccountEditor() : Form(IDD_frmAccountEditor) {}

    clsAccountSQL AccountsDB;

    AccountNameBox cboAccountName{*this, IDC_frmAccountEditor_cboAccountName,
                                  &frmAccountEditor::cboAccountName_Click,
                                  &frmAccountEditor::cboAccountName_Change};
    gui::CommandButton cmdFind{*this, IDC_frmAccountEditor_cmdFind, &frmAccountEditor::cmdFind_Click};
    gui::TextBox txtAccountID{*this, IDC_frmAccountEditor_txtAccountID, &frmAccountEditor::TellWaiting};
    gui::CommandButton cmdAutofillID{*this, IDC_frmAccountEditor_cmdAutofillID,
                                     &frmAccountEditor::cmdAutofillID_Click};
    gui::TextBox txtAccountPassword{*this, IDC_frmAccountEditor_txtAccountPassword,
                                    &frmAccountEditor::TellWaiting};
    gui::TextBox txtEmail{*this, IDC_frmAccountEditor_txtEmail, &frmAccountEditor::TellWaiting};
    gui::ComboBox cboSex{*this, IDC_frmAccountEditor_cboSex, &frmAccountEditor::TellWaiting};
    gui::Label lblSelected{*this, IDC_frmAccountEditor_lblSelected};
    gui::CommandButton cmdAddAccount{*this, IDC_frmAccountEditor_cmdAddAccount,
                                     &frmAccountEditor::cmdAddAccount_Click};
    gui::CommandButton cmdDeleteAccount{*this, IDC_frmAccountEditor_cmdDeleteAccount,
                                        &frmAccountEditor::cmdDeleteAccount_Click};
    gui::CommandButton cmdClearAll{*this, IDC_frmAccountEditor_cmdClearAll,
                                   &frmAccountEditor::cmdClearAll_Click};
    gui::Frame fraAccount{*this, IDC_frmAccountEditor_fraAccount, &frmAccountEditor::fraAccount_MouseDown};

    gui::Frame fraGM{*this, IDC_frmAccountEditor_fraGM};
    gui::CheckBox chkIsGM{*this, IDC_frmAccountEditor_chkIsGM, &frmAccountEditor::chkIsGM_Click};
    gui::CheckBox chkBroadcast{*this, IDC_frmAccountEditor_chkBroadcast, &frmAccountEditor::TellWaiting};
    gui::CheckBox chkItemSummon{*this, IDC_frmAccountEditor_chkItemSummon, &frmAccountEditor::TellWaiting};
    gui::CheckBox chkMonsterSummon{*this, IDC_frmAccountEditor_chkMonsterSummon,
                                   &frmAccountEditor::TellWaiting};
    gui::CheckBox chkChangeStatSkill{*this, IDC_frmAccountEditor_chkChangeStatSkill,
                                     &frmAccountEditor::TellWaiting};
    gui::CheckBox chkChangeOption{*this, IDC_frmAccountEditor_chkChangeOption,
                                  &frmAccountEditor::TellWaiting};
    gui::CheckBox chkSaveReturn{*this, IDC_frmAccountEditor_chkSaveReturn, &frmAccountEditor::TellWaiting};
    gui::CheckBox chkChangeLevel{*this, IDC_frmAccountEditor_chkChangeLevel, &frmAccountEditor::TellWaiting};
    gui::CheckBox chkWarp{*this, IDC_frmAccountEditor_chkWarp, &frmAccountEditor::TellWaiting};
    gui::CheckBox chkWhois{*this, IDC_frmAccountEditor_chkWhois, &frmAccountEditor::TellWaiting};
    gui::CheckBox chkGotoSummonBanish{*this, IDC_frmAccountEditor_chkGotoSummonBanish,
                                      &frmAccountEditor::TellWaiting};
    gui::CheckBox chkKillDieAlive{*this, IDC_frmAccountEditor_chkKillDieAlive,
                                  &frmAccountEditor::TellWaiting};
    gui::CheckBox chkChangeJob{*this, IDC_frmAccountEditor_chkChangeJob, &frmAccountEditor::TellWaiting};
    gui::CheckBox chkChangeColorStyle{*this, IDC_frmAccountEditor_chkChangeColorStyle,
                                      &frmAccountEditor::TellWaiting};
    gui::CheckBox chkAutoRawUnit{*this, IDC_frmAccountEditor_chkAutoRawUnit, &frmAccountEditor::TellWaiting};
    gui::CheckBox chkRefine{*this, IDC_frmAccountEditor_chkRefine, &frmAccountEditor::TellWaiting};
    gui::CommandButton cmdGiveAllPrivileges{*this, IDC_frmAccountEditor_cmdGiveAllPrivileges,
                                            &frmAccountEditor::cmdGiveAllPrivileges_Click};
    gui::CommandButton cmdRemoveAllPrivileges{*this, IDC_frmAccountEditor_cmdRemoveAllPrivileges,
                                              &frmAccountEditor::cmdRemoveAllPrivileges_Click};

    // Room for characters and storage, which the tool does not edit: nothing here reacts.
    gui::Frame fraCharacters{*this, IDC_frmAccountEditor_fraCharacters};
    gui::Label lblSlot1{*this, IDC_frmAccountEditor_lblSlot1};
    gui::Label lblSlot2{*this, IDC_frmAccountEditor_lblSlot2};
    gui::Label lblSlot3{*this, IDC_frmAccountEditor_lblSlot3};
    gui::Label lblSlot4{*this, IDC_frmAccountEditor_lblSlot4};
    gui::Label lblSlot6{*this, IDC_frmAccountEditor_lblSlot6};
    gui::Label lblSlot7{*this, IDC_frmAccountEditor_lblSlot7};
    gui::Label lblSlot8{*this, IDC_frmAccountEditor_lblSlot8};
    gui::Label lblSlot9{*this, IDC_frmAccountEditor_lblSlot9};
    gui::ListBox lstCurrentCharacters{*this, IDC_frmAccountEditor_lstCurrentCharacters};
    gui::ListBox lstOrphanCharacters{*this, IDC_frmAccountEditor_lstOrphanCharacters};
    gui::CommandButton cmdAdd{*this, IDC_frmAccountEditor_cmdAdd};
    gui::CommandButton cmdDelete{*this, IDC_frmAccountEditor_cmdDelete};
    gui::CommandButton cmdGoUp{*this, IDC_frmAccountEditor_cmdGoUp};
    gui::CommandButton cmdGoDown{*this, IDC_frmAccountEditor_cmdGoDown};
    gui::Frame fraKafra{*this, IDC_frmAccountEditor_fraKafra};
    gui::CommandButton cmdEditKafra{*this, IDC_frmAccountEditor_cmdEditKafra};
    gui::PopupMenu mnuPopup{*this, IDR_frmAccountEditor_mnuPopup};
    gui::PopupMenu mnuPopup2{*this, IDR_frmAccountEditor_mnuPopup2};
    gui::MenuItem mnuEditCharacter{*this, IDM_frmAccountEditor_mnuEditCharacter};
    gui::MenuItem mnuAddCharacter1{*this, IDM_frmAccountEditor_mnuAddCharacter1};
    gui::MenuItem mnuRemoveCharacter1{*this, IDM_frmAccountEditor_mnuRemoveCharacter1};
    gui::MenuItem mnuEditCharacter2{*this, IDM_frmAccountEditor_mnuEditCharacter2};
    gui::MenuItem mnuAddCharacter2{*this, IDM_frmAccountEditor_mnuAddCharacter2};
    gui::MenuItem mnuRemoveCharacter2{*this, IDM_frmAccountEditor_mnuRemoveCharacter2};

    gui::PopupMenu mnuPopup3{*this, IDR_frmAccountEditor_mnuPopup3};
    gui::MenuItem mnuFindAccount{*this, IDM_frmAccountEditor_mnuFindAccount,
                                 &frmAccountEditor::mnuFindAccount_Click};

    gui::CommandButton cmdList{*this, IDC_frmAccountEditor_cmdList, &frmAccountEditor::cmdList_Click};
    gui::CommandButton cmdPrivilegeFile{*this, IDC_frmAccountEditor_cmdPrivilegeFile,
                                        &frmAccountEditor::cmdPrivilegeFile_Click};
    gui::Label lblWaiting{*this, IDC_frmAccountEditor_lblWaiting};
    gui::CommandButton cmdChanges{*this, IDC_frmAccountEditor_cmdChanges,
                                  &frmAccountEditor::cmdChanges_Click};
    gui::CommandButton cmdSave{*this, IDC_frmAccountEditor_cmdSave, &frmAccountEditor::cmdSave_Click};
    gui::CommandButton cmdReload{*this, IDC_frmAccountEditor_cmdReload, &frmAccountEditor::cmdReload_Click};
    gui::CommandButton cmdCancel{*this, IDC_frmAccountEditor_cmdCancel, &frmAccountEditor::cmdCancel_Click};

    /// The fifteen boxes in the order of the privilege file.
    const std::array<gui::CheckBox*, accounts::kPrivilegeCount> PrivilegeBoxes{
        &chkBroadcast,        &chkItemSummon,   &chkMonsterSummon,
        &chkChangeStatSkill,  &chkChangeOption, &chkSaveReturn,
        &chkChangeLevel,      &chkWarp,         &chkWhois,
        &chkGotoSummonBanish, &chkKillDieAlive, &chkChangeJob,
        &chkChangeColorStyle, &chkAutoRawUnit,  &chkRefine};

    /// The search box, while it is open.
    frmFindAccount* FindBox() { return find_.Peek(); }
    /// The list of accounts, while it is open.
    frmAccountList* ListBox() { return list_.Peek(); }
    /// Chooses the account of a row of the store, as choosing its name does.
    void ChooseRow(std::size_t row);

private:
    static constexpr const char* kTitle = "Kerno Tools :: Accounts Editor";

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

    void Form_Load() override;
    void Form_Unload() override;
    void Form_MouseDown(gui::MouseButton button, int x, int y) override;
    gui::CommandButton* CancelButton() override { return &cmdCancel; }

    void cboAccountName_Click();
    void cboAccountName_Change() {
        TellSelected();
        TellWaiting();
    }
    void cmdFind_Click();
    void cmdAutofillID_Click();
    void cmdAddAccount_Click();
    gui::Task<> cmdDeleteAccount_Click();
    void cmdClearAll_Click();
    void fraAccount_MouseDown(gui::MouseButton button, int x, int y) { Form_MouseDown(button, x, y); }
    void chkIsGM_Click();
    void cmdGiveAllPrivileges_Click() { Tick(1); }
    void cmdRemoveAllPrivileges_Click() { Tick(0); }
    void mnuFindAccount_Click() { cmdFind_Click(); }
    void cmdList_Click();
    gui::Task<> cmdPrivilegeFile_Click();
    gui::Task<> cmdChanges_Click();
    template <class F> gui::Task<> ShowOverStore();
    gui::Task<> cmdSave_Click();
    gui::Task<> cmdReload_Click();
    void cmdCancel_Click() { Unload(); }

    gui::Task<> LoadAccounts();
    gui::Task<bool> Connect();
    gui::Task<bool> Refresh();
    void ReadLogin();
    void FillList();
    void RefreshList();
    void TellProgress(std::size_t accountsRead);
    void TellOperator(const std::string& text);
    void TellHeader();
    void TellSelected();
    void TellWaiting();

    void Choose(int index);
    int IndexOfRow(std::size_t row) const;
    bool ShowRow(std::size_t row);
    void ShowEdit(const accounts::AccountEdit& edit);
    void ShowPrivileges(const accounts::AccountEdit& edit);
    void ShowNone();
    void ShowChanged();
    void Tick(int value);
    accounts::AccountEdit Edit(const std::string& name) const;
    bool Keep(const std::string& name);
    gui::Task<accounts::SendResult> Send();
    gui::Task<std::size_t> DecideEach(std::vector<accounts::Conflict> conflicts);
    void TellSent(const accounts::SendResult& result);

    accounts::AccountKeeper keeper_{AccountsDB};
    /// The store's rows of the entries in the list of names, in the store's order.
    std::vector<std::size_t> rows_;
    /// The store is with the server, or shown and changed by another window. The search box and the list stay
    /// open meanwhile, and may not choose.
    bool busy_ = false;
    bool showing_ = false;
    std::chrono::steady_clock::time_point progressTold_;
    gui::FormSlot<frmFindAccount> find_{[this] { return std::make_unique<frmFindAccount>(cboAccountName); }};
    gui::FormSlot<frmAccountList> list_{[this] {
        return std::make_unique<frmAccountList>(AccountsDB, [this](std::size_t row) { ChooseRow(row); });
    }};
};
