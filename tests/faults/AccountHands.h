#pragma once

#include "accounts/AccountKeeper.h"
#include "accounts/frmAccountChanges.h"
#include "accounts/frmAccountConflict.h"
#include "accounts/frmAccountEditor.h"
#include "accounts/Sending.h"
#include "accounts/WaitingChanges.h"
#include "common/Text.h"
#include "support/MessageBoxes.h"
#include "support/Network.h"
#include "support/Wait.h"

#include <commctrl.h>

#include <map>
#include <set>

/// What an operator was told of a Save.
struct Told {
    bool saved = false;
    bool stopped = false;
    /// Something beside that.
    bool noted = false;
    /// Rows of which somebody else had changed the same fields.
    std::set<std::size_t> decided;
};

/// An operator who works on the accounts.
class Hand {
public:
    /// By accounts::Field: true for the operator's own value.
    using Decision = std::function<bool(accounts::Field)>;

    virtual ~Hand() = default;
    virtual clsAccountSQL& Store() = 0;
    /// What the fields show of the account of a row; none when it cannot be shown.
    virtual std::optional<accounts::AccountEdit> Show(std::size_t row) = 0;
    /// Fills the fields of the account that is shown.
    virtual void Type(const accounts::AccountEdit& edit) = 0;
    virtual void Add(const accounts::AccountEdit& edit) = 0;
    virtual void Delete(std::size_t row) = 0;
    virtual void TakeBack(std::size_t change) = 0;
    virtual void Reload() = 0;
    /// Has what was typed among the changes that wait.
    virtual void Keep() {}
    virtual Told Save(const Decision& decide) = 0;

    using Identity = std::pair<std::int32_t, std::string>;
    /// By row: number and name that its account may have on the server since a Save was not answered.
    std::map<std::size_t, std::set<Identity>> inDoubt;
};

/// One who has no window, over a connection that may be cut.
class HandWithoutWindow final : public Hand {
public:
    static constexpr const char* kAddress = "127.0.0.7";

    explicit HandWithoutWindow(const std::string& folder) {
        store_.SQLHostname(kAddress);
        store_.SQLUsername("root");
        store_.KernoPath(folder);
        EXPECT_EQ(support::Run(store_.ConnectSQL()), 1);
        EXPECT_EQ(store_.LoadGMData(), 1);
    }

    clsAccountSQL& Store() override { return store_; }
    std::optional<accounts::AccountEdit> Show(std::size_t row) override {
        if (!keeper_.Select(row))
            return std::nullopt;
        return keeper_.Current()->stored;
    }
    void Type(const accounts::AccountEdit& edit) override {
        EXPECT_EQ(keeper_.RefusalToKeep(edit) + keeper_.Keep(edit).message, "");
    }
    void Add(const accounts::AccountEdit& edit) override { keeper_.Add(edit); }
    void Delete(std::size_t row) override { keeper_.Delete(row); }
    void TakeBack(std::size_t change) override {
        accounts::TakeBack(store_, accounts::WaitingChanges(store_)[change]);
    }
    void Reload() override {
        // A cut connection is found out here, and again on the way.
        for (int i = 0; support::Run(store_.RefreshAccountSQL()) != 1; ++i)
            ASSERT_LT(i, 3) << store_.LastError()->Description();
        ASSERT_EQ(store_.LoadGMData(), 1);
        keeper_.SelectNone();
    }
    Told Save(const Decision& decide) override {
        Told told;
        accounts::SendResult result = support::Run(accounts::Send(store_));
        for (int round = 0; !result.conflicts.empty() && round < 3; ++round) {
            for (const accounts::Conflict& conflict : result.conflicts) {
                told.decided.insert(conflict.row);
                std::array<bool, accounts::kFields.size()> mine{true, true};
                for (std::size_t i = 2; i < mine.size(); ++i)
                    mine[i] = decide(accounts::kFields[i]);
                accounts::Decide(store_, conflict, mine);
            }
            told.noted = told.noted || !result.notes.empty();
            result = support::Run(accounts::Send(store_));
        }
        told.noted = told.noted || !result.notes.empty();
        told.saved = result.Saved();
        told.stopped = result.stopped;
        keeper_.SelectNone();
        return told;
    }

    /// The connection breaks at some moment of what comes next.
    void Cut() { proxy_.Cut(); }

private:
    support::Proxy proxy_{kAddress};
    clsAccountSQL store_;
    accounts::AccountKeeper keeper_{store_};
};

/// One at the editor.
class HandAtEditor final : public Hand {
public:
    HandAtEditor() {
        editor_.Load();
        EXPECT_TRUE(support::Settle());
    }
    ~HandAtEditor() override { editor_.Unload(); }

    clsAccountSQL& Store() override { return editor_.AccountsDB; }
    std::optional<accounts::AccountEdit> Show(std::size_t row) override {
        editor_.ChooseRow(row);
        accounts::AccountEdit edit;
        edit.fields = {editor_.cboAccountName.Text(), editor_.txtAccountID.Text(),
                       editor_.txtAccountPassword.Text(), editor_.txtEmail.Text()};
        edit.sex = static_cast<std::int16_t>(editor_.cboSex.ListIndex());
        edit.isGameMaster = editor_.chkIsGM.Value() != 0;
        for (std::size_t i = 0; i < edit.privileges.size(); ++i)
            edit.privileges[i] = static_cast<std::int16_t>(editor_.PrivilegeBoxes[i]->Value());
        EXPECT_EQ(edit.fields.name, Store().Text(row, accounts::Field::Name)) << Said();
        return edit;
    }
    void Type(const accounts::AccountEdit& edit) override {
        editor_.cboAccountName.Text(edit.fields.name);
        editor_.txtAccountID.Text(edit.fields.id);
        editor_.txtAccountPassword.Text(edit.fields.password);
        editor_.txtEmail.Text(edit.fields.email);
        editor_.cboSex.ListIndex(edit.sex.value_or(0));
        editor_.chkIsGM.Value(edit.isGameMaster);
        for (std::size_t i = 0; i < edit.privileges.size(); ++i)
            editor_.PrivilegeBoxes[i]->Value(edit.isGameMaster ? edit.privileges[i] : 0);
    }
    void Add(const accounts::AccountEdit& edit) override {
        Type(edit);
        Press(editor_.cmdAddAccount);
        EXPECT_EQ(Said(), "Account Added\n");
    }
    void Delete(std::size_t row) override {
        Show(row);
        boxes_.Answer(IDYES);
        Press(editor_.cmdDeleteAccount);
        EXPECT_TRUE(Said().ends_with("Account deleted.\n"));
    }
    void TakeBack(std::size_t change) override {
        const support::Meanwhile takeBack([change] {
            const HWND window = FindWindowA(nullptr, "Kerno Tools :: Changes That Wait For Save");
            if (!IsWindowVisible(window) || !IsWindowEnabled(window))
                return;
            LVITEMA selected{};
            selected.state = selected.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
            SendMessageA(GetDlgItem(window, IDC_frmAccountChanges_lstChanges), LVM_SETITEMSTATE, change,
                         reinterpret_cast<LPARAM>(&selected));
            SendMessageA(GetDlgItem(window, IDC_frmAccountChanges_cmdTakeBack), BM_CLICK, 0, 0);
            SendMessageA(window, WM_CLOSE, 0, 0);
        });
        Press(editor_.cmdChanges);
        Said();
    }
    void Reload() override {
        Press(editor_.cmdReload);
        EXPECT_EQ(Said(), "");
    }
    void Keep() override {
        if (editor_.cboAccountName.Shown() < 0 && editor_.cboAccountName.ListCount() > 0)
            editor_.cboAccountName.ListIndex(0);
        const support::Meanwhile close([] {
            const HWND window = FindWindowA(nullptr, "Kerno Tools :: Changes That Wait For Save");
            if (IsWindowVisible(window))
                SendMessageA(window, WM_CLOSE, 0, 0);
        });
        // Without a change there is no list of them.
        Press(editor_.cmdChanges);
        EXPECT_EQ(Said(), "");
    }
    Told Save(const Decision& decide) override {
        Told told;
        const support::Meanwhile deciding([&] {
            const HWND window = FindWindowA(nullptr, "Kerno Tools :: Account Changed By Somebody Else");
            if (!IsWindowVisible(window) || !IsWindowEnabled(window))
                return;
            char text[300] = "";
            GetDlgItemTextA(window, IDC_frmAccountConflict_lblAccount, text, sizeof text);
            const std::vector<std::string> quoted = common::Split(text, '\'');
            for (const std::size_t row : Store().WaitingRows()) {
                if (Store().ServerText(row, accounts::Field::Name) == quoted.at(1))
                    told.decided.insert(row);
            }
            constexpr int kOptions[][2] = {
                {IDC_frmAccountConflict_optTheirs3, IDC_frmAccountConflict_optMine3},
                {IDC_frmAccountConflict_optTheirs4, IDC_frmAccountConflict_optMine4},
                {IDC_frmAccountConflict_optTheirs5, IDC_frmAccountConflict_optMine5}};
            for (std::size_t i = 0; i < std::size(kOptions); ++i) {
                const HWND option = GetDlgItem(window, kOptions[i][decide(accounts::kFields[i + 2]) ? 1 : 0]);
                if (IsWindowEnabled(option))
                    SendMessageA(option, BM_CLICK, 0, 0);
            }
            SendMessageA(GetDlgItem(window, IDC_frmAccountConflict_cmdSave), BM_CLICK, 0, 0);
        });
        Press(editor_.cmdSave);
        const std::vector<std::string> texts = boxes_.Texts();
        boxes_.Clear();
        told.saved = !texts.empty() && texts.back() == "Account saved successfully";
        told.stopped = !texts.empty() && texts.back().starts_with("Kerno Tools failed to save to SQL");
        told.noted = texts.size() > 1;
        return told;
    }

private:
    void Press(gui::CommandButton& button) {
        if (button.Enabled())
            button.Press();
        EXPECT_TRUE(support::Settle());
    }
    std::string Said() {
        std::string said;
        for (const std::string& text : boxes_.Texts())
            said += text + "\n";
        boxes_.Clear();
        return said;
    }

    support::MessageBoxes boxes_;
    frmAccountEditor editor_;
};
