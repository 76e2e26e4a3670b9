#pragma once

#include "gui/Control.h"
#include "gui/Menu.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"
#include "gui/Timer.h"
#include "servers/Ownership.h"
#include "servers/Processes.h"
#include "supervision/BackupClock.h"
#include "supervision/clsMySQLCopyDatabase.h"
#include "supervision/fraBackup.ids.h"
#include "supervision/PanelState.h"

#include <optional>
#include <set>
#include <string>

/// The control panel's page for the automatic backup and for backups by hand.
class fraBackup final : public gui::TabPage {
public:
    fraBackup(gui::TabPanel& panel, PanelState& state, gui::MenuItem& enableBackup)
        : TabPage(panel, IDD_fraBackup), state_(state), mnuEnableBackup_(enableBackup) {}

    gui::Label lblBackupStatus{*this, IDC_fraBackup_lblBackupStatus};
    /// How the last backup ended, for the operator who looks in the morning.
    gui::Label lblBackupResult{*this, IDC_fraBackup_lblBackupResult};
    gui::TextBox txtTimeLeft{*this, IDC_fraBackup_txtTimeLeft, &fraBackup::txtTimeLeft_KeyPress};
    gui::CommandButton cmdEnableBackup{*this, IDC_fraBackup_cmdEnableBackup,
                                       &fraBackup::cmdEnableBackup_Click};
    gui::CommandButton cmdResetTimer{*this, IDC_fraBackup_cmdResetTimer, &fraBackup::cmdResetTimer_Click};
    gui::CommandButton cmdCheckBackup{*this, IDC_fraBackup_cmdCheckBackup, &fraBackup::cmdCheckBackup_Click};

    gui::CommandButton cmdCancelBackup{*this, IDC_fraBackup_cmdCancelBackup,
                                       &fraBackup::cmdCancelBackup_Click};

    gui::TextBox txtBackupMinutes{*this, IDC_fraBackup_txtBackupMinutes};
    gui::TextBox txtBackupDuration{*this, IDC_fraBackup_txtBackupDuration};
    gui::TextBox txtNumOfBackup{*this, IDC_fraBackup_txtNumOfBackup};
    gui::CheckBox chkShutdownServers{*this, IDC_fraBackup_chkShutdownServers};

    gui::CheckBox chkBackupMessage{*this, IDC_fraBackup_chkBackupMessage};
    gui::TextBox txtBackupMessageInterval{*this, IDC_fraBackup_txtBackupMessageInterval};
    gui::TextBox txtBackupMessageTimes{*this, IDC_fraBackup_txtBackupMessageTimes};
    gui::TextBox txtBackupMessage{*this, IDC_fraBackup_txtBackupMessage};

    gui::CommandButton cmdBackupFiles{*this, IDC_fraBackup_cmdBackupFiles, &fraBackup::cmdBackupFiles_Click};
    gui::CommandButton cmdBackupDatabase{*this, IDC_fraBackup_cmdBackupDatabase,
                                         &fraBackup::cmdBackupDatabase_Click};
    // A restore is made by hand with MySQL's own tools; these two have no action.
    gui::CommandButton cmdRestoreFiles{*this, IDC_fraBackup_cmdRestoreFiles};
    gui::CommandButton cmdRestoreDatabase{*this, IDC_fraBackup_cmdRestoreDatabase};

    gui::Timer tmrBackup{*this, std::chrono::seconds(1), &fraBackup::tmrBackup_Timer, false};

    /// While a backup is being made.
    gui::Timer tmrWaiting{*this, std::chrono::seconds(1), &fraBackup::tmrWaiting_Timer, false};

    clsMySQLCopyDatabase SQLCopyTable;
    supervision::BackupClock clock;

    /// Replaces the three databases by their copies on the backup server. Nothing calls it: a restore is the
    /// operator's decision and work. Raises database::Error.
    gui::Task<> RestoreDatabase();

    /// Asks whether servers that a backup has shut down are to be started now, where there are any; a backup
    /// by hand starts them itself, unless the panel is `closing`.
    gui::Task<> OfferStart(bool closing);

    /// What to ask before the panel is closed in the middle of a remote copy; "" when none would be lost.
    std::string ClosingQuestion() const;
    /// The same before the tool is left, also when servers are down for a backup.
    std::string LeavingQuestion() const;
    /// The panel is about to go, or the Windows session, or one after the other: writes into the log, once,
    /// what that leaves unfinished.
    void NoteClosing();

    /// What the last backup that was proven said, with its time; "" when there was none.
    const std::string& LastProven() const { return lastProven_; }

    /// What the controls say now.
    supervision::BackupSettings Settings() const;

private:
    void Form_Load() override;
    void txtTimeLeft_KeyPress(int& key) { key = 0; }
    gui::Task<> cmdEnableBackup_Click();
    gui::Task<> cmdResetTimer_Click();
    gui::Task<> cmdCheckBackup_Click() { return Check(true); }
    gui::Task<> cmdBackupFiles_Click() { return BackupByHand(&fraBackup::FileBackupByHand); }
    gui::Task<> cmdBackupDatabase_Click() { return BackupByHand(&fraBackup::RemoteBackupByHand); }
    gui::Task<> cmdCancelBackup_Click();
    void tmrBackup_Timer();
    void tmrWaiting_Timer();

    class Copying;
    class Making;
    using Maker = gui::Task<> (fraBackup::*)();
    /// The time in which the timed backup has the servers down.
    struct Phase {
        modServerControl::BackupPhase mark;
        modServerControl::Predecessors closed;
    };

    gui::Task<> Check(bool asked);
    long SecondsDue();
    gui::Task<bool> Act(supervision::BackupAction action, supervision::BackupSettings settings);
    gui::Task<> TimedBackup(bool shutdownServers);
    gui::Task<> BackupByHand(Maker maker);
    gui::Task<> Make(Maker maker);
    gui::Task<> ActOrReport(supervision::BackupAction action, supervision::BackupSettings settings);
    gui::Task<> FileBackupByHand();
    gui::Task<> RemoteBackupByHand() { return RemoteBackup(true); }
    gui::Task<std::string> FileBackup();
    gui::Task<> RemoteBackup(bool ask);
    gui::Task<bool> MayReplace(std::string database, std::string copy, bool ask);
    void ShowEnabled();
    void ShowProven(const std::string& text);
    void ShowResult(const std::string& text);
    void ReportOnce(const RuntimeError& error, supervision::BackupAction action);
    void ReportFailedBackup(const RuntimeError& error);
    void Report(const RuntimeError& error);

    PanelState& state_;
    gui::MenuItem& mnuEnableBackup_;
    bool copying_ = false;
    bool byClock_ = false; ///< whose backup it is
    std::optional<Phase> phase_;
    /// While a backup by hand has the servers down.
    std::optional<modServerControl::Predecessors> closedByHand_;
    /// What is left when the backup under way is ended; "" when none is.
    std::string unfinished_;
    Making* making_ = nullptr; ///< the backup under way
    /// In a phase whose backup was cancelled none is made at every tick.
    bool phaseCancelled_ = false;
    std::string result_;
    bool closingNoted_ = false;
    bool replacing_ = false; ///< the copy on the backup server is not whole at this moment
    /// What a failure of the backup under way keeps from being done.
    std::string skipped_;
    /// What the last tick failed with.
    std::string failure_;
    std::string lastProven_;
    /// What was written into the log in this cycle.
    std::set<std::string> logged_;
    bool heldUp_ = false;    ///< the ticks from here on may have been held up by a backup
    ULONGLONG lastTick_ = 0; ///< 0: none since the backup was enabled
};
