#include "accounts/frmFindAccount.h"

#include "common/Text.h"
#include "gui/modGUI.h"

namespace {

// It has no caption of its own, and speaks for the editor.
constexpr const char* kTitle = "Kerno Tools :: Accounts Editor";

} // namespace

void frmFindAccount::Form_Load() {
    // The search text comes to lie where the account's name stands.
    RECT anchor{};
    GetWindowRect(names_.Window(), &anchor);
    RECT own{};
    GetWindowRect(Window(), &own);
    const RECT text = txtAccountName.Bounds();
    POINT client{text.left, text.top};
    ClientToScreen(Window(), &client);
    SetWindowPos(Window(), nullptr, anchor.left - (client.x - own.left), anchor.top - (client.y - own.top), 0,
                 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void frmFindAccount::Form_MouseDown(gui::MouseButton button, int /*x*/, int /*y*/) {
    if (button == gui::MouseButton::Left)
        modGUI::DragForm(*this);
}

bool frmFindAccount::ChooseFrom(int index) {
    const int match = names_.Names().FindPrefix(txtAccountName.Text(), index);
    if (match < 0)
        return false;
    names_.ListIndex(match);
    return true;
}

void frmFindAccount::txtAccountName_Change() {
    if (!common::Trim(txtAccountName.Text()).empty())
        ChooseFrom(0);
}

void frmFindAccount::cmdNext_Click() {
    if (common::Trim(txtAccountName.Text()).empty())
        return;
    if (!ChooseFrom(names_.Shown() + 1))
        Tell("There is no more accounts that match", MB_OK, kTitle);
}
