#pragma once

#include "gui/Control.h"
#include "gui/Text.h"
#include "supervision/frmJournal.ids.h"

/// The last lines of the journal.
class frmJournal final : public gui::Form {
public:
    frmJournal() : Form(IDD_frmJournal) {}

    gui::TextBox txtLines{*this, IDC_frmJournal_txtLines};
    gui::CommandButton cmdOpen{*this, IDC_frmJournal_cmdOpen, &frmJournal::cmdOpen_Click};
    gui::CommandButton cmdClose{*this, IDC_frmJournal_cmdClose, &frmJournal::cmdClose_Click};

private:
    void Form_Load() override;
    gui::CommandButton* CancelButton() override { return &cmdClose; }
    void cmdOpen_Click();
    void cmdClose_Click() { Unload(); }
};
