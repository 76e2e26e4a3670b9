#include "supervision/fraBackup.h"

#include "common/Numbers.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"
#include "supervision/BackupArchive.h"
#include "supervision/Backups.h"
#include "supervision/RestartAll.h"

#include <algorithm>

using supervision::BackupAction;

namespace {

constexpr const char* kImmediateShutdown =
    "The server will be shutdown after this message for immediate maintenances. Sorry for inconveniences";

} // namespace

/// A backup or restore is being made while it lives: there is one copier and one backup folder for all.
class fraBackup::Copying {
public:
    explicit Copying(fraBackup& page) : page_(page) { Set(true); }
    ~Copying() { Set(false); }
    Copying(const Copying&) = delete;
    Copying& operator=(const Copying&) = delete;

private:
    void Set(bool copying) {
        page_.copying_ = copying;
        page_.cmdBackupFiles.Enabled(!copying);
        page_.cmdBackupDatabase.Enabled(!copying);
    }

    fraBackup& page_;
    gui::Uninterrupted uninterrupted_;
};

void fraBackup::Form_Load() {
    SQLCopyTable.SQLCopyError = [this](long number, const std::string& description) {
        ReportFailedBackup(RuntimeError(number, description));
    };
    SQLCopyTable.CopyProgress = [this](const std::string& table, std::size_t rows) {
        return ShowProgress(table + ": " + common::ThousandsText(static_cast<double>(rows)) + " rows");
    };
}

supervision::BackupSettings fraBackup::Settings() const {
    return {.periodMinutes = common::Val(txtBackupMinutes.Text()),
            .durationMinutes = common::Val(txtBackupDuration.Text()),
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
    tmrBackup.Enabled(on);
    ShowEnabled();
}

void fraBackup::ShowEnabled() {
    lblBackupStatus.Caption(tmrBackup.Enabled() ? "Backup is enabled" : "Backup is disabled");
}

void fraBackup::tmrBackup_Timer() {
    clock.Count();
    const supervision::BackupSettings settings = Settings();
    txtTimeLeft.Text(common::NumberText(supervision::MinutesLeft(clock.BackupSeconds(), settings)));
    BackupAction action = BackupAction::Nothing;
    try {
        action = supervision::ActionAt(clock.BackupSeconds(), settings);
        Act(action, settings);
        failure_.clear();
    } catch (const RuntimeError& error) {
        // What fails now will fail again in a second, but one box is enough.
        if (failure_ != error.Description())
            action == BackupAction::Backup ? ReportFailedBackup(error) : ShowLater(error);
        failure_ = error.Description();
    }
}

void fraBackup::Act(BackupAction action, const supervision::BackupSettings& settings) {
    if (action == BackupAction::Announce) {
        if (!modServerControl::IsZoneRunning())
            return;
        SYSTEMTIME now{};
        GetLocalTime(&now);
        modServerControl::SendPlayerMessage(supervision::Announcement(clock.BackupSeconds(), settings, now));
        return;
    }
    // The servers' shutdown and start wait for a backup by hand; the clock goes on.
    if (copying_)
        return;
    if (action == BackupAction::Backup) {
        TimedBackup(settings.shutdownServers);
    } else if (action == BackupAction::Restore) {
        // First, or a start that fails would start servers a second time at the next tick.
        clock.Reset();
        if (settings.shutdownServers)
            modServerControl::StartAllWithPriority(state_.kerno);
    }
}

void fraBackup::TimedBackup(bool shutdownServers) {
    const Copying copying(*this);
    if (shutdownServers) {
        state_.BackupInProgress = true;
        for (const modServerControl::Server server : modServerControl::kServers) {
            if (modServerControl::IsRunning(server))
                modServerControl::Shutdown(server);
        }
    }
    // The settings dialog writes this key to the tool's own file; an operator who wants timed backups puts it
    // into the servers' file.
    const std::string option = state_.kerno.INIProperty(settings::key::kBackupOption);
    if (option == "0" || option == "2")
        FileBackup();
    if (option == "1" || option == "2")
        RemoteBackup();
    // The panel was closed during the backup: its box reads empty, which must not count as "keep no backups".
    if (!Loaded())
        return;
    supervision::PruneBackups(txtNumOfBackup.Text());
    txtTimeLeft.Text("");
}

void fraBackup::BackupByHand(void (fraBackup::*backup)()) {
    const Copying copying(*this);
    // A backup that fails is reported, and the servers come up again all the same.
    const auto make = [&] {
        try {
            (this->*backup)();
        } catch (const RuntimeError& error) {
            ReportFailedBackup(error);
        }
    };
    const bool anyRuns = std::ranges::any_of(modServerControl::kServers, modServerControl::IsRunning);
    if (!chkShutdownServers.Value() || !anyRuns)
        return make();
    supervision::Restart restart{.message = {}, .meanwhile = make};
    if (modServerControl::IsZoneRunning() && chkBackupMessage.Value())
        restart.message = kImmediateShutdown;
    state_.BackupInProgress = true;
    supervision::RestartAll(restart, state_.kerno);
}

void fraBackup::FileBackup() {
    if (!Loaded())
        return;
    supervision::BackUpFiles([this](const std::string& file) { return ShowProgress(file); });
    ShowEnabled();
}

void fraBackup::RemoteBackup() {
    if (!Loaded())
        return;
    supervision::BackUpDatabases(SQLCopyTable, state_.kTools, state_.kerno);
    ShowEnabled();
}

void fraBackup::RestoreDatabase() {
    const Copying copying(*this);
    supervision::RestoreDatabases(SQLCopyTable, state_.kTools, state_.kerno);
    ShowEnabled();
}

/// The one place where a backup yields: between two files, pieces of a file, tables or blocks of rows. Other
/// timers tick here and the operator can press everything. False when the panel was closed meanwhile, which
/// ends the backup where it is.
bool fraBackup::ShowProgress(const std::string& what) {
    lblBackupStatus.Caption(what);
    gui::DoEvents();
    return Loaded();
}

void fraBackup::ReportFailedBackup(const RuntimeError& error) {
    lblBackupStatus.Caption("Backup failed");
    ShowLater(error);
}

void fraBackup::ShowLater(const RuntimeError& error) {
    toReport_.push_back(error);
    tmrReport.Enabled(true);
}

void fraBackup::tmrReport_Timer() {
    if (gui::Uninterrupted::Any())
        return;
    const RuntimeError error = toReport_.front();
    toReport_.pop_front();
    tmrReport.Enabled(!toReport_.empty());
    throw error;
}
