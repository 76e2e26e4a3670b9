#include "supervision/ErrorDetector.h"

#include "gui/Application.h"
#include "servers/modServerControl.h"
#include "supervision/RestartAll.h"

namespace supervision {

using namespace modServerControl;

namespace {

constexpr ULONGLONG kMillisecondsBetweenTries = 1000;

/// A dialog of the servers, of either kind; null when there is none.
HWND AnyDialog(const DialogTest& isServers) {
    const HWND titled = FindWindowWhere(nullptr, kDialogClass, IsServerDialogTitle);
    return titled ? titled : FindWindowWhere(nullptr, kDialogClass, isServers);
}

/// Dispatches messages until the window is gone, or `isEnded` holds, or the time between two tries is over.
void WaitFor(HWND window, const std::function<bool()>& isEnded) {
    const ULONGLONG start = GetTickCount64();
    while (IsWindow(window) && !isEnded() && GetTickCount64() - start < kMillisecondsBetweenTries) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        gui::DoEvents();
    }
}

} // namespace

void ErrorDetector::Handle() const {
    ServerPathWindows servers;
    auto settings = settings_();
    if (!settings || !settings->handleDialogs ||
        !HasDialog([&](HWND dialog) { return servers.Contains(dialog); }) || !CloseDialogs())
        return;
    settings = settings_();
    if (settings && settings->restartAll && IsZoneRunning())
        RestartAll({.message = settings->message, .meanwhile = {}, .checkExecutables = true}, priorities_);
}

/// False when it was ended before the last of them.
bool ErrorDetector::CloseDialogs() const {
    for (;;) {
        ServerPathWindows servers;
        const DialogTest isServers = [&](HWND dialog) { return servers.Contains(dialog); };
        const ClosedDialog error = CloseFirstDialog(isServers);
        const ClosedDialog winError = CloseFirstDialog(IsServerDialogTitle);
        if (const auto settings = settings_(); settings && settings->logFilename) {
            if (!error.text.empty())
                Log(*settings->logFilename, "Error: " + error.text);
            if (!winError.text.empty())
                Log(*settings->logFilename, "WinError: " + winError.text);
        }
        const HWND left = AnyDialog(isServers);
        if (!left)
            return true;
        gui::DoEvents();
        // A dialog that is still there after its close is slow, or will never go. Without the wait it would
        // cost a whole processor and fill the log with its text. In a storm of dialogs that do go there must
        // be no wait: the next one may block its server.
        if (!error.HasGone() && !winError.HasGone())
            WaitFor(error.window ? error.window : left, [this] { return !settings_(); });
        if (!settings_())
            return false;
    }
}

void ErrorDetector::Log(const std::string& filename, const std::string& entry) const {
    log_.LogPath(common::LogFolder());
    log_.LogFilename(filename);
    log_.WriteLog(entry, false);
}

} // namespace supervision
