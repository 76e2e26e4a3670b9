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

/// The control panel's page for the automatic backup and for backups by hand.
class fraBackup final : public gui::TabPage {
public:
    fraBackup(gui::TabPanel& panel, PanelState& state, gui::MenuItem& enableBackup)
        : TabPage(panel, IDD_fraBackup), state_(state), mnuEnableBackup_(enableBackup) {}

    gui::Label lblBackupStatus{*this, IDC_fraBackup_lblBackupStatus};
    gui::TextBox txtTimeLeft{*this, IDC_fraBackup_txtTimeLeft, &fraBackup::txtTimeLeft_KeyPress};
    gui::CommandButton cmdEnableBackup{*this, IDC_fraBackup_cmdEnableBackup,
                                       &fraBackup::cmdEnableBackup_Click};
    gui::CommandButton cmdResetTimer{*this, IDC_fraBackup_cmdResetTimer, &fraBackup::cmdResetTimer_Click};

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

    clsMySQLCopyDatabase SQLCopyTable;
    supervision::BackupClock clock;

    /// Replaces the three databases by their copies on the backup server. Nothing calls it: a restore is the
    /// operator's decision and work. Raises database::Error.
    gui::Task<> RestoreDatabase();

    /// Asks whether servers that a backup has shut down are to be started now, where there are any; a backup
    /// by hand starts them itself, unless the panel is `closing`.
    gui::Task<> OfferStart(bool closing);

    /// What the controls say now.
    supervision::BackupSettings Settings() const;

private:
    void Form_Load() override;
    void txtTimeLeft_KeyPress(int& key) { key = 0; }
    gui::Task<> cmdEnableBackup_Click();
    gui::Task<> cmdResetTimer_Click();
    gui::Task<> cmdBackupFiles_Click() { return BackupByHand(&fraBackup::FileBackup); }
    gui::Task<> cmdBackupDatabase_Click() { return BackupByHand(&fraBackup::RemoteBackup); }
    void tmrBackup_Timer();

    class Copying;
    using Making = gui::Task<> (fraBackup::*)();
    /// The time in which the timed backup has the servers down.
    struct Phase {
        modServerControl::BackupPhase mark;
        modServerControl::Predecessors closed;
    };

    gui::Task<bool> Act(supervision::BackupAction action, supervision::BackupSettings settings);
    gui::Task<> TimedBackup(bool shutdownServers);
    gui::Task<> BackupByHand(Making backup);
    gui::Task<> Make(Making backup);
    gui::Task<> ActOrReport(supervision::BackupAction action, supervision::BackupSettings settings);
    gui::Task<> FileBackup();
    gui::Task<> RemoteBackup();
    void ShowEnabled();
    void ReportOnce(const RuntimeError& error, supervision::BackupAction action);
    void ReportFailedBackup(const RuntimeError& error);
    void Report(const RuntimeError& error);

    PanelState& state_;
    gui::MenuItem& mnuEnableBackup_;
    bool copying_ = false;
    std::optional<Phase> phase_;
    /// While a backup by hand has the servers down.
    std::optional<modServerControl::Predecessors> closedByHand_;
    /// What the last tick failed with.
    std::string failure_;
};
