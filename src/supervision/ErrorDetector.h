#pragma once

#include "common/clsLog.h"
#include "gui/Task.h"
#include "servers/Dialogs.h"
#include "settings/clsINI.h"

#include <functional>
#include <optional>
#include <string>

namespace supervision {

/// What the error detector does with the servers' error dialogs.
struct ErrorDetectorSettings {
    bool handleDialogs = false;
    std::optional<std::string> logFilename; ///< file below kTools\Logs for the dialogs' texts; empty: no log
    bool restartAll = false;                ///< restarts the suite afterwards, when the zone server runs
    std::optional<std::string> message;     ///< sent to the players before that restart; empty: none is sent
};

/// Closes the dialogs that block the servers.
class ErrorDetector {
public:
    /// `priorities`: the file that holds the priorities of the servers. `settings` are asked at every step,
    /// because the operator can change them meanwhile. When they are no longer there, or dialogs are no
    /// longer to be handled, the detector stops where it is; only a restart that has begun is finished.
    ErrorDetector(clsLog& log, const clsINI& priorities,
                  std::function<std::optional<ErrorDetectorSettings>()> settings)
        : log_(log), priorities_(priorities), settings_(std::move(settings)) {}

    /// Closes every dialog of the servers, also those that come up meanwhile, and restarts the suite as the
    /// settings say. Starts only when a process of a server owns a dialog; then dialogs that merely name a
    /// server in their title go too.
    ///
    /// A dialog that does not close keeps it going, at a try a second; its text is logged again after growing
    /// pauses.
    gui::Task<> Handle() const;

private:
    gui::Task<bool> CloseDialogs() const;
    bool IsOn() const;
    void Log(const modServerControl::ClosedDialog& closed, const std::string& kind) const;

    clsLog& log_;
    const clsINI& priorities_;
    std::function<std::optional<ErrorDetectorSettings>()> settings_;
};

} // namespace supervision
