#include "common/Files.h"
#include "common/Numbers.h"
#include "gui/Waiting.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"
#include "supervision/BackupArchive.h"
#include "supervision/BackupReport.h"
#include "supervision/FileBackup.h"
#include "supervision/fraBackup.h"
#include "supervision/NextBackup.h"
#include "supervision/RemoteBackup.h"
#include "supervision/RestartAll.h"

#include <algorithm>
#include <memory>

// How the page makes backups, by the clock and by hand.

namespace {

constexpr const char* kImmediateShutdown =
    "The server will be shutdown after this message for immediate maintenances. Sorry for inconveniences";

} // namespace

/// A backup or restore is being made while it lives: there is one copier and one backup folder for all. What
/// the clock has due meanwhile waits, and a press is refused.
class fraBackup::Copying {
public:
    Copying(fraBackup& page, bool byClock) : page_(page) {
        page_.copying_ = true;
        page_.byClock_ = byClock;
    }
    ~Copying() { page_.copying_ = false; }
    Copying(const Copying&) = delete;
    Copying& operator=(const Copying&) = delete;

private:
    fraBackup& page_;
};

/// A backup is under way that would leave `left` behind if it were ended. The page shows what it waits for.
class fraBackup::Making final : public gui::WaitInSight {
public:
    Making(fraBackup& page, const char* left) : page_(page) {
        page_.unfinished_ = left;
        page_.making_ = this;
        page_.tmrWaiting.Enabled(true);
        page_.cmdCancelBackup.Enabled(true);
    }
    ~Making() {
        page_.unfinished_.clear();
        page_.replacing_ = false;
        page_.making_ = nullptr;
        if (page_.byClock_)
            page_.phaseCancelled_ = Cancelled();
        page_.tmrWaiting.Enabled(false);
        page_.cmdCancelBackup.Enabled(false);
        page_.lblBackupResult.Caption(page_.result_);
    }

    void Suspended(const std::string& what) override {
        awaited_ = what;
        since_ = std::chrono::steady_clock::now();
    }
    void Resumed() override { awaited_.reset(); }

    /// "" while nothing is waited for, or not for long.
    std::string Text() const {
        const auto time = std::chrono::steady_clock::now() - since_;
        if (!awaited_ || time < std::chrono::seconds(1))
            return {};
        return gui::WaitingText(*awaited_) + ", for " + common::SecondsText(time) +
               ". \"Cancel\" ends the backup";
    }

private:
    fraBackup& page_;
    std::optional<std::string> awaited_;
    std::chrono::steady_clock::time_point since_;
};

void fraBackup::tmrWaiting_Timer() {
    const std::string text = making_ ? making_->Text() : "";
    lblBackupResult.Caption(text.empty() ? result_ : text);
}

gui::Task<> fraBackup::cmdCancelBackup_Click() {
    const bool ends = co_await MayEnd(ClosingQuestion());
    // It may have ended by itself meanwhile.
    if (ends && making_)
        making_->Cancel();
}

gui::Task<> fraBackup::TimedBackup(bool shutdownServers) {
    const Copying copying(*this, true);
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
    std::string made;
    skipped_ = option == "2" ? ". No remote copy was made, and no older folder was deleted"
                             : ". No older folder was deleted";
    if (option == "0" || option == "2")
        made = co_await FileBackup();
    skipped_ = ". No older folder was deleted";
    if (option == "1" || option == "2")
        co_await RemoteBackup(false);
    if (supervision::BackupCoverage(option).empty())
        ShowResult("NO BACKUP was made. " + supervision::BackupOptionText(state_.kerno));
    supervision::PruneBackups(txtNumOfBackup.Text());
    txtTimeLeft.Text("");
    if (!made.empty() && !common::FolderExists(supervision::BackupFolder() + "\\" + made))
        ShowResult("WARNING: \"Backups to keep\" has deleted the backup that was just made");
}

gui::Task<> fraBackup::BackupByHand(Maker maker) {
    if (copying_) {
        Refuse();
        co_return;
    }
    const Copying copying(*this, false);
    skipped_.clear();
    logged_.clear();
    const bool anyRuns = std::ranges::any_of(modServerControl::kServers, modServerControl::IsRunning);
    if (!chkShutdownServers.Value() || !anyRuns) {
        co_await Make(maker);
        co_return;
    }
    supervision::Restart restart{
        .asker = journal::Asker::Backup, .message = {}, .meanwhile = [this, maker] { return Make(maker); }};
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
gui::Task<> fraBackup::Make(Maker maker) {
    try {
        co_await (this->*maker)();
    } catch (const RuntimeError& error) {
        ReportFailedBackup(error);
    }
}

gui::Task<> fraBackup::FileBackupByHand() {
    co_await FileBackup();
}

/// Returns the name of the dated folder.
gui::Task<std::string> fraBackup::FileBackup() {
    const Making making(*this, "no folder was made");
    const std::function<void(const std::string&)> progress = [this](const std::string& file) {
        lblBackupStatus.Caption(file);
    };
    const bool lock = common::Val(state_.kTools.INIProperty(settings::key::kBackupLockTables)) != 0;
    const supervision::FileBackup backup = co_await supervision::BackUpFiles(progress, state_.kerno, lock);
    ShowEnabled();
    const std::string text = supervision::FileBackupText(backup);
    if (backup.IsProven())
        ShowProven(text);
    else
        ShowResult(text);
    co_return backup.folder;
}

gui::Task<> fraBackup::RemoteBackup(bool ask) {
    const Making making(*this, "the copy on the remote server is as it was");
    const supervision::MayReplaceByEmpty mayReplace = [this, ask](const std::string& database,
                                                                  const std::string& copy) {
        return MayReplace(database, copy, ask);
    };
    const std::function<void()> begins = [this] {
        replacing_ = true;
        unfinished_ = "the copy on the remote server is INCOMPLETE";
    };
    const supervision::RemoteBackup backup =
        co_await supervision::BackUpDatabases(SQLCopyTable, state_.kTools, state_.kerno, mayReplace, begins);
    ShowEnabled();
    ShowProven(supervision::RemoteBackupText(backup));
}

/// Nobody is there to be asked by a timed backup.
gui::Task<bool> fraBackup::MayReplace(std::string database, std::string copy, bool ask) {
    if (!ask)
        co_return false;
    const std::string question = database + " has no rows, and its copy " + copy +
                                 " on the remote server has some. Replace the copy by nothing ?";
    const int answer = co_await MsgBox(question, MB_YESNO | MB_ICONEXCLAMATION);
    co_return answer == IDYES;
}

gui::Task<> fraBackup::RestoreDatabase() {
    const Copying copying(*this, false);
    co_await supervision::RestoreDatabases(SQLCopyTable, state_.kTools, state_.kerno);
    ShowEnabled();
}
