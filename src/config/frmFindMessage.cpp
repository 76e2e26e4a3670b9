#include "config/frmFindMessage.h"

void frmFindMessage::OpenFor(gui::Form& owner, gui::RichTextBox& box, const std::string& name) {
    box_ = &box;
    Load(&owner, true);
    Caption("Find in " + name + " Server Messages");
    lblResult.Caption("");
    Show(&owner);
    txtSought.SetFocus();
}

void frmFindMessage::cmdNext_Click() {
    const std::string sought = txtSought.Text();
    if (sought.empty() || !box_)
        return;
    switch (box_->FindNext(sought)) {
    case gui::RichTextBox::Found::Nowhere:
        lblResult.Caption("Not found.");
        break;
    case gui::RichTextBox::Found::FromTheStart:
        lblResult.Caption("From the top");
        break;
    case gui::RichTextBox::Found::Further:
        lblResult.Caption("");
        break;
    }
}
