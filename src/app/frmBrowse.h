#pragma once

#include "app/FolderPicker.h"
#include "app/frmBrowse.ids.h"
#include "gui/Control.h"
#include "gui/Lists.h"

/// Asks for the servers' folder: the one that holds Kerno.ini.
class frmBrowse final : public gui::Form {
public:
    frmBrowse() : Form(IDD_frmBrowse) {}

    gui::ComboBox drvCharacter{*this, IDC_frmBrowse_drvCharacter, &frmBrowse::drvCharacter_Change};
    DirTree dirCharacter{*this, IDC_frmBrowse_dirCharacter, &frmBrowse::dirCharacter_Change};
    gui::Label lblHolds{*this, IDC_frmBrowse_lblHolds};
    gui::CommandButton cmdOK{*this, IDC_frmBrowse_cmdOK, &frmBrowse::cmdOK_Click};
    gui::CommandButton cmdCancel{*this, IDC_frmBrowse_cmdCancel, &frmBrowse::cmdCancel_Click};

private:
    void Form_Load() override { picker_.Load(); }
    gui::CommandButton* CancelButton() override { return &cmdCancel; }

    void drvCharacter_Change() { picker_.DriveChanged(); }
    void dirCharacter_Change() { picker_.FolderChanged(); }
    void cmdOK_Click() { picker_.Accept(); }
    void cmdCancel_Click() { Unload(); }

    FolderPicker picker_{*this, drvCharacter, dirCharacter, lblHolds, kServerFolder};
};
