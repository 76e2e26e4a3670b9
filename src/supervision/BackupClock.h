#pragma once

#include <windows.h>

#include <string>

namespace supervision {

/// What the automatic backup is told at every tick; numbers as they were typed.
struct BackupSettings {
    double periodMinutes = 0;   ///< between two backups
    double durationMinutes = 0; ///< that the servers stay down
    bool shutdownServers = false;
    bool announce = false;
    std::string message; ///< with its placeholders
    double messageIntervalMinutes = 0;
    double messageRepeats = 0;
};

enum class BackupAction { Nothing, Announce, Backup, Restore };

/// What the tick at `second` of the cycle does: backups from the end of the period on for the whole duration,
/// at every tick, and then the servers' restart, with which the cycle ends. With a duration of 0 the restart
/// comes at once and no backup is made. Raises 11 (division by zero) before the backup when announcements are
/// wanted at an interval that rounds to 0 seconds.
BackupAction ActionAt(long second, const BackupSettings& settings);

/// Whole minutes until the backup, rounded down; below zero once it is due.
double MinutesLeft(long second, const BackupSettings& settings);

/// The time so many seconds after `now`, at most the last one that the system has a text for.
SYSTEMTIME After(const SYSTEMTIME& now, double seconds);

/// The message at `second` with its placeholders replaced. `now` is local time.
std::string Announcement(long second, const BackupSettings& settings, const SYSTEMTIME& now);

/// Counts the seconds of the cycle. Stopping its timer keeps the count.
class BackupClock {
public:
    long BackupSeconds() const { return seconds_; }
    /// Starts the cycle again.
    void Reset() { seconds_ = 0; }
    /// More seconds have passed.
    void Count(long seconds = 1) { seconds_ += seconds; }

private:
    long seconds_ = 0;
};

} // namespace supervision
