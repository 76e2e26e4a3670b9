#pragma once

#include "accounts/frmPrivilegeFile.ids.h"
#include "accounts/PrivilegeAudit.h"
#include "gui/Control.h"
#include "gui/Lists.h"
#include "gui/ListView.h"

/// Shows the rows of the privilege file beside the accounts they belong to, clears those that belong to none,
/// and brings privileges back from the file's earlier generations. All of it waits for Save.
class frmPrivilegeFile final : public gui::Form {
public:
    explicit frmPrivilegeFile(clsAccountSQL& store) : Form(IDD_frmPrivilegeFile), store_(store) {}

    gui::ListView lstRows{*this, IDC_frmPrivilegeFile_lstRows};
    gui::Label lblFindings{*this, IDC_frmPrivilegeFile_lblFindings};
    gui::CommandButton cmdClear{*this, IDC_frmPrivilegeFile_cmdClear, &frmPrivilegeFile::cmdClear_Click};
    gui::ComboBox cboGenerations{*this, IDC_frmPrivilegeFile_cboGenerations};
    gui::CommandButton cmdBringBack{*this, IDC_frmPrivilegeFile_cmdBringBack,
                                    &frmPrivilegeFile::cmdBringBack_Click};
    gui::CommandButton cmdClose{*this, IDC_frmPrivilegeFile_cmdClose, &frmPrivilegeFile::cmdClose_Click};

private:
    void Form_Load() override;
    gui::CommandButton* CancelButton() override { return &cmdClose; }

    gui::Task<> cmdClear_Click();
    gui::Task<> cmdBringBack_Click();
    void cmdClose_Click() { Unload(); }

    void List();

    clsAccountSQL& store_;
    std::vector<accounts::AuditRow> rows_;
    std::size_t findings_ = 0;
    /// Paths, in the order of the list.
    std::vector<std::string> generations_;
};
