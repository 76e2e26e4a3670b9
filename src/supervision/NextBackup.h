#pragma once

#include "settings/clsINI.h"
#include "supervision/BackupClock.h"

#include <string>

/// What the windows tell about the next timed backup.
namespace supervision {

/// What a timed backup makes of the text of BackupOption: "files", "remote copy" or "files and remote copy";
/// "" when it makes nothing.
std::string BackupCoverage(const std::string& option);

/// The text of BackupOption in Kerno.ini, as "Kerno.ini has BackupOption=2: files and remote copy" or with
/// why no backup will be made. Also when the file cannot be read.
std::string BackupOptionText(const clsINI& kerno);

/// "Next: files and remote copy at 11:58 PM" at `second` of the clock, the time as the locale writes it;
/// "Next: none, ..." with the reason. `now` is local time.
std::string NextBackupText(const clsINI& kerno, bool enabled, long second, const BackupSettings& settings,
                           const SYSTEMTIME& now);

/// What goes on while nobody looks.
struct Night {
    bool watched = false;  ///< the error detector is enabled; without it the next two count for nothing
    bool restarts = false; ///< servers that have stopped
    bool closes = false;   ///< error dialogs
    std::string next;      ///< NextBackupText
    std::string last;      ///< the last backup that was proven; "" when there was none
};

/// One line about all of it: "Tonight: stopped servers are restarted, error dialogs stay. Next: ... Last
/// backup: ...".
std::string NightText(const Night& night);

} // namespace supervision
