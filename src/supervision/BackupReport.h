#pragma once

#include "supervision/FileBackup.h"
#include "supervision/RemoteBackup.h"

#include <windows.h>

#include <string>

/// What the operator reads of a backup: on the page and in kTools\Logs\Backup.log.
namespace supervision {

/// "10 of 10 tables proven, 1,204 accounts", and behind "WARNING" which tables are not and why.
std::string FileBackupText(const FileBackup& backup);

/// "remote copy equal", and how many of the suite's tables it has where that is not all.
std::string RemoteBackupText(const RemoteBackup& backup);

/// The text behind the time of day, as the locale writes it: "11:58 PM: ...".
std::string AtTime(const SYSTEMTIME& time, const std::string& text);

/// Appends a line with date and time to the log of the backups.
void LogBackup(const std::string& text);

} // namespace supervision
