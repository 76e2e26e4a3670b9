#include "supervision/frmServerControl.h"

#include "gui/FormSlot.h"
#include "gui/modSystemTray.h"
#include "servers/KernoKeys.h"
#include "servers/Servers.h"
#include "settings/kToolsSettings.h"
#include "supervision/frmJournal.h"
#include "supervision/NextBackup.h"

#include <algorithm>

namespace {

constexpr const char* kTip = "Kerno Tools :: Server Control";

std::string ErrorMessage(const RuntimeError& error) {
    return "Kerno Tools Error :: [" + std::to_string(error.Number()) + "] " + error.Description();
}

} // namespace

void frmServerControl::Form_Load() {
    state.kTools.INIPath(settings::kToolsIniPath());
    UseServerFolder();
    // A damaged file keeps the panel from opening; the detection of the address may take longer.
    connections.txtCurrentIPAddress.Text(state.kerno.INIProperty(suite::key::kServerAddress));
    connections.Start(connections.ShowFirst());
    settings_.Load();
    ShowTonight();
}

void frmServerControl::ShowTonight() {
    supervision::Night night;
    night.watched = errorDetector.chkErrorDetector.Value() != 0;
    const auto servers = {&errorDetector.chkLoginServer, &errorDetector.chkCharacterServer,
                          &errorDetector.chkZoneServer};
    night.restarts = errorDetector.chkCheckServerProcesses.Value() &&
                     std::ranges::any_of(servers, [](const auto* box) { return box->Value() != 0; });
    night.closes = errorDetector.chkHandlePopups.Value() != 0;
    SYSTEMTIME now{};
    GetLocalTime(&now);
    night.next = supervision::NextBackupText(state.kerno, backup.tmrBackup.Enabled(),
                                             backup.clock.BackupSeconds(), backup.Settings(), now);
    night.last = backup.LastProven();
    lblTonight.Caption(supervision::NightText(night));
}

void frmServerControl::UseServerFolder() {
    state.kerno.INIPath(settings::KernoIniPath(modServerControl::KernoPath()));
}

/// The settings are saved when nothing more is asked.
gui::Task<bool> frmServerControl::Form_QueryUnload() {
    const bool ends = co_await MayEnd(backup.ClosingQuestion());
    if (!ends)
        co_return false;
    co_await backup.OfferStart(true);
    for (;;) {
        const auto error = SaveSettings();
        if (!error)
            co_return true;
        // The file may be open elsewhere; what was typed is lost only when the operator says so.
        const std::string text = ErrorMessage(*error) + "\n\nThe settings could not be written to " +
                                 state.kTools.INIPath() + ". Cancel closes the window without them.";
        const int answer = co_await MsgBox(text, MB_RETRYCANCEL | MB_ICONEXCLAMATION);
        if (answer != IDRETRY)
            co_return true;
    }
}

void frmServerControl::Form_EndSession() {
    SaveSettings();
    backup.NoteClosing();
}

void frmServerControl::Form_Going() {
    backup.NoteClosing();
    modSystemTray::TrayDeleteIcon(*this);
    inTray_ = false;
}

/// What they could not be saved for; nothing when they were.
std::optional<RuntimeError> frmServerControl::SaveSettings() {
    try {
        settings_.Save();
        return {};
    } catch (const RuntimeError& error) {
        return error;
    }
}

gui::Task<> frmServerControl::cmdJournal_Click() {
    gui::Local<frmJournal> form;
    co_await form->ShowModal(*this);
}

void frmServerControl::Form_Resize() {
    if (State() != gui::WindowState::Minimized)
        return;
    // Without an icon the window stays in the task bar, or there would be no way back to it.
    inTray_ = modSystemTray::TrayAddIcon(*this, kTip);
    if (inTray_)
        Visible(false);
}

void frmServerControl::Form_MouseDown(gui::MouseButton /*button*/, int x, int y) {
    const int event = modSystemTray::EventOf(*this, x, y);
    if (event == modSystemTray::kTrayDoubleClick) {
        State(gui::WindowState::Normal);
        Visible(true);
        BringToFront();
    } else if (event == modSystemTray::kTrayRightDown) {
        modSystemTray::TrayShowMenu(*this, mnuPopup);
    }
}

void frmServerControl::Form_TaskbarCreated() {
    if (inTray_)
        modSystemTray::TrayAddIcon(*this, kTip);
}

void frmServerControl::Form_Error(const RuntimeError& error) {
    Tell(ErrorMessage(error));
}
