#pragma once

#include "config/frmFindMessage.ids.h"
#include "gui/Control.h"
#include "gui/Text.h"

/// Finds text in one of the message boxes of the status window, over which it stays open.
class frmFindMessage final : public gui::Form {
public:
    frmFindMessage() : Form(IDD_frmFindMessage) {}

    gui::TextBox txtSought{*this, IDC_frmFindMessage_txtSought};
    gui::CommandButton cmdNext{*this, IDC_frmFindMessage_cmdNext, &frmFindMessage::cmdNext_Click};
    gui::CommandButton cmdClose{*this, IDC_frmFindMessage_cmdClose, &frmFindMessage::cmdClose_Click};
    gui::Label lblResult{*this, IDC_frmFindMessage_lblResult};

    /// Shows the window over `owner`, for the messages of the box; `name` is the server's.
    void OpenFor(gui::Form& owner, gui::RichTextBox& box, const std::string& name);

private:
    gui::CommandButton* CancelButton() override { return &cmdClose; }
    void cmdNext_Click();
    void cmdClose_Click() { Unload(); }

    gui::RichTextBox* box_ = nullptr;
};
