#include "supervision/fraBackup.h"

#include "common/Numbers.h"
#include "gui/TaskWaits.h"
#include "gui/Waiting.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"
#include "supervision/BackupCheck.h"
#include "supervision/BackupReport.h"
#include "supervision/BackupWork.h"
#include "supervision/NextBackup.h"

#include <algorithm>
#include <cmath>

using supervision::BackupAction;

namespace {

constexpr const char* kStayDown =
    "The servers were shut down for a backup, and stay down until somebody starts them";

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

void fraBackup::Form_Load() {
    closingNoted_ = false;
    result_ = lblBackupResult.Caption();
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
        lblBackupStatus.Caption(table + ": " + common::CountText(rows) + " rows");
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
    lastTick_ = 0;
    ShowEnabled();
    // Both servers may be slow to answer, and the button is not to be refused meanwhile.
    if (on)
        Start(Check(false));
    else
        co_await OfferStart(false);
}

/// Tells what stands in the way of timed backups, and when nothing does only whoever asked.
gui::Task<> fraBackup::Check(bool asked) {
    const supervision::BackupSettings settings = Settings();
    const std::string kept = txtNumOfBackup.Text();
    std::optional<gui::Waiting> waiting;
    if (asked)
        waiting.emplace(*this);
    const std::vector<std::string> findings =
        co_await supervision::FindingsOnBackup(state_.kTools, state_.kerno, settings, kept);
    waiting.reset();
    if (findings.empty() && !asked)
        co_return;
    std::string text;
    for (const std::string& finding : findings)
        text += "- " + finding + ".\n";
    if (text.empty())
        text = "Nothing stands in the way of timed backups.\n";
    Tell(text + "\n" + supervision::RetentionText(settings, kept) + ".",
         findings.empty() ? MB_ICONINFORMATION : MB_ICONEXCLAMATION);
}

gui::Task<> fraBackup::cmdResetTimer_Click() {
    clock.Reset();
    co_await OfferStart(false);
}

gui::Task<> fraBackup::OfferStart(bool closing) {
    if (!phase_ && !(closing && closedByHand_))
        co_return;
    const int answer = co_await MsgBox("A backup has shut the servers down. Start them now ?", MB_YESNO);
    const auto closed = phase_ ? phase_->closed : closedByHand_.value_or(modServerControl::Predecessors());
    phase_.reset();
    if (answer == IDYES)
        gui::ToolTasks().Start(StartServersWhenFree(closed, state_.kerno));
    else
        ShowResult(kStayDown);
}

std::string fraBackup::ClosingQuestion() const {
    if (!replacing_)
        return {};
    return "A backup to the remote server is under way. When it ends now, the copy there is incomplete, "
           "and the one before it is gone. End it all the same ?";
}

std::string fraBackup::LeavingQuestion() const {
    const std::string question = ClosingQuestion();
    if (!question.empty() || !(phase_ || closedByHand_))
        return question;
    return "A backup has shut the servers down. They stay down until somebody starts them. "
           "Leave all the same ?";
}

void fraBackup::NoteClosing() {
    if (std::exchange(closingNoted_, true))
        return;
    if (!unfinished_.empty())
        supervision::LogBackup("Ended in the middle with the control panel: " + unfinished_);
    if (phase_ || closedByHand_)
        supervision::LogBackup(kStayDown);
}

void fraBackup::ShowEnabled() {
    lblBackupStatus.Caption(tmrBackup.Enabled() ? "Backup is enabled" : "Backup is disabled");
}

/// Ticks that a backup has held up count, because the players were told when the servers are back. Those that
/// were lost while the computer slept do not.
long fraBackup::SecondsDue() {
    constexpr ULONGLONG kSecond = 10'000'000;
    ULONGLONG now = 0;
    QueryUnbiasedInterruptTime(&now);
    const ULONGLONG before = std::exchange(lastTick_, now);
    const bool during = std::exchange(heldUp_, copying_) || copying_;
    return during && before > 0 ? std::max(1L, std::lround(static_cast<double>(now - before) / kSecond)) : 1;
}

void fraBackup::tmrBackup_Timer() {
    clock.Count(SecondsDue());
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
    if (action != BackupAction::Backup)
        phaseCancelled_ = false;
    if (action == BackupAction::Backup) {
        if (phaseCancelled_)
            co_return true;
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
        logged_.clear();
        if (settings.shutdownServers)
            StartServers(phase ? phase->closed : modServerControl::Predecessors::All(), state_.kerno);
    }
    co_return true;
}

void fraBackup::ShowProven(const std::string& text) {
    ShowResult(text);
    lastProven_ = result_;
}

/// The line on the page and, unless the same was said there in this cycle, in the log.
void fraBackup::ShowResult(const std::string& text) {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    result_ = supervision::AtTime(now, text);
    lblBackupResult.Caption(result_);
    if (logged_.insert(text).second)
        supervision::LogBackup(text);
}

void fraBackup::ReportFailedBackup(const RuntimeError& error) {
    lblBackupStatus.Caption("Backup failed");
    ShowResult("FAILED: " + error.Description() + skipped_);
    Report(error);
}

void fraBackup::Report(const RuntimeError& error) {
    Raise([&error] { throw RuntimeError(error); });
}
