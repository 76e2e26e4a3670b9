#include "supervision/ErrorDetector.h"

#include "gui/TaskWaits.h"
#include "servers/modServerControl.h"
#include "servers/StubbornDialogs.h"
#include "supervision/RestartAll.h"

#include <map>

namespace supervision {

using namespace modServerControl;

namespace {

constexpr ULONGLONG kMillisecondsBetweenTries = 1000;
constexpr std::chrono::milliseconds kWhileNoneGoes{50};

/// The dialogs that were told to close a moment ago.
class Told {
public:
    bool Contains(HWND dialog) const {
        const auto told = at_.find(dialog);
        return told != at_.end() && GetTickCount64() - told->second < kMillisecondsBetweenTries;
    }
    /// True when the dialog has gone.
    bool Note(const ClosedDialog& closed) {
        if (!closed.window)
            return false;
        if (closed.HasGone()) {
            Stubborn().Forget(closed.window);
            return true;
        }
        at_[closed.window] = GetTickCount64();
        Stubborn().Meet(closed.window, GetTickCount64());
        return false;
    }

private:
    std::map<HWND, ULONGLONG> at_;
};

} // namespace

gui::Task<> ErrorDetector::Handle() const {
    ServerPathWindows servers;
    const DialogTest isServers = [&](HWND dialog) { return servers.Contains(dialog); };
    if (!IsOn() || !HasDialog(isServers))
        co_return;
    const bool allClosed = co_await CloseDialogs();
    const auto settings = settings_();
    if (!allClosed || !settings || !settings->restartAll || !IsZoneRunning())
        co_return;
    const Restart restart{.asker = journal::Asker::Detector,
                          .message = settings->message,
                          .meanwhile = {},
                          .checkExecutables = true};
    co_await RestartAll(restart, priorities_);
}

bool ErrorDetector::IsOn() const {
    const auto settings = settings_();
    return settings && settings->handleDialogs;
}

/// False when it was ended before the last of them.
gui::Task<bool> ErrorDetector::CloseDialogs() const {
    Told told;
    while (IsOn()) {
        ServerPathWindows servers;
        const auto isServers = [&](HWND dialog) { return servers.Contains(dialog); };
        // One that does not close must not keep the others open.
        const ClosedDialog error =
            CloseFirstDialog([&](HWND dialog) { return !told.Contains(dialog) && isServers(dialog); });
        Log(error, "Error: ");
        const bool errorWent = told.Note(error);
        const ClosedDialog winError = CloseFirstDialog(
            [&](HWND dialog) { return !told.Contains(dialog) && IsServerDialogWholeTitle(dialog); });
        Log(winError, "WinError: ");
        const bool winErrorWent = told.Note(winError);
        if (!HasDialog(IsServerDialogWholeTitle) && !HasDialog(isServers))
            co_return true;
        // In a storm of dialogs that do go there must be no wait: the next one may block its server.
        if (errorWent || winErrorWent)
            co_await gui::NextTurn();
        else
            co_await gui::Delay(kWhileNoneGoes);
    }
    co_return false;
}

void ErrorDetector::Log(const ClosedDialog& closed, const std::string& kind) const {
    if (closed.text.empty() || !Stubborn().MayLog(closed.window, GetTickCount64()))
        return;
    journal::Write(journal::Asker::Detector, "dialog told to close: " + closed.text);
    const auto settings = settings_();
    if (!settings || !settings->logFilename)
        return;
    log_.LogPath(common::LogFolder());
    log_.LogFilename(*settings->logFilename);
    log_.WriteLog(kind + closed.text, false);
}

} // namespace supervision
