#include "supervision/PanelSettings.h"

#include "settings/kToolsSettings.h"

namespace supervision {

using namespace settings::key;

PanelSettings::PanelSettings(clsINI& kTools, fraBackup& backup, fraErrorDetector& errorDetector,
                             fraConnections& connections) {
    backup_ = {
        {kTools, kBackupDuration, backup.txtBackupDuration},
        {kTools, kBackupPeriod, backup.txtBackupMinutes},
        {kTools, kMaxArchivedBackups, backup.txtNumOfBackup},
        {kTools, kBackupMessage, backup.txtBackupMessage},
        {kTools, kBackupMessageInterval, backup.txtBackupMessageInterval},
        {kTools, kBackupMessageRepeats, backup.txtBackupMessageTimes},
        {kTools, kSendMessageBeforeBackup, backup.chkBackupMessage},
        {kTools, kShutdownOnBackup, backup.chkShutdownServers},
        {kTools, kEnableErrorDetector, errorDetector.chkErrorDetector},
    };
    maintainer_ = {
        {kTools, kMaintainServer, errorDetector.chkCheckServerProcesses},
        {kTools, kMaintainLoginServer, errorDetector.chkLoginServer},
        {kTools, kMaintainCharacterServer, errorDetector.chkCharacterServer},
        {kTools, kMaintainZoneServer, errorDetector.chkZoneServer},
        {kTools, kHandleDialogs, errorDetector.chkHandlePopups},
        {kTools, kDialogsOptions,
         binding::Choices{.options = {&errorDetector.optIgnorePopup, &errorDetector.optRestartAllPopup},
                          .otherwise = 1}},
    };
    detector_ = {
        {kTools, kErrorCheckingInterval, errorDetector.txtErrorCheckInterval},
        {kTools, kSendErrorMessagetoPlayers, errorDetector.chkSendMessage},
        {kTools, kErrorMessage, errorDetector.txtErrorMessage},
        {kTools, kLogErrorPopups, errorDetector.chkLogError},
        {kTools, kLogFilename, errorDetector.txtLogFilename},
    };
    ipChange_ = {
        {kTools, kCheckIPChanges, connections.chkOnIPChanges},
        {kTools, kModifyINIonIPChange, connections.chkModifyAshMelder},
        {kTools, kRestartOnIPChange, connections.chkRestartServer},
        {kTools, kSendMessageOnIPChange, connections.chkSendMessageIPChange},
        {kTools, kMessageOnIPChange, connections.txtMessageIPChange},
    };
}

} // namespace supervision
