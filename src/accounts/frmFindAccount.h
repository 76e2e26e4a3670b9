#pragma once

#include "accounts/AccountNameBox.h"
#include "accounts/frmFindAccount.ids.h"
#include "gui/Control.h"
#include "gui/Text.h"

/// A small box over the account editor that finds an account by the start of its name, letter case aside, and
/// chooses it in the editor's list, which shows it there. Dragged by its surface.
class frmFindAccount final : public gui::Form {
public:
    explicit frmFindAccount(AccountNameBox& names) : Form(IDD_frmFindAccount), names_(names) {}

    gui::TextBox txtAccountName{*this, IDC_frmFindAccount_txtAccountName,
                                &frmFindAccount::txtAccountName_Change};
    gui::CommandButton cmdNext{*this, IDC_frmFindAccount_cmdNext, &frmFindAccount::cmdNext_Click};
    gui::CommandButton cmdClose{*this, IDC_frmFindAccount_cmdClose, &frmFindAccount::cmdClose_Click};

private:
    void Form_Load() override;
    void Form_MouseDown(gui::MouseButton button, int x, int y) override;
    gui::CommandButton* CancelButton() override { return &cmdClose; }

    void txtAccountName_Change();
    void cmdNext_Click();
    void cmdClose_Click() { Unload(); }

    bool ChooseFrom(int index);

    AccountNameBox& names_;
};
