#pragma once

#include "app/frmAbout.ids.h"
#include "gui/Control.h"

/// The About box.
class frmAbout final : public gui::Form {
public:
    frmAbout() : Form(IDD_frmAbout) {}

    gui::Label lblAbout{*this, IDC_frmAbout_lblAbout};
    gui::CommandButton cmdOK{*this, IDC_frmAbout_cmdOK, &frmAbout::cmdOK_Click};

private:
    void Form_Load() override;
    gui::CommandButton* CancelButton() override { return &cmdOK; }

    void cmdOK_Click() { Unload(); }
};
