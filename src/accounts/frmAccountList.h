#pragma once

#include "accounts/clsAccountSQL.h"
#include "accounts/frmAccountList.ids.h"
#include "gui/Control.h"
#include "gui/ListView.h"
#include "gui/Text.h"

/// A list of all accounts beside the editor, to be narrowed down by a part of name, ID or e-mail address,
/// letter case aside, and to game masters. An account that is chosen here is shown in the editor.
class frmAccountList final : public gui::Form {
public:
    frmAccountList(clsAccountSQL& store, std::function<void(std::size_t row)> choose)
        : Form(IDD_frmAccountList), store_(store), choose_(std::move(choose)) {}

    gui::TextBox txtSearch{*this, IDC_frmAccountList_txtSearch, &frmAccountList::Filter};
    gui::CheckBox chkGameMasters{*this, IDC_frmAccountList_chkGameMasters, &frmAccountList::Filter};
    gui::ListView lstAccounts{*this, IDC_frmAccountList_lstAccounts, &frmAccountList::lstAccounts_Click,
                              &frmAccountList::cmdShow_Click};
    gui::Label lblCount{*this, IDC_frmAccountList_lblCount};
    gui::CommandButton cmdShow{*this, IDC_frmAccountList_cmdShow, &frmAccountList::cmdShow_Click};
    gui::CommandButton cmdClose{*this, IDC_frmAccountList_cmdClose, &frmAccountList::cmdClose_Click};

    /// Takes the accounts over as the store has them now.
    void Refresh();

private:
    /// What an account is searched by, in capitals.
    struct Entry {
        std::size_t row;
        std::string text;
    };

    void Form_Load() override;
    gui::CommandButton* CancelButton() override { return &cmdClose; }

    void Filter();
    void lstAccounts_Click() { cmdShow.Enabled(lstAccounts.ListIndex() >= 0); }
    void cmdShow_Click();
    void cmdClose_Click() { Unload(); }

    bool IsGameMaster(std::size_t row) const;

    clsAccountSQL& store_;
    std::function<void(std::size_t)> choose_;
    std::vector<Entry> entries_;
    std::vector<std::size_t> found_;
};
