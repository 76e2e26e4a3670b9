#pragma once

#include <string>
#include <string_view>

/// The tool's own settings file: its place, its keys and what a new one holds.
namespace settings {

/// kTools.ini in the program folder.
std::string kToolsIniPath();

/// Kerno.ini in the servers' folder (`kernoPath` ends in a backslash): the servers' own file.
std::string KernoIniPath(const std::string& kernoPath);

/// Writes a new kTools.ini at `path` with every section, key and default, in one step, so that a tool that is
/// killed at its first start does not leave half of them. Raises the file error.
void CreateDefaultSettings(const std::string& path);

/// The keys of kTools.ini. Flags are "0" or "1" ("-1" for the menu check marks of the logs), numbers plain
/// decimals. The zone server's priority is no key of this file; it is "Priority" in Kerno.ini.
namespace key {

// Section "Path"
inline constexpr std::string_view kKernoPath = "KernoPath";
inline constexpr std::string_view kMySQLPath = "MySQLPath";

// Section "ServerStatus"
inline constexpr std::string_view kLogLogin = "LogLogin";
inline constexpr std::string_view kLogCharacter = "LogCharacter";
inline constexpr std::string_view kLogZone = "LogZone";

// Section "Priority"
inline constexpr std::string_view kLoginPriority = "LoginPriority";
inline constexpr std::string_view kCharacterPriority = "CharacterPriority";

// Section "ServerControl"
inline constexpr std::string_view kServerDetectionMethod = "ServerDetectionMethod";
inline constexpr std::string_view kIPDetectionMethod = "IPDetectionMethod";
inline constexpr std::string_view kDynamicHostname = "DynamicHostname";
inline constexpr std::string_view kCheckIPChanges = "CheckIPChanges";
inline constexpr std::string_view kModifyINIonIPChange = "ModifyINIonIPChange";
inline constexpr std::string_view kRestartOnIPChange = "RestartOnIPChange";
inline constexpr std::string_view kSendMessageOnIPChange = "SendMessageOnIPChange";
inline constexpr std::string_view kMessageOnIPChange = "MessageOnIPChange";
inline constexpr std::string_view kBackupDuration = "BackupDuration";
inline constexpr std::string_view kBackupPeriod = "BackupPeriod";
inline constexpr std::string_view kMaxArchivedBackups = "MaxArchivedBackups";
inline constexpr std::string_view kBackupMessage = "BackupMessage";
inline constexpr std::string_view kBackupMessageInterval = "BackupMessageInterval";
inline constexpr std::string_view kBackupMessageRepeats = "BackupMessageRepeats";
inline constexpr std::string_view kBackupHostname = "BackupHostname";
inline constexpr std::string_view kBackupUsername = "BackupUsername";
inline constexpr std::string_view kBackupPassword = "BackupPassword";
inline constexpr std::string_view kBackupOption = "BackupOption";
// These two stand in no file before an operator writes them.
inline constexpr std::string_view kBackupSecondGeneration = "BackupSecondGeneration";
inline constexpr std::string_view kBackupLockTables = "BackupLockTables";
inline constexpr std::string_view kShutdownOnBackup = "ShutdownOnBackup";
inline constexpr std::string_view kSendMessageBeforeBackup = "SendMessageBeforeBackup";
inline constexpr std::string_view kEnableErrorDetector = "EnableErrorDetector";
inline constexpr std::string_view kErrorCheckingInterval = "ErrorCheckingInterval";
inline constexpr std::string_view kSendErrorMessagetoPlayers = "SendErrorMessagetoPlayers";
inline constexpr std::string_view kErrorMessage = "ErrorMessage";
inline constexpr std::string_view kLogErrorPopups = "LogErrorPopups";
inline constexpr std::string_view kLogFilename = "LogFilename";
inline constexpr std::string_view kMaintainServer = "MaintainServer";
inline constexpr std::string_view kMaintainLoginServer = "MaintainLoginServer";
inline constexpr std::string_view kMaintainCharacterServer = "MaintainCharacterServer";
inline constexpr std::string_view kMaintainZoneServer = "MaintainZoneServer";
inline constexpr std::string_view kHandleDialogs = "HandleDialogs";
inline constexpr std::string_view kDialogsOptions = "DialogsOptions";

} // namespace key

} // namespace settings
