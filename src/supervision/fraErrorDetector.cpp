#include "supervision/fraErrorDetector.h"

#include "common/Numbers.h"
#include "servers/StubbornDialogs.h"

#include <algorithm>

std::chrono::milliseconds supervision::CheckInterval(const std::string& seconds) {
    const double longest = USER_TIMER_MAXIMUM;
    return std::chrono::milliseconds(
        static_cast<long long>(std::clamp(common::Val(seconds) * 1000, 0.0, longest)));
}

std::optional<supervision::ErrorDetectorSettings> fraErrorDetector::DetectorSettings() const {
    if (!chkErrorDetector.Value())
        return {};
    supervision::ErrorDetectorSettings settings{.handleDialogs = chkHandlePopups.Value() != 0,
                                                .logFilename = {},
                                                .restartAll = optRestartAllPopup.Value(),
                                                .message = {}};
    if (chkLogError.Value())
        settings.logFilename = txtLogFilename.Text();
    if (chkSendMessage.Value())
        settings.message = txtErrorMessage.Text();
    return settings;
}

supervision::MaintainerSettings fraErrorDetector::MaintainerSettings() const {
    return {.enabled = chkCheckServerProcesses.Value() != 0,
            .servers = {chkLoginServer.Value() != 0, chkCharacterServer.Value() != 0,
                        chkZoneServer.Value() != 0}};
}

void fraErrorDetector::tmrState_Timer() {
    gui::Label* lines[] = {&lblLoginState, &lblCharacterState, &lblZoneState};
    for (const modServerControl::Server server : modServerControl::kServers)
        lines[static_cast<int>(server)]->Caption(watch_.Line(server));
    const auto stubborn = modServerControl::Stubborn().Oldest(GetTickCount64());
    lblStubbornDialog.Caption(stubborn ? TextOf(*stubborn) : "");
    cmdBringDialogToFront.Enabled(stubborn.has_value());
}

void fraErrorDetector::cmdBringDialogToFront_Click() {
    if (const auto stubborn = modServerControl::Stubborn().Oldest(GetTickCount64())) {
        ShowWindowAsync(stubborn->window, SW_SHOWNORMAL);
        SetForegroundWindow(stubborn->window);
    }
}

void fraErrorDetector::tmrErrorDetector_Timer() {
    // Servers that are gone do not wait for a dialog that does not close.
    if (handling_)
        return maintainer_.Maintain(MaintainerSettings());
    handling_ = true;
    Start(HandleAndMaintain(), [this] { handling_ = false; });
}

gui::Task<> fraErrorDetector::HandleAndMaintain() {
    std::exception_ptr error;
    try {
        co_await detector_.Handle();
    } catch (const RuntimeError&) {
        error = std::current_exception();
    }
    maintainer_.Maintain(MaintainerSettings());
    if (error)
        std::rethrow_exception(error);
}

void fraErrorDetector::txtErrorCheckInterval_Change() {
    tmrErrorDetector.Interval(supervision::CheckInterval(txtErrorCheckInterval.Text()));
}

void fraErrorDetector::chkErrorDetector_Click() {
    const bool on = chkErrorDetector.Value() != 0;
    txtErrorCheckInterval.Enabled(on);
    tmrErrorDetector.Enabled(on);
    twins_.mnuEnableErrorDetector.Caption(on ? "Disable Error Detector" : "Enable Error Detector");
}

void fraErrorDetector::chkHandlePopups_Click() {
    const bool on = chkHandlePopups.Value() != 0;
    optIgnorePopup.Enabled(on);
    optRestartAllPopup.Enabled(on);
    twins_.mnuClosePopups.Caption(on ? "Disable Anti-Dialogs" : "Enable Anti-Dialogs");
}

void fraErrorDetector::chkCheckServerProcesses_Click() {
    const bool on = chkCheckServerProcesses.Value() != 0;
    chkLoginServer.Enabled(on);
    chkCharacterServer.Enabled(on);
    chkZoneServer.Enabled(on);
    twins_.mnuCheckProcesses.Caption(on ? "Disable Server Restarter" : "Enable Server Restarter");
}

void fraErrorDetector::chkLogError_Click() {
    const bool on = chkLogError.Value() != 0;
    txtLogFilename.Enabled(on);
    lblErrorLogsFilename.Enabled(on);
}

void fraErrorDetector::chkSendMessage_Click() {
    const bool on = chkSendMessage.Value() != 0;
    txtErrorMessage.Enabled(on);
    lblErrorMessage.Enabled(on);
}
