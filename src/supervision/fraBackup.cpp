#include "supervision/fraBackup.h"

#include "common/Numbers.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"
#include "supervision/BackupArchive.h"
#include "supervision/Backups.h"
#include "supervision/BackupWork.h"
#include "supervision/RestartAll.h"

#include <algorithm>
#include <memory>

using supervision::BackupAction;

namespace {

constexpr const char* kImmediateShutdown =
    "The server will be shutdown after this message for immediate maintenances. Sorry for inconveniences";

} // namespace

/// A backup or restore is being made while it lives: there is one copier and one backup folder for all. What
/// the clock has due meanwhile waits, and a press is refused.
class fraBackup::Copying {
public:
    explicit Copying(fraBackup& page) : page_(page) { page_.copying_ = true; }
    ~Copying() { page_.copying_ = false; }
    Copying(const Copying&) = delete;
    Copying& operator=(const Copying&) = delete;

private:
    fraBackup& page_;
};

void fraBackup::Form_Load() {
    try {
        // A copy of the tool that was killed may have left a dated folder there.
        if (supervision::BackupWork::IsLeft()) {
            const supervision::BackupWork inOrder;
        }
    } catch (const RuntimeError&) {
        // The next backup tells what stands in the way.
    }
    SQLCopyTable.SQLCopyError = [this](long number, const std::string& description) {
        ReportFailedBackup(RuntimeError(number, description));
    };
    SQLCopyTable.CopyProgress = [this](const std::string& table, std::size_t rows) {
        lblBackupStatus.Caption(table + ": " + common::ThousandsText(static_cast<double>(rows)) + " rows");
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

gui::Task<> fraBackup::cmdEnableBackup_Click() {
    const bool on = !tmrBackup.Enabled();
    cmdEnableBackup.Caption(on ? "Disable Backup" : "Enable Backup");
    mnuEnableBackup_.Caption(on ? "Disable AutoBackup" : "Enable AutoBackup");
    mnuEnableBackup_.Checked(on);
    tmrBackup.Enabled(on);
    ShowEnabled();
    if (!on)
        co_await OfferStart(false);
}

gui::Task<> fraBackup::cmdResetTimer_Click() {
    clock.Reset();
    co_await OfferStart(false);
}

namespace {

/// Starts the servers that a backup has shut down, save for those that have come up again by themselves.
void StartServers(const modServerControl::Predecessors& closed, const clsINI& priorities) {
    modServerControl::ForEach(modServerControl::kServers, [&](modServerControl::Server server) {
        const std::string name = modServerControl::ComponentOf(server).name;
        if (closed.HaveSuccessor(server))
            journal::Write(journal::Asker::Backup, name + " server: was started meanwhile");
        else if (modServerControl::IsOwned(server))
            journal::Write(journal::Asker::Backup, name + " server: left to the restart that is under way");
        else
            modServerControl::StartWithPriority(server, priorities, journal::Asker::Backup);
    });
}

/// As a task of the tool: the backup that has the servers, and the page with it, may be just about to end.
gui::Task<> StartServersWhenFree(modServerControl::Predecessors closed, clsINI priorities) {
    const auto isFree = [] {
        return std::ranges::none_of(modServerControl::kServers, modServerControl::IsOwned);
    };
    co_await gui::Until(isFree, std::chrono::seconds(10));
    StartServers(closed, priorities);
}

} // namespace

gui::Task<> fraBackup::OfferStart(bool closing) {
    if (!phase_ && !(closing && closedByHand_))
        co_return;
    const int answer = co_await MsgBox("A backup has shut the servers down. Start them now ?", MB_YESNO);
    const auto closed = phase_ ? phase_->closed : closedByHand_.value_or(modServerControl::Predecessors());
    phase_.reset();
    if (answer == IDYES)
        gui::ToolTasks().Start(StartServersWhenFree(closed, state_.kerno));
}

void fraBackup::ShowEnabled() {
    lblBackupStatus.Caption(tmrBackup.Enabled() ? "Backup is enabled" : "Backup is disabled");
}

void fraBackup::tmrBackup_Timer() {
    // Also while a backup runs: the players were told when the servers are back.
    clock.Count();
    const supervision::BackupSettings settings = Settings();
    txtTimeLeft.Text(common::NumberText(supervision::MinutesLeft(clock.BackupSeconds(), settings)));
    try {
        Start(ActOrReport(supervision::ActionAt(clock.BackupSeconds(), settings), settings));
    } catch (const RuntimeError& error) {
        ReportOnce(error, BackupAction::Nothing);
    }
}

gui::Task<> fraBackup::ActOrReport(BackupAction action, supervision::BackupSettings settings) {
    try {
        const bool acted = co_await Act(action, settings);
        if (acted)
            failure_.clear();
    } catch (const RuntimeError& error) {
        ReportOnce(error, action);
    }
}

/// What fails now will fail again in a second, but one box is enough.
void fraBackup::ReportOnce(const RuntimeError& error, BackupAction action) {
    if (failure_ != error.Description())
        action == BackupAction::Backup ? ReportFailedBackup(error) : Report(error);
    failure_ = error.Description();
}

/// False when a backup or somebody else is in the way.
gui::Task<bool> fraBackup::Act(BackupAction action, supervision::BackupSettings settings) {
    if (action == BackupAction::Announce) {
        if (!modServerControl::IsZoneRunning())
            co_return true;
        SYSTEMTIME now{};
        GetLocalTime(&now);
        modServerControl::SendPlayerMessage(supervision::Announcement(clock.BackupSeconds(), settings, now));
        co_return true;
    }
    // The servers' shutdown and start wait for a backup that is being made; the clock goes on.
    if (copying_)
        co_return false;
    if (action == BackupAction::Backup) {
        // Whoever restarts the servers at this moment would start them while their files are copied.
        if (settings.shutdownServers &&
            std::ranges::any_of(modServerControl::kServers, modServerControl::IsOwned))
            co_return false;
        co_await TimedBackup(settings.shutdownServers);
    } else if (action == BackupAction::Restore) {
        // However they end, or a start that fails would start servers a second time at the next tick.
        const struct CycleEnd {
            ~CycleEnd() { clock.Reset(); }
            supervision::BackupClock& clock;
        } cycleEnd{clock};
        const std::optional<Phase> phase = std::exchange(phase_, {});
        if (settings.shutdownServers)
            StartServers(phase ? phase->closed : modServerControl::Predecessors::All(), state_.kerno);
    }
    co_return true;
}

gui::Task<> fraBackup::TimedBackup(bool shutdownServers) {
    const Copying copying(*this);
    if (shutdownServers) {
        state_.BackupInProgress = true;
        if (!phase_)
            phase_.emplace();
        for (const modServerControl::Server server : modServerControl::kServers) {
            // The operator may end the phase meanwhile.
            if (!phase_ || !modServerControl::IsRunning(server))
                continue;
            phase_->closed.Note(server);
            co_await modServerControl::ShutdownFor(journal::Asker::Backup, server);
        }
    }
    // The settings dialog writes this key to the tool's own file; an operator who wants timed backups puts it
    // into the servers' file.
    const std::string option = state_.kerno.INIProperty(settings::key::kBackupOption);
    if (option == "0" || option == "2")
        co_await FileBackup();
    if (option == "1" || option == "2")
        co_await RemoteBackup();
    supervision::PruneBackups(txtNumOfBackup.Text());
    txtTimeLeft.Text("");
}

gui::Task<> fraBackup::BackupByHand(Making backup) {
    if (copying_) {
        Refuse();
        co_return;
    }
    const Copying copying(*this);
    const bool anyRuns = std::ranges::any_of(modServerControl::kServers, modServerControl::IsRunning);
    if (!chkShutdownServers.Value() || !anyRuns) {
        co_await Make(backup);
        co_return;
    }
    supervision::Restart restart{
        .asker = journal::Asker::Backup, .message = {}, .meanwhile = [this, backup] { return Make(backup); }};
    if (modServerControl::IsZoneRunning() && chkBackupMessage.Value())
        restart.message = kImmediateShutdown;
    state_.BackupInProgress = true;
    closedByHand_ = modServerControl::Predecessors::All();
    const std::shared_ptr<void> comeUp(nullptr, [this](void*) { closedByHand_.reset(); });
    const bool done = co_await supervision::RestartAll(restart, state_.kerno);
    if (!done)
        Tell(supervision::kRestartUnderWay);
}

/// A backup that fails is reported, and the servers come up again all the same.
gui::Task<> fraBackup::Make(Making backup) {
    try {
        co_await (this->*backup)();
    } catch (const RuntimeError& error) {
        ReportFailedBackup(error);
    }
}

gui::Task<> fraBackup::FileBackup() {
    const std::function<void(const std::string&)> progress = [this](const std::string& file) {
        lblBackupStatus.Caption(file);
    };
    co_await supervision::BackUpFiles(progress);
    ShowEnabled();
}

gui::Task<> fraBackup::RemoteBackup() {
    co_await supervision::BackUpDatabases(SQLCopyTable, state_.kTools, state_.kerno);
    ShowEnabled();
}

gui::Task<> fraBackup::RestoreDatabase() {
    const Copying copying(*this);
    co_await supervision::RestoreDatabases(SQLCopyTable, state_.kTools, state_.kerno);
    ShowEnabled();
}

void fraBackup::ReportFailedBackup(const RuntimeError& error) {
    lblBackupStatus.Caption("Backup failed");
    Report(error);
}

void fraBackup::Report(const RuntimeError& error) {
    Raise([&error] { throw RuntimeError(error); });
}
