#pragma once

#include "app/FolderPicker.h"
#include "app/frmSQLPath.ids.h"
#include "gui/Control.h"
#include "gui/Lists.h"

/// Asks for the MySQL folder: the one whose bin folder holds the server program.
class frmSQLPath final : public gui::Form {
public:
    frmSQLPath() : Form(IDD_frmSQLPath) {}

    gui::ComboBox drvCharacter{*this, IDC_frmSQLPath_drvCharacter, &frmSQLPath::drvCharacter_Change};
    DirTree dirCharacter{*this, IDC_frmSQLPath_dirCharacter, &frmSQLPath::dirCharacter_Change};
    gui::Label lblHolds{*this, IDC_frmSQLPath_lblHolds};
    gui::CommandButton cmdOK{*this, IDC_frmSQLPath_cmdOK, &frmSQLPath::cmdOK_Click};
    gui::CommandButton cmdCancel{*this, IDC_frmSQLPath_cmdCancel, &frmSQLPath::cmdCancel_Click};

private:
    void Form_Load() override { picker_.Load(); }
    gui::CommandButton* CancelButton() override { return &cmdCancel; }

    void drvCharacter_Change() { picker_.DriveChanged(); }
    void dirCharacter_Change() { picker_.FolderChanged(); }
    void cmdOK_Click() { picker_.Accept(); }
    void cmdCancel_Click() { Unload(); }

    FolderPicker picker_{*this, drvCharacter, dirCharacter, lblHolds, kMySQLFolder};
};
