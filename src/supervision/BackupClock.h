#pragma once

#include <string>

namespace supervision {

/// What the automatic backup is told at every tick; numbers as they were typed.
struct BackupSettings {
    double periodMinutes = 0;   ///< between two backups
    double durationMinutes = 0; ///< that the servers stay down
    double kept = 0;            ///< backup folders that are kept
    bool shutdownServers = false;
    bool announce = false;
    std::string message; ///< with its placeholders
    double messageIntervalMinutes = 0;
    double messageRepeats = 0;
};

/// Counts the seconds to the next automatic backup. Stopping its timer keeps the count.
class BackupClock {
public:
    long Seconds() const { return seconds_; }
    /// Starts the cycle again.
    void Reset() { seconds_ = 0; }
    /// One more second has passed.
    void Count() { ++seconds_; }

    /// Whole minutes until the backup, rounded down; below zero once it is due.
    double MinutesLeft(const BackupSettings& settings) const;

private:
    long seconds_ = 0;
};

} // namespace supervision
