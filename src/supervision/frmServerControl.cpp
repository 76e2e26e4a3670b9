#include "supervision/frmServerControl.h"

#include "gui/modSystemTray.h"
#include "servers/Servers.h"
#include "settings/kToolsSettings.h"

namespace {

constexpr const char* kTip = "Kerno Tools :: Server Control";

std::string ErrorMessage(const RuntimeError& error) {
    return "Kerno Tools Error :: [" + std::to_string(error.Number()) + "] " + error.Description();
}

} // namespace

void frmServerControl::Form_Load() {
    state.kTools.INIPath(settings::kToolsIniPath());
    state.kerno.INIPath(settings::KernoIniPath(modServerControl::KernoPath()));
    connections.ShowAddresses();
    settings_.Load();
}

void frmServerControl::Form_Unload() {
    while (!SaveSettings()) {
    }
}

void frmServerControl::Form_Going() {
    modSystemTray::TrayDeleteIcon(*this);
    inTray_ = false;
}

/// False when it failed and is to be tried again.
bool frmServerControl::SaveSettings() {
    try {
        settings_.Save();
        return true;
    } catch (const RuntimeError& error) {
        // The file may be open elsewhere; what was typed is lost only when the operator says so.
        return MsgBoxNow(ErrorMessage(error) + "\n\nThe settings could not be written to " +
                             state.kTools.INIPath() + ". Cancel closes the window without them.",
                         MB_RETRYCANCEL | MB_ICONEXCLAMATION) != IDRETRY;
    }
}

void frmServerControl::Form_Resize() {
    if (State() != gui::WindowState::Minimized)
        return;
    Visible(false);
    modSystemTray::TrayAddIcon(*this, kTip);
    inTray_ = true;
}

void frmServerControl::Form_MouseDown(gui::MouseButton /*button*/, int x, int /*y*/) {
    if (x == modSystemTray::kTrayDoubleClick) {
        State(gui::WindowState::Normal);
        Visible(true);
        BringToFront();
    } else if (x == modSystemTray::kTrayRightDown) {
        modSystemTray::TrayShowMenu(*this, mnuPopup);
    }
}

void frmServerControl::Form_TaskbarCreated() {
    if (inTray_)
        modSystemTray::TrayAddIcon(*this, kTip);
}

void frmServerControl::Form_Error(const RuntimeError& error) {
    if (gui::Uninterrupted::Any())
        backup.ShowLater(error);
    else
        MsgBoxNow(ErrorMessage(error));
}
