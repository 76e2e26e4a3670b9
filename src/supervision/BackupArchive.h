#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The dated folders below kTools\Backup, one for each file backup.
namespace supervision {

/// Full path of the folder that holds them.
std::string BackupFolder();

/// What stands for the two halves of the day in the folders' names.
struct DaySigns {
    std::string am = "AM";
    std::string pm = "PM";
};

/// The locale's signs; AM and PM where it has none, or such as a name cannot hold.
DaySigns LocaleDaySigns();

/// The name of the backup folder for a moment of local time: "dd-mm-yyyy hh mm AM", on the 12-hour clock with
/// the sign for the half of the day.
std::string BackupName(const SYSTEMTIME& time, const DaySigns& signs = LocaleDaySigns());

/// The minute that a backup folder's name says, counted from 1970; nothing when it is not such a name, which
/// ends in one of the signs or in AM or PM. 12 hours are added for the second half whatever the hour, so that
/// a backup from noon counts as one from midnight after it, and one from 12 AM as one from noon.
std::optional<std::int64_t> BackupMinute(const std::string& name, const DaySigns& signs = LocaleDaySigns());

/// The folders to delete so that the `kept` youngest remain. `folders` in the order of the directory; one
/// whose name is no backup's has no age, so that the ages behind it belong to the wrong names.
std::vector<std::string> FoldersToPrune(const std::vector<std::string>& folders, const SYSTEMTIME& now,
                                        std::size_t kept, const DaySigns& signs = LocaleDaySigns());

/// Deletes the backup folders that are too many, with everything in them; one that is in use may stay whole.
/// Returns 1 when there were too many, else 0. `kept` as it was typed: raises 13 (type mismatch) when it is
/// no number, 6 when it is too large and, where there are folders, 9 when it is below 0; nothing is deleted
/// then.
std::int16_t PruneBackups(const std::string& kept);

} // namespace supervision
