#pragma once

#include "accounts/frmAccountChanges.ids.h"
#include "accounts/WaitingChanges.h"
#include "gui/Control.h"
#include "gui/ListView.h"

/// Lists the changes that wait for Save, with old and new value, and takes the selected one back.
class frmAccountChanges final : public gui::Form {
public:
    explicit frmAccountChanges(clsAccountSQL& store) : Form(IDD_frmAccountChanges), store_(store) {}

    gui::ListView lstChanges{*this, IDC_frmAccountChanges_lstChanges, &frmAccountChanges::lstChanges_Click,
                             &frmAccountChanges::cmdTakeBack_Click};
    gui::Label lblHint{*this, IDC_frmAccountChanges_lblHint};
    gui::CommandButton cmdTakeBack{*this, IDC_frmAccountChanges_cmdTakeBack,
                                   &frmAccountChanges::cmdTakeBack_Click};
    gui::CommandButton cmdClose{*this, IDC_frmAccountChanges_cmdClose, &frmAccountChanges::cmdClose_Click};

private:
    void Form_Load() override;
    gui::CommandButton* CancelButton() override { return &cmdClose; }

    void lstChanges_Click() { cmdTakeBack.Enabled(lstChanges.ListIndex() >= 0); }
    void cmdTakeBack_Click();
    void cmdClose_Click() { Unload(); }

    void List(int select);

    clsAccountSQL& store_;
    std::vector<accounts::WaitingChange> changes_;
};
