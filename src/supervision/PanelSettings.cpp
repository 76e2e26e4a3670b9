#include "supervision/PanelSettings.h"

#include "settings/kToolsSettings.h"

namespace supervision {

using namespace settings::key;

PanelSettings::PanelSettings(fraBackup& backup, fraErrorDetector& errorDetector,
                             fraConnections& connections) {
    settings_[kBackup] = {
        {kBackupDuration, &backup.txtBackupDuration},
        {kBackupPeriod, &backup.txtBackupMinutes},
        {kMaxArchivedBackups, &backup.txtNumOfBackup},
        {kBackupMessage, &backup.txtBackupMessage},
        {kBackupMessageInterval, &backup.txtBackupMessageInterval},
        {kBackupMessageRepeats, &backup.txtBackupMessageTimes},
        {kSendMessageBeforeBackup, &backup.chkBackupMessage},
        {kShutdownOnBackup, &backup.chkShutdownServers},
        {kEnableErrorDetector, &errorDetector.chkErrorDetector},
    };
    settings_[kMaintainer] = {
        {kMaintainServer, &errorDetector.chkCheckServerProcesses},
        {kMaintainLoginServer, &errorDetector.chkLoginServer},
        {kMaintainCharacterServer, &errorDetector.chkCharacterServer},
        {kMaintainZoneServer, &errorDetector.chkZoneServer},
        {kHandleDialogs, &errorDetector.chkHandlePopups},
        {kDialogsOptions,
         Choices{.options = {&errorDetector.optIgnorePopup, &errorDetector.optRestartAllPopup},
                 .otherwise = 1}},
    };
    settings_[kDetector] = {
        {kErrorCheckingInterval, &errorDetector.txtErrorCheckInterval},
        {kSendErrorMessagetoPlayers, &errorDetector.chkSendMessage},
        {kErrorMessage, &errorDetector.txtErrorMessage},
        {kLogErrorPopups, &errorDetector.chkLogError},
        {kLogFilename, &errorDetector.txtLogFilename},
    };
    settings_[kIPChange] = {
        {kCheckIPChanges, &connections.chkOnIPChanges},
        {kModifyINIonIPChange, &connections.chkModifyAshMelder},
        {kRestartOnIPChange, &connections.chkRestartServer},
        {kSendMessageOnIPChange, &connections.chkSendMessageIPChange},
        {kMessageOnIPChange, &connections.txtMessageIPChange},
    };
}

void PanelSettings::Load(const clsINI& ini) const {
    for (const Run run : {kBackup, kMaintainer, kDetector, kIPChange})
        for (const BoundSetting& setting : settings_[run])
            setting.Load(ini);
}

void PanelSettings::Save(clsINI& ini) const {
    for (const Run run : {kBackup, kDetector, kMaintainer, kIPChange})
        for (const BoundSetting& setting : settings_[run])
            setting.Save(ini);
}

} // namespace supervision
