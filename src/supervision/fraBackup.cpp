#include "supervision/fraBackup.h"

#include "common/Numbers.h"
#include "servers/modServerControl.h"
#include "supervision/RestartAll.h"

#include <algorithm>

namespace {

constexpr const char* kImmediateShutdown =
    "The server will be shutdown after this message for immediate maintenances. Sorry for inconveniences";

} // namespace

void fraBackup::Form_Load() {
    cmdBackupFiles.Enabled(static_cast<bool>(backups.FileBackup));
    cmdBackupDatabase.Enabled(static_cast<bool>(backups.RemoteBackup));
}

supervision::BackupSettings fraBackup::Settings() const {
    return {.periodMinutes = common::Val(txtBackupMinutes.Text()),
            .durationMinutes = common::Val(txtBackupDuration.Text()),
            .kept = common::Val(txtNumOfBackup.Text()),
            .shutdownServers = chkShutdownServers.Value() != 0,
            .announce = chkBackupMessage.Value() != 0,
            .message = txtBackupMessage.Text(),
            .messageIntervalMinutes = common::Val(txtBackupMessageInterval.Text()),
            .messageRepeats = common::Val(txtBackupMessageTimes.Text())};
}

void fraBackup::cmdEnableBackup_Click() {
    const bool on = !tmrBackup.Enabled();
    cmdEnableBackup.Caption(on ? "Disable Backup" : "Enable Backup");
    mnuEnableBackup_.Caption(on ? "Disable AutoBackup" : "Enable AutoBackup");
    mnuEnableBackup_.Checked(on);
    lblBackupStatus.Caption(on ? "Backup is enabled" : "Backup is disabled");
    tmrBackup.Enabled(on);
}

void fraBackup::tmrBackup_Timer() {
    clock.Count();
    txtTimeLeft.Text(common::NumberText(clock.MinutesLeft(Settings())));
}

void fraBackup::BackupByHand(const std::function<void()>& backup) {
    const bool anyRuns = std::ranges::any_of(modServerControl::kServers, modServerControl::IsRunning);
    if (!chkShutdownServers.Value() || !anyRuns)
        return backup();
    supervision::Restart restart{.message = {}, .meanwhile = backup};
    if (modServerControl::IsZoneRunning() && chkBackupMessage.Value())
        restart.message = kImmediateShutdown;
    state_.BackupInProgress = true;
    supervision::RestartAll(restart, state_.kerno);
}
