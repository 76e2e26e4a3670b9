#pragma once

#include "common/clsLog.h"
#include "settings/clsINI.h"

#include <functional>
#include <optional>
#include <string>

namespace supervision {

/// What the error detector does with the servers' error dialogs.
struct ErrorDetectorSettings {
    bool handleDialogs = false;
    std::optional<std::string> logFilename; ///< file below kTools\Logs for their texts; nothing keeps no log
    bool restartAll = false;                ///< once they are closed, when the zone server runs
    std::optional<std::string> message;     ///< told the players before that restart
};

/// Closes the dialogs that block the servers.
class ErrorDetector {
public:
    /// `priorities`: the file that holds the priorities of the servers. `isWanted` is asked between two
    /// dialogs; from the first false on the detector does nothing more.
    ErrorDetector(clsLog& log, const clsINI& priorities, std::function<bool()> isWanted)
        : log_(log), priorities_(priorities), isWanted_(std::move(isWanted)) {}

    /// Closes every dialog of the servers, also those that come up meanwhile, and restarts the suite as the
    /// settings say. Starts only when a process of a server owns a dialog; then dialogs that merely name a
    /// server in their title go too.
    ///
    /// Dispatches messages meanwhile. A dialog that does not close keeps it going, at a try a second.
    void Handle(const ErrorDetectorSettings& settings) const;

private:
    bool CloseDialogs(const std::optional<std::string>& logFilename) const;
    void Log(const std::string& filename, const std::string& entry) const;

    clsLog& log_;
    const clsINI& priorities_;
    std::function<bool()> isWanted_;
};

} // namespace supervision
