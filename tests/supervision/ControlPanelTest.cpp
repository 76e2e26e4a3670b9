#include "Panel.h"

#include "supervision/frmIPDetection.h"
#include "support/Tray.h"

namespace {

using namespace settings::key;
using common::ReadFileText;

TEST_F(Panel, WritesItsSettingsInTheirOrderWhenItCloses) {
    support::WriteFile(kTools.INIPath(), "DynamicHostname=10.1.2.3\r\nIPDetectionMethod=1\r\n"
                                         "BackupMessage= soon = now \r\nEnableErrorDetector=7\r\n"
                                         "LogFilename=..\\a:b?\r\nDialogsOptions=2\r\nMaintainServer=x\r\n");
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    ASSERT_TRUE(panel.Loaded());
    EXPECT_TRUE(panel.errorDetector.optRestartAllPopup.Value());
    EXPECT_TRUE(panel.errorDetector.tmrErrorDetector.Enabled());
    panel.backup.txtBackupMinutes.Text("1 hour");
    panel.cmdCloseWindow.Press();
    EXPECT_FALSE(panel.Loaded());
    EXPECT_EQ(ReadFileText(kTools.INIPath()),
              "DynamicHostname=10.1.2.3\r\nIPDetectionMethod=1\r\nBackupMessage= soon = now \r\n"
              "EnableErrorDetector=1\r\nLogFilename=..\\a:b?\r\nDialogsOptions=1\r\nMaintainServer=0\r\n"
              "BackupDuration=\r\nBackupPeriod=1 hour\r\nMaxArchivedBackups=\r\nBackupMessageInterval=\r\n"
              "BackupMessageRepeats=\r\nSendMessageBeforeBackup=0\r\nShutdownOnBackup=0\r\n"
              "ErrorCheckingInterval=\r\nSendErrorMessagetoPlayers=0\r\nErrorMessage=\r\nLogErrorPopups=0\r\n"
              "MaintainLoginServer=0\r\nMaintainCharacterServer=0\r\nMaintainZoneServer=0\r\n"
              "HandleDialogs=0\r\nCheckIPChanges=0\r\nModifyINIonIPChange=0\r\nRestartOnIPChange=0\r\n"
              "SendMessageOnIPChange=0\r\nMessageOnIPChange=\r\n");
}

TEST_F(Panel, LosesNothingTypedAndLeavesADamagedFileAlone) {
    support::MessageBoxes boxes;
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    panel.connections.txtMessageIPChange.Text("moving");
    common::FileHandle lock(
        CreateFileA(kTools.INIPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    boxes.Answer(IDRETRY).Answer(IDRETRY, [&] { lock.reset(); });
    panel.Unload();
    EXPECT_TRUE(support::Settle());
    ASSERT_EQ(boxes.Seen().size(), 2u);
    EXPECT_TRUE(boxes.Texts()[0].starts_with("Kerno Tools Error :: [70] Permission denied"));
    EXPECT_EQ(kTools.INIProperty(kMessageOnIPChange), "moving");

    support::WriteFile(kTools.INIPath(), "");
    panel.Load();
    EXPECT_TRUE(support::Settle());
    EXPECT_FALSE(panel.Loaded());
    EXPECT_EQ(boxes.Texts().back(), "Kerno Tools Error :: [62] Input past end of file");
    EXPECT_EQ(ReadFileText(kTools.INIPath()), "");
}

TEST_F(Panel, CheckBoxesTakeTheirConsequencesWithThem) {
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    auto& e = panel.errorDetector;
    auto& c = panel.connections;
    const struct {
        gui::CheckBox& box;
        std::vector<gui::Control*> follow;
        gui::MenuItem* twin = nullptr;
    } cases[] = {
        {e.chkErrorDetector, {&e.txtErrorCheckInterval}, &panel.mnuEnableErrorDetector},
        {e.chkHandlePopups, {&e.optIgnorePopup, &e.optRestartAllPopup}, &panel.mnuClosePopups},
        {e.chkCheckServerProcesses, {&e.chkLoginServer, &e.chkZoneServer}, &panel.mnuCheckProcesses},
        {e.chkLogError, {&e.txtLogFilename, &e.lblErrorLogsFilename}},
        {e.chkSendMessage, {&e.txtErrorMessage, &e.lblErrorMessage}},
        {c.chkSendMessageIPChange, {&c.txtMessageIPChange, &c.lblMessagetoPlayers}},
        {c.chkOnIPChanges, {&c.chkModifyAshMelder, &c.chkRestartServer}},
        {c.chkRestartServer, {&c.chkSendMessageIPChange}},
    };
    for (const bool on : {false, true, false}) {
        for (const auto& [box, follow, twin] : cases) {
            if (box.Value() != on && twin)
                twin->Choose();
            else if (box.Value() != on)
                SendMessageA(box.Window(), BM_CLICK, 0, 0);
            EXPECT_EQ(box.Value(), on) << box.Id();
            for (const gui::Control* control : follow)
                EXPECT_EQ(control->Enabled(), on) << box.Id() << " " << control->Id();
            if (twin) {
                EXPECT_TRUE(twin->Caption().starts_with(on ? "Disable " : "Enable "));
            }
        }
        EXPECT_EQ(e.tmrErrorDetector.Enabled(), on);
    }
}

TEST_F(Panel, TheFootTellsOfARestarterOnlyWhereItHasAServerToLookAfter) {
    TurnOn({kEnableErrorDetector, kMaintainServer});
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    for (const bool zone : {false, true}) {
        panel.errorDetector.chkZoneServer.Value(zone);
        panel.tmrTonight.Tick();
        const std::string told = panel.lblTonight.Caption();
        EXPECT_EQ(told.find("stopped servers are restarted") != told.npos, zone) << told;
    }
}

TEST_F(Panel, EnablesAndResetsTheBackup) {
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    fraBackup& backup = panel.backup;
    backup.txtBackupMinutes.Text("60");
    backup.tmrBackup.Tick();
    EXPECT_EQ(backup.txtTimeLeft.Text(), "59");
    for (const std::string state : {"Disable", "Enable"}) {
        panel.mnuEnableBackup.Choose();
        EXPECT_EQ(backup.tmrBackup.Enabled(), state == "Disable");
        EXPECT_EQ(backup.cmdEnableBackup.Caption(), state + " Backup");
        EXPECT_EQ(panel.mnuEnableBackup.Caption(), state + " AutoBackup");
        EXPECT_EQ(backup.clock.BackupSeconds(), 1);
    }
    panel.mnuResetTimer.Choose();
    EXPECT_EQ(backup.clock.BackupSeconds(), 0);
}

TEST_F(Panel, ShowsBothAddressesAndLetsNobodyTypeOverThem) {
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    fraConnections& page = panel.connections;
    for (const auto& [method, host, shown] : {std::array{"1", "10.9.8.7", "10.9.8.7"},
                                              {"1", "nobody.invalid", "IP Detection Failed"},
                                              {"2", "10.9.8.7", "IP Detection Failed"}}) {
        Set({{kIPDetectionMethod, method}, {kDynamicHostname, host}});
        panel.Load();
        for (gui::TextBox* box : {&page.txtDetectedIPAddress, &page.txtCurrentIPAddress})
            SendMessageA(box->Window(), WM_CHAR, '7', 0);
        EXPECT_EQ(page.txtDetectedIPAddress.Text(), shown);
        EXPECT_EQ(page.txtCurrentIPAddress.Text(), "10.1.2.3");
        panel.Unload();
    }
}

TEST_F(Panel, MinimisedItWorksOnBehindItsIcon) {
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Show();
    panel.backup.txtBackupMinutes.Text("60");
    panel.cmdMinimizetoTray.Press();
    EXPECT_FALSE(panel.Visible());
    EXPECT_TRUE(support::HasTrayIcon(panel));
    kTools.INIProperty(kDynamicHostname, "10.9.8.7");
    kerno.INIProperty("IP", "10.4.4.4");
    panel.connections.tmrMonitorIP.Tick();
    panel.backup.tmrBackup.Tick();
    EXPECT_EQ(panel.connections.txtDetectedIPAddress.Text(), "10.9.8.7");
    EXPECT_EQ(panel.connections.txtCurrentIPAddress.Text(), "10.4.4.4");
    EXPECT_EQ(panel.backup.txtTimeLeft.Text(), "59");
    // The position of the press is the icon's message; the icon stays, for the next time.
    SendMessageA(panel.Window(), WM_LBUTTONDOWN, 1, modSystemTray::kTrayDoubleClick);
    EXPECT_TRUE(panel.Visible());
    EXPECT_EQ(panel.State(), gui::WindowState::Normal);
    panel.Unload();
    panel.Load();
    EXPECT_FALSE(support::HasTrayIcon(panel));
    // A task bar that takes no icon, and one that is made anew.
    panel.Show();
    for (const bool takes : {false, true}) {
        support::TaskBar taskBar;
        taskBar.takesIcons = takes;
        panel.State(gui::WindowState::Minimized);
        EXPECT_EQ(panel.Visible(), !takes);
        taskBar.takesIcons = true;
        taskBar.added = 0;
        SendMessageA(panel.Window(), RegisterWindowMessageA("TaskbarCreated"), 0, 0);
        EXPECT_EQ(taskBar.added, takes);
        panel.State(gui::WindowState::Normal);
    }
}

TEST(CheckInterval, IsWhatATimerCanWait) {
    for (const auto& [text, milliseconds] :
         {std::pair(" 2.5 apples", 2500L), {"soon", 0L}, {"-1", 0L}, {"9e999", long{USER_TIMER_MAXIMUM}}})
        EXPECT_EQ(supervision::CheckInterval(text).count(), milliseconds) << text;
}

TEST_F(Panel, TheSettingsDialogWritesInOrder) {
    const std::string before = "ServerDetectionMethod=9\r\nBackupOption=x\r\n";
    support::WriteFile(kTools.INIPath(), before);
    frmIPDetection dialog;
    dialog.Load();
    EXPECT_TRUE(dialog.optBackupFilesOnly.Value());
    dialog.cmdCancel.Press();
    EXPECT_EQ(ReadFileText(kTools.INIPath()), before);
    Set({{kBackupOption, "7"}});
    dialog.Load();
    EXPECT_FALSE(dialog.txtDynamicHost.Enabled());
    dialog.optDynamicHostname.Value(true);
    EXPECT_TRUE(dialog.txtDynamicHost.Enabled());
    dialog.txtDynamicHost.Text("home.example");
    dialog.txtBackupPassword.Text("pa ss=");
    dialog.cmdOK.Press();
    EXPECT_EQ(ReadFileText(kTools.INIPath()),
              "ServerDetectionMethod=9\r\nBackupOption=2\r\nIPDetectionMethod=1\r\n"
              "DynamicHostname=home.example\r\nBackupHostname=\r\nBackupUsername=\r\n"
              "BackupPassword=pa ss=\r\n");
}

} // namespace
