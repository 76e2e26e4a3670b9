#include "Panel.h"

#include "supervision/frmIPDetection.h"
#include "support/MessageBoxes.h"

namespace {

using namespace settings::key;
using common::ReadFileText;

TEST_F(Panel, WritesItsSettingsInTheirOrderWhenItCloses) {
    support::WriteFile(kTools.INIPath(), "DynamicHostname=10.1.2.3\r\nIPDetectionMethod=1\r\n"
                                         "BackupMessage= soon = now \r\nEnableErrorDetector=7\r\n"
                                         "LogFilename=..\\a:b?\r\nDialogsOptions=2\r\nMaintainServer=x\r\n");
    frmServerControl panel;
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

TEST_F(Panel, LosesNothingTypedWhenTheSettingsCannotBeWritten) {
    support::MessageBoxes boxes;
    frmServerControl panel;
    panel.Load();
    panel.connections.txtMessageIPChange.Text("moving");
    common::FileHandle lock(
        CreateFileA(kTools.INIPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    boxes.Answer(IDRETRY).Answer(IDRETRY, [&] { lock.reset(); });
    panel.Unload();
    ASSERT_EQ(boxes.Seen().size(), 2u);
    EXPECT_TRUE(boxes.Texts()[0].starts_with("Kerno Tools Error :: [70] Permission denied"));
    EXPECT_EQ(kTools.INIProperty(kMessageOnIPChange), "moving");
}

TEST_F(Panel, LeavesADamagedFileAlone) {
    support::MessageBoxes boxes;
    support::WriteFile(kTools.INIPath(), "");
    frmServerControl panel;
    panel.Load();
    EXPECT_FALSE(panel.Loaded());
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{"Kerno Tools Error :: [62] Input past end of file"});
    EXPECT_EQ(ReadFileText(kTools.INIPath()), "");
}

TEST_F(Panel, CheckBoxesTakeTheirConsequencesWithThem) {
    frmServerControl panel;
    panel.Load();
    fraErrorDetector& detector = panel.errorDetector;
    fraConnections& connections = panel.connections;
    struct Case {
        gui::CheckBox& box;
        std::vector<gui::Control*> controls;
        gui::MenuItem* twin = nullptr;
        std::string name = {};
    };
    const Case cases[] = {
        {detector.chkErrorDetector,
         {&detector.txtErrorCheckInterval},
         &panel.mnuEnableErrorDetector,
         "Error Detector"},
        {detector.chkHandlePopups,
         {&detector.optIgnorePopup, &detector.optRestartAllPopup},
         &panel.mnuClosePopups,
         "Anti-Dialogs"},
        {detector.chkCheckServerProcesses,
         {&detector.chkLoginServer, &detector.chkCharacterServer, &detector.chkZoneServer},
         &panel.mnuCheckProcesses,
         "Server Restarter"},
        {detector.chkLogError, {&detector.txtLogFilename, &detector.lblErrorLogsFilename}},
        {detector.chkSendMessage, {&detector.txtErrorMessage, &detector.lblErrorMessage}},
        {connections.chkSendMessageIPChange,
         {&connections.txtMessageIPChange, &connections.lblMessagetoPlayers}},
        {connections.chkOnIPChanges, {&connections.chkModifyAshMelder, &connections.chkRestartServer}},
        {connections.chkRestartServer, {&connections.chkSendMessageIPChange}},
    };
    for (const bool on : {false, true, false}) {
        for (const Case& c : cases) {
            if (c.box.Value() != on && c.twin)
                SendMessageA(panel.Window(), WM_COMMAND, static_cast<WPARAM>(c.twin->Id()), 0);
            else if (c.box.Value() != on)
                SendMessageA(c.box.Window(), BM_CLICK, 0, 0);
            EXPECT_EQ(c.box.Value(), on) << c.box.Id();
            for (const gui::Control* control : c.controls)
                EXPECT_EQ(control->Enabled(), on) << c.box.Id() << " " << control->Id();
            if (c.twin) {
                EXPECT_EQ(c.twin->Caption(), (on ? "Disable " : "Enable ") + c.name);
            }
        }
        EXPECT_EQ(detector.tmrErrorDetector.Enabled(), on);
    }
}

TEST_F(Panel, EnablesAndResetsTheBackup) {
    frmServerControl panel;
    panel.Load();
    fraBackup& backup = panel.backup;
    backup.txtBackupMinutes.Text("60");
    backup.tmrBackup.Tick();
    EXPECT_EQ(backup.txtTimeLeft.Text(), "59");
    for (const bool on : {true, false}) {
        panel.mnuEnableBackup.Choose();
        EXPECT_EQ(backup.tmrBackup.Enabled(), on);
        EXPECT_EQ(backup.cmdEnableBackup.Caption(), on ? "Disable Backup" : "Enable Backup");
        EXPECT_EQ(panel.mnuEnableBackup.Caption(), on ? "Disable AutoBackup" : "Enable AutoBackup");
        EXPECT_EQ(panel.mnuEnableBackup.Checked(), on);
        EXPECT_EQ(backup.lblBackupStatus.Caption(), on ? "Backup is enabled" : "Backup is disabled");
        EXPECT_EQ(backup.clock.Seconds(), 1);
    }
    panel.mnuResetTimer.Choose();
    EXPECT_EQ(backup.clock.Seconds(), 0);
}

TEST_F(Panel, ShowsBothAddressesAndLetsNobodyTypeOverThem) {
    const struct {
        std::string method, host, shown;
    } cases[] = {{"1", "10.9.8.7", "10.9.8.7"},
                 {"1", "nobody.invalid", "IP Detection Failed"},
                 {"1", std::string(10'000, 'x'), "IP Detection Failed"},
                 {"2", "10.9.8.7", "IP Detection Failed"}};
    for (const auto& c : cases) {
        Set({{kIPDetectionMethod, c.method}, {kDynamicHostname, c.host}});
        frmServerControl panel;
        panel.Load();
        for (gui::TextBox* box : {&panel.connections.txtDetectedIPAddress,
                                  &panel.connections.txtCurrentIPAddress, &panel.backup.txtTimeLeft})
            SendMessageA(box->Window(), WM_CHAR, '7', 0);
        EXPECT_EQ(panel.connections.txtDetectedIPAddress.Text(), c.shown);
        EXPECT_EQ(panel.connections.txtCurrentIPAddress.Text(), "10.1.2.3");
        EXPECT_EQ(panel.backup.txtTimeLeft.Text(), "");
    }
}

TEST_F(Panel, HidesInTheTrayAndComesBack) {
    frmServerControl panel;
    panel.Show();
    panel.cmdMinimizetoTray.Press();
    EXPECT_TRUE(support::WaitUntil([&] { return !panel.Visible(); }));
    PostMessageA(panel.Window(), WM_LBUTTONDOWN, 1, WM_LBUTTONDBLCLK);
    EXPECT_TRUE(support::WaitUntil([&] { return panel.Visible(); }));
    EXPECT_EQ(panel.State(), gui::WindowState::Normal);
}

TEST(CheckInterval, IsWhatATimerCanWait) {
    const std::pair<const char*, long long> cases[] = {{"5", 5000},
                                                       {"2.5", 2500},
                                                       {" 12 apples", 12000},
                                                       {"", 0},
                                                       {"soon", 0},
                                                       {"0", 0},
                                                       {"-1", 0},
                                                       {"99999999", USER_TIMER_MAXIMUM},
                                                       {"9e999", USER_TIMER_MAXIMUM}};
    for (const auto& [text, milliseconds] : cases)
        EXPECT_EQ(supervision::CheckInterval(text).count(), milliseconds) << text;
}

TEST_F(Panel, TheSettingsDialogWritesInOrder) {
    support::WriteFile(kTools.INIPath(), "ServerDetectionMethod=9\r\nBackupOption=x\r\n");
    {
        frmIPDetection dialog;
        dialog.Load();
        EXPECT_FALSE(dialog.txtDynamicHost.Enabled());
        EXPECT_TRUE(dialog.optBackupFilesOnly.Value());
        dialog.optDynamicHostname.Value(true);
        EXPECT_TRUE(dialog.txtDynamicHost.Enabled());
        dialog.cmdCancel.Press();
        EXPECT_FALSE(dialog.Loaded());
    }
    EXPECT_EQ(ReadFileText(kTools.INIPath()), "ServerDetectionMethod=9\r\nBackupOption=x\r\n");
    Set({{kBackupOption, "7"}});
    frmIPDetection dialog;
    dialog.Load();
    dialog.optDynamicHostname.Value(true);
    dialog.txtDynamicHost.Text("home.example");
    dialog.txtBackupPassword.Text("pa ss=");
    dialog.cmdOK.Press();
    EXPECT_FALSE(dialog.Loaded());
    EXPECT_EQ(ReadFileText(kTools.INIPath()),
              "ServerDetectionMethod=9\r\nBackupOption=2\r\nIPDetectionMethod=1\r\n"
              "DynamicHostname=home.example\r\nBackupHostname=\r\nBackupUsername=\r\n"
              "BackupPassword=pa ss=\r\n");
}

} // namespace
