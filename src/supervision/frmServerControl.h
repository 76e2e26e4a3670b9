#pragma once

#include "supervision/frmServerControl.ids.h"
#include "supervision/PanelSettings.h"

/// The control panel: supervision of the servers and automatic backups. All of it goes on while the panel is
/// open, in the tray too, and ends with it.
class frmServerControl final : public gui::Form {
public:
    frmServerControl() : Form(IDD_frmServerControl) {}

    gui::PopupMenu mnuPopup{*this, IDR_frmServerControl_mnuPopup};
    gui::MenuItem mnuBackupFiles{*this, IDM_frmServerControl_mnuBackupFiles,
                                 &frmServerControl::mnuBackupFiles_Click};
    gui::MenuItem mnuBackupDatabase{*this, IDM_frmServerControl_mnuBackupDatabase,
                                    &frmServerControl::mnuBackupDatabase_Click};
    gui::MenuItem mnuEnableBackup{*this, IDM_frmServerControl_mnuEnableBackup,
                                  &frmServerControl::mnuEnableBackup_Click};
    gui::MenuItem mnuResetTimer{*this, IDM_frmServerControl_mnuResetTimer,
                                &frmServerControl::mnuResetTimer_Click};
    gui::MenuItem mnuEnableErrorDetector{*this, IDM_frmServerControl_mnuEnableErrorDetector,
                                         &frmServerControl::mnuEnableErrorDetector_Click};
    gui::MenuItem mnuClosePopups{*this, IDM_frmServerControl_mnuClosePopups,
                                 &frmServerControl::mnuClosePopups_Click};
    gui::MenuItem mnuCheckProcesses{*this, IDM_frmServerControl_mnuCheckProcesses,
                                    &frmServerControl::mnuCheckProcesses_Click};
    gui::MenuItem mnuSettings{*this, IDM_frmServerControl_mnuSettings, &frmServerControl::mnuSettings_Click};
    gui::MenuItem mnuExit{*this, IDM_frmServerControl_mnuExit, &frmServerControl::mnuExit_Click};

    PanelState state;
    /// Works with Kerno.ini in the present folder of the servers from now on.
    void UseServerFolder();

    gui::TabPanel mstServerControl{*this, IDC_frmServerControl_mstServerControl};
    fraConnections connections{mstServerControl, state};
    fraBackup backup{mstServerControl, state, mnuEnableBackup};
    fraErrorDetector errorDetector{
        mstServerControl, state, {mnuEnableErrorDetector, mnuClosePopups, mnuCheckProcesses}};

    /// What goes on while nobody looks.
    gui::Label lblTonight{*this, IDC_frmServerControl_lblTonight};
    gui::CommandButton cmdMinimizetoTray{*this, IDC_frmServerControl_cmdMinimizetoTray,
                                         &frmServerControl::cmdMinimizetoTray_Click};
    gui::CommandButton cmdCloseWindow{*this, IDC_frmServerControl_cmdCloseWindow,
                                      &frmServerControl::cmdCloseWindow_Click};
    gui::CommandButton cmdJournal{*this, IDC_frmServerControl_cmdJournal,
                                  &frmServerControl::cmdJournal_Click};

    /// Kerno.ini may change under the panel, so it is looked at now and then.
    gui::Timer tmrTonight{*this, std::chrono::seconds(5), &frmServerControl::ShowTonight};

private:
    void Form_Load() override;
    gui::Task<bool> Form_QueryUnload() override;
    void Form_EndSession() override;
    void Form_Going() override;
    void Form_Resize() override;
    void Form_MouseDown(gui::MouseButton button, int x, int y) override;
    void Form_TaskbarCreated() override;
    void Form_Error(const RuntimeError& error) override;

    void ShowTonight();
    void cmdMinimizetoTray_Click() { State(gui::WindowState::Minimized); }
    void cmdCloseWindow_Click() { Unload(); }
    gui::Task<> cmdJournal_Click();

    void mnuBackupFiles_Click() { backup.cmdBackupFiles.Press(); }
    void mnuBackupDatabase_Click() { backup.cmdBackupDatabase.Press(); }
    void mnuEnableBackup_Click() { backup.cmdEnableBackup.Press(); }
    void mnuResetTimer_Click() { backup.cmdResetTimer.Press(); }
    void mnuEnableErrorDetector_Click() { Toggle(errorDetector.chkErrorDetector); }
    void mnuClosePopups_Click() { Toggle(errorDetector.chkHandlePopups); }
    void mnuCheckProcesses_Click() { Toggle(errorDetector.chkCheckServerProcesses); }
    void mnuSettings_Click() { connections.cmdIPDetectionSettings.Press(); }
    void mnuExit_Click() { Unload(); }

    static void Toggle(gui::CheckBox& box) { box.Value(!box.Value()); }
    std::optional<RuntimeError> SaveSettings();

    bool inTray_ = false;
    supervision::PanelSettings settings_{state.kTools, backup, errorDetector, connections};
};
