#pragma once

#include "accounts/frmAccountEditor.h"
#include "app/frmMainMenu.ids.h"
#include "app/ServerMenu.h"
#include "config/frmServerSettings.h"
#include "config/frmServerStatus.h"
#include "dbsetup/frmMySQLSetUp.h"
#include "gui/Control.h"
#include "gui/FormSlot.h"
#include "gui/Menu.h"
#include "gui/TaskWaits.h"
#include "gui/Timer.h"
#include "servers/modServerControl.h"
#include "settings/clsINI.h"
#include "supervision/frmServerControl.h"

/// The tool's first and central window: opens the others, and carries the tray icon whose menu drives the
/// servers. Unloading it ends the tool; the servers keep running.
class frmMainMenu final : public gui::Form {
public:
    /// `previousInstance`: another copy of the tool runs already, which the user is asked about.
    explicit frmMainMenu(bool previousInstance)
        : Form(IDD_frmMainMenu), previousInstance_(previousInstance) {}

    /// Points the open windows that hold the servers' folder to the present one, and tells which.
    void UseServerFolder();
    /// The configurator, while it is open.
    frmServerSettings* Configurator() { return serverSettings_.Peek(); }

    gui::CommandButton cmdAccountEditor{*this, IDC_frmMainMenu_cmdAccountEditor,
                                        &frmMainMenu::cmdAccountEditor_Click};
    gui::CommandButton cmdServerControl{*this, IDC_frmMainMenu_cmdServerControl,
                                        &frmMainMenu::cmdServerControl_Click};
    gui::CommandButton cmdMinimizetoTray{*this, IDC_frmMainMenu_cmdMinimizetoTray,
                                         &frmMainMenu::cmdMinimizetoTray_Click};
    gui::CommandButton cmdServerConfig{*this, IDC_frmMainMenu_cmdServerConfig,
                                       &frmMainMenu::cmdServerConfig_Click};
    gui::CommandButton cmdServerStatus{*this, IDC_frmMainMenu_cmdServerStatus,
                                       &frmMainMenu::cmdServerStatus_Click};

    gui::PopupMenu mnuSystray{*this, IDR_frmMainMenu_mnuSystray};
    gui::MenuItem mnuSetPath{*this, IDM_frmMainMenu_mnuSetPath, &frmMainMenu::mnuSetPath_Click};
    gui::MenuItem mnuSetSQLPath{*this, IDM_frmMainMenu_mnuSetSQLPath, &frmMainMenu::mnuSetSQLPath_Click};
    gui::MenuItem mnuSetUpMySQL{*this, IDM_frmMainMenu_mnuSetUpMySQL, &frmMainMenu::mnuSetUpMySQL_Click};
    gui::MenuItem mnuAbout{*this, IDM_frmMainMenu_mnuAbout, &frmMainMenu::mnuAbout_Click};
    gui::MenuItem mnuHelp{*this, IDM_frmMainMenu_mnuHelp, &frmMainMenu::mnuHelp_Click};
    gui::MenuItem mnuStartKerno{*this, IDM_frmMainMenu_mnuStartKerno, &frmMainMenu::mnuStartKerno_Click};
    gui::MenuItem mnuShutdownKerno{*this, IDM_frmMainMenu_mnuShutdownKerno,
                                   &frmMainMenu::mnuShutdownKerno_Click};
    gui::MenuItem mnuRestartKerno{*this, IDM_frmMainMenu_mnuRestartKerno,
                                  &frmMainMenu::mnuRestartKerno_Click};
    gui::MenuItem mnuStartLogin{*this, IDM_frmMainMenu_mnuStartLogin, &frmMainMenu::mnuStartLogin_Click};
    gui::MenuItem mnuStartCharacter{*this, IDM_frmMainMenu_mnuStartCharacter,
                                    &frmMainMenu::mnuStartCharacter_Click};
    gui::MenuItem mnuStartZone{*this, IDM_frmMainMenu_mnuStartZone, &frmMainMenu::mnuStartZone_Click};
    gui::MenuItem mnuShutdownLogin{*this, IDM_frmMainMenu_mnuShutdownLogin,
                                   &frmMainMenu::mnuShutdownLogin_Click};
    gui::MenuItem mnuShutdownCharacter{*this, IDM_frmMainMenu_mnuShutdownCharacter,
                                       &frmMainMenu::mnuShutdownCharacter_Click};
    gui::MenuItem mnuShutdownZone{*this, IDM_frmMainMenu_mnuShutdownZone,
                                  &frmMainMenu::mnuShutdownZone_Click};
    gui::MenuItem mnuRestartLogin{*this, IDM_frmMainMenu_mnuRestartLogin,
                                  &frmMainMenu::mnuRestartLogin_Click};
    gui::MenuItem mnuRestartCharacter{*this, IDM_frmMainMenu_mnuRestartCharacter,
                                      &frmMainMenu::mnuRestartCharacter_Click};
    gui::MenuItem mnuRestartZone{*this, IDM_frmMainMenu_mnuRestartZone, &frmMainMenu::mnuRestartZone_Click};
    gui::MenuItem mnuShowKerno{*this, IDM_frmMainMenu_mnuShowKerno, &frmMainMenu::mnuShowKerno_Click};
    gui::MenuItem mnuHideKerno{*this, IDM_frmMainMenu_mnuHideKerno, &frmMainMenu::mnuHideKerno_Click};
    gui::MenuItem mnuShowLogin{*this, IDM_frmMainMenu_mnuShowLogin, &frmMainMenu::mnuShowLogin_Click};
    gui::MenuItem mnuShowCharacter{*this, IDM_frmMainMenu_mnuShowCharacter,
                                   &frmMainMenu::mnuShowCharacter_Click};
    gui::MenuItem mnuShowZone{*this, IDM_frmMainMenu_mnuShowZone, &frmMainMenu::mnuShowZone_Click};
    gui::MenuItem mnuHideLogin{*this, IDM_frmMainMenu_mnuHideLogin, &frmMainMenu::mnuHideLogin_Click};
    gui::MenuItem mnuHideCharacter{*this, IDM_frmMainMenu_mnuHideCharacter,
                                   &frmMainMenu::mnuHideCharacter_Click};
    gui::MenuItem mnuHideZone{*this, IDM_frmMainMenu_mnuHideZone, &frmMainMenu::mnuHideZone_Click};
    gui::MenuItem mnuServerStatus{*this, IDM_frmMainMenu_mnuServerStatus,
                                  &frmMainMenu::mnuServerStatus_Click};
    gui::MenuItem mnuServerConfig{*this, IDM_frmMainMenu_mnuServerConfig,
                                  &frmMainMenu::mnuServerConfig_Click};
    gui::MenuItem mnuServerControl{*this, IDM_frmMainMenu_mnuServerControl,
                                   &frmMainMenu::mnuServerControl_Click};
    gui::MenuItem mnuAccountEditor{*this, IDM_frmMainMenu_mnuAccountEditor,
                                   &frmMainMenu::mnuAccountEditor_Click};
    gui::MenuItem mnuMenuMain{*this, IDM_frmMainMenu_mnuMenuMain, &frmMainMenu::mnuMenuMain_Click};
    gui::MenuItem mnuExit{*this, IDM_frmMainMenu_mnuExit, &frmMainMenu::mnuExit_Click};

    /// The questions of the start are answered and the settings read: the window may be shown.
    gui::Event Started;
    // While the icon shows, its text follows the servers.
    gui::Timer tmrTray{*this, std::chrono::seconds(1), &frmMainMenu::tmrTray_Timer, false};

    /// Instead of Show: goes to the tray, and has the control panel open there. For the start with Windows.
    void Supervise();

private:
    using Server = modServerControl::Server;

    void Form_Load() override;
    gui::Task<bool> Form_QueryUnload() override;
    void Form_Unload() override;
    void Form_Going() override;
    void Form_MouseDown(gui::MouseButton button, int x, int y) override;
    void Form_TaskbarCreated() override;
    void Form_Error(const RuntimeError& error) override;

    void cmdAccountEditor_Click();
    void cmdServerControl_Click();
    void cmdMinimizetoTray_Click();
    void cmdServerConfig_Click();
    void cmdServerStatus_Click();

    gui::Task<> StartServer(Server server);
    void tmrTray_Timer();
    gui::Task<> mnuSetPath_Click();
    gui::Task<> mnuSetSQLPath_Click();
    void mnuSetUpMySQL_Click();
    gui::Task<> mnuAbout_Click();
    void mnuHelp_Click();

    gui::Task<> mnuStartKerno_Click() { return servers_.StartKerno(); }
    gui::Task<> mnuShutdownKerno_Click() { return servers_.ShutdownKerno(); }
    gui::Task<> mnuRestartKerno_Click() { return servers_.RestartKerno(); }
    gui::Task<> mnuStartLogin_Click() { return StartServer(Server::Login); }
    gui::Task<> mnuStartCharacter_Click() { return StartServer(Server::Character); }
    gui::Task<> mnuStartZone_Click() { return StartServer(Server::Zone); }
    gui::Task<> mnuShutdownLogin_Click() { return servers_.Shutdown(Server::Login); }
    gui::Task<> mnuShutdownCharacter_Click() { return servers_.Shutdown(Server::Character); }
    gui::Task<> mnuShutdownZone_Click() { return servers_.Shutdown(Server::Zone); }
    gui::Task<> mnuRestartLogin_Click() { return servers_.Restart(Server::Login); }
    gui::Task<> mnuRestartCharacter_Click() { return servers_.Restart(Server::Character); }
    gui::Task<> mnuRestartZone_Click() { return servers_.Restart(Server::Zone); }
    void mnuShowKerno_Click() { servers_.ShowKerno(); }
    void mnuHideKerno_Click() { servers_.HideKerno(); }
    void mnuShowLogin_Click() { modServerControl::ShowLoginServer(); }
    void mnuShowCharacter_Click() { modServerControl::ShowCharacterServer(); }
    void mnuShowZone_Click() { modServerControl::ShowZoneServer(); }
    void mnuHideLogin_Click() { modServerControl::HideLoginServer(); }
    void mnuHideCharacter_Click() { modServerControl::HideCharacterServer(); }
    void mnuHideZone_Click() { modServerControl::HideZoneServer(); }
    void mnuServerStatus_Click() { cmdServerStatus_Click(); }
    void mnuServerConfig_Click() { cmdServerConfig_Click(); }
    void mnuServerControl_Click() { cmdServerControl_Click(); }
    void mnuAccountEditor_Click() { cmdAccountEditor_Click(); }
    void mnuMenuMain_Click();
    void mnuExit_Click();

    gui::Task<> StartUp();
    gui::Task<> LoadSharedSettings();
    void MakeDataFolders();
    void Restore();

    bool previousInstance_;
    bool inTray_ = false;
    clsINI kTools_;
    ServerMenu servers_{*this, kTools_};
    gui::FormSlot<frmMySQLSetUp> mySQLSetUp_;
    gui::FormSlot<frmServerControl> serverControl_;
    gui::FormSlot<frmAccountEditor> accountEditor_;
    gui::FormSlot<frmServerStatus> serverStatus_;
    gui::FormSlot<frmServerSettings> serverSettings_;
};

/// Shows the main window of another copy of the tool, out of the tray if it is there.
void BringOtherCopyToFront();
