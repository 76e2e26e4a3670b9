#include "app/frmBrowse.h"
#include "app/frmMainMenu.h"
#include "app/frmSQLPath.h"
#include "servers/Processes.h"

#include "supervision/RestartAll.h"
#include "support/ChildProcess.h"
#include "support/FakeWindow.h"
#include "support/MessageBoxes.h"
#include "support/Surroundings.h"
#include "support/Tray.h"

namespace {

using namespace modServerControl;
using support::WaitUntil;

constexpr const char* kNoExecutables = "Can't find Kerno executables in current directory";

/// Settings that point to both folders.
class MainMenu : public testing::Test, protected support::Surroundings {
protected:
    MainMenu() {
        settings::CreateDefaultSettings(kTools.INIPath());
        Set({{"KernoPath", servers.Path()}, {"MySQLPath", program.Path() + "\\"}});
    }

    support::MessageBoxes boxes;
};

TEST_F(MainMenu, LoadsTheSharedSettingsAlsoBesideAPreviousInstance) {
    kTools.INIProperty("ServerDetectionMethod", "1");
    boxes.Answer(IDNO);
    frmMainMenu form(true);
    form.Load();
    EXPECT_TRUE(support::Settle());
    EXPECT_TRUE(form.Started.IsSet());
    EXPECT_EQ(KernoPath(), servers.Path());
    EXPECT_EQ(MySQLPath(), program.Path() + "\\");
    EXPECT_EQ(ServerDetectionMethod(), 1);
    EXPECT_EQ(form.Caption(), "Kerno Tools ::");
    EXPECT_FALSE(std::filesystem::exists(program / "kTools")) << "data folders are not made";
    EXPECT_EQ(boxes.Texts(),
              std::vector<std::string>{"It is not advisable to run few instances of this tool. "
                                       "Close this instance ?"});
}

/// The pickers open in turn while the main window loads; presses Cancel in each and notes its caption.
std::vector<std::string> CancelPickersDuring(const std::function<void()>& load) {
    std::vector<std::string> captions;
    const support::Meanwhile cancel([&] {
        const HWND picker = FindWindowA("#32770", nullptr);
        if (!picker || !IsWindowVisible(picker))
            return;
        char caption[100] = "";
        GetWindowTextA(picker, caption, sizeof caption);
        captions.emplace_back(caption);
        SendMessageA(picker, WM_CLOSE, 0, 0);
    });
    load();
    EXPECT_TRUE(support::Settle());
    return captions;
}

TEST_F(MainMenu, TheFirstStartWritesTheDefaultsAndAsksForBothFolders) {
    std::filesystem::remove(program / "kTools.ini");
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    const auto pickers = CancelPickersDuring([&] { form.Load(); });
    EXPECT_EQ(pickers,
              (std::vector<std::string>{"Kerno Tools :: Server Folder", "Kerno Tools :: MySQL Folder"}));
    EXPECT_EQ(kTools.INIProperty("KernoPath"), "");
    EXPECT_EQ(kTools.INIProperty("ServerDetectionMethod"), "0");
    EXPECT_EQ(kTools.INIProperty("BackupHostname"), "localhost");
    // A folder that was not chosen is asked for again.
    frmMainMenu again(false);
    EXPECT_EQ(CancelPickersDuring([&] { again.Load(); }).size(), 2u);
}

const support::ChildEntry startsOnBrokenSettings("StartsOnBrokenSettings", [](const std::string& folder) {
    common::ProgramFolder(folder);
    support::MessageBoxes boxes;
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    form.Load();
    support::Settle();
    support::WriteFile(folder + "\\seen.txt",
                       (support::ToolWasLeft() ? "ended: " : "goes on: ") + boxes.Texts().at(0));
});

TEST_F(MainMenu, SettingsThatCannotBeReadEndTheToolWithAMessage) {
    support::WriteFile(program / "kTools.ini", "");
    const support::ChildProcess child("StartsOnBrokenSettings", program.Path());
    ASSERT_TRUE(WaitUntil([&] { return !child.Running(); }));
    EXPECT_TRUE(
        common::ReadFileText(program / "seen.txt").starts_with("ended: Kerno Tools has to close: error 62"));
    EXPECT_EQ(common::ReadFileText(program / "kTools.ini"), "");
}

TEST_F(MainMenu, StartsNothingWhenAnExecutableIsMissing) {
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    form.Load();
    std::filesystem::remove(servers.Path() + "kCharacter.exe");
    form.mnuStartKerno.Choose();
    EXPECT_TRUE(support::Settle());
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{kNoExecutables});
    EXPECT_FALSE(servers.IsRunning(Server::Login));
    EXPECT_FALSE(servers.IsRunning(Server::Zone));
}

TEST_F(MainMenu, StartsRestartsShowsHidesAndShutsDown) {
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    form.Load();
    std::array<HWND, 3> windows{};
    for (gui::MenuItem* start : {&form.mnuStartKerno, &form.mnuRestartKerno}) {
        start->Choose();
        // The zone server's pause takes its time on a busy machine.
        EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
        for (const Server server : kServers) {
            HWND& window = windows[static_cast<std::size_t>(server)];
            EXPECT_TRUE(WaitUntil([&] { return !IsWindow(window) && IsRunning(server); }));
            window = MainWindow(server);
        }
    }
    form.mnuHideKerno.Choose();
    for (const Server server : kServers)
        EXPECT_TRUE(WaitUntil([&] { return !IsWindowVisible(servers.MainWindow(server)); }));
    form.mnuShowCharacter.Choose();
    EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(servers.MainWindow(Server::Character)); }));
    EXPECT_FALSE(IsWindowVisible(servers.MainWindow(Server::Login)));

    // A second instance is asked about; after No at the second server the third is not asked about.
    boxes.Answer(IDYES).Answer(IDNO);
    form.mnuStartKerno.Choose();
    EXPECT_TRUE(support::Settle());
    ASSERT_EQ(boxes.Seen().size(), 2u);
    EXPECT_EQ(boxes.Texts()[1],
              "An instance of Kerno Character Server is already running. Running 2 instance of "
              "Character server is not recommended. Start another instance ?");

    form.mnuShutdownCharacter.Choose();
    EXPECT_TRUE(WaitUntil([&] { return !IsRunning(Server::Character); }));
}

TEST_F(MainMenu, ClicksInThePauseOfARestartDoubleNothing) {
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    form.Load();
    for (const Server server : kServers)
        ASSERT_TRUE(servers.Launch(server));
    const auto inThePause = [&](gui::MenuItem& item) {
        bool chosen = false;
        const support::Meanwhile choose([&] {
            if (!chosen && !servers.IsRunning(Server::Character)) {
                chosen = true;
                item.Choose();
            }
        });
        form.mnuRestartKerno.Choose();
        EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
        EXPECT_TRUE(chosen);
    };
    for (gui::MenuItem* item : {&form.mnuStartKerno, &form.mnuStartLogin, &form.mnuRestartZone}) {
        boxes.Clear();
        inThePause(*item);
        EXPECT_EQ(boxes.Texts(), std::vector<std::string>{supervision::kRestartUnderWay});
        for (const Server server : kServers)
            EXPECT_EQ(servers.Instances(server), 1) << ComponentOf(server).name;
    }
    inThePause(form.mnuShutdownKerno);
    for (const Server server : kServers)
        EXPECT_TRUE(WaitUntil([&] { return !servers.IsRunning(server); })) << ComponentOf(server).name;
}

const support::ChildEntry hidesInTheTray("HidesInTheTray", [](const std::string& folder) {
    common::ProgramFolder(folder);
    gui::Local<frmMainMenu> held(false);
    held->Load();
    held->Supervise();
    support::WriteFile(folder + "\\hidden.txt", "");
    support::WaitUntil([&] { return held->Visible(); }, std::chrono::minutes(5));
    support::WriteFile(folder + "\\shown.txt", "");
    support::WaitUntil([] { return false; }, std::chrono::minutes(5));
});

TEST_F(MainMenu, AStartWithWindowsHidesInTheTrayAndASecondOneBringsItToTheFront) {
    const support::ChildProcess copy("HidesInTheTray", program.Path());
    ASSERT_TRUE(WaitUntil([&] { return common::FileExists(program / "hidden.txt"); }));
    const HWND panel = FindWindowA(nullptr, "Kerno Tools :: Server Control");
    EXPECT_TRUE(panel);
    EXPECT_FALSE(IsWindowVisible(panel));
    EXPECT_FALSE(common::FileExists(program / "shown.txt"));
    BringOtherCopyToFront();
    EXPECT_TRUE(WaitUntil([&] { return common::FileExists(program / "shown.txt"); }));
}

TEST_F(MainMenu, OpenWindowsFollowTheServersFolder) {
    kerno.INIProperty("Name", "First");
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    form.Load();
    form.cmdServerConfig.Press();
    support::TempFolder other;
    support::WriteFile(other / "Kerno.ini", "Name=Other\r\n");
    KernoPath(other.Path() + "\\");
    form.UseServerFolder();
    ASSERT_TRUE(form.Configurator());
    EXPECT_EQ(form.Configurator()->connections.txtServerName.Text(), "Other");
    EXPECT_TRUE(support::Settle());
    EXPECT_EQ(boxes.Texts(),
              std::vector<std::string>{"The servers' folder is " + KernoPath() +
                                       " now.\n\nThese windows were opened anew to show what is "
                                       "in it:\nKerno Tools :: Server Configurator"});
    EXPECT_TRUE(GetErrorMode() & SEM_FAILCRITICALERRORS) << "a drive without a medium is told by us";
}

TEST_F(MainMenu, TheTrayIconTakesTheWindowAwayAndADoubleClickBringsItBack) {
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    form.Show();
    EXPECT_FALSE(support::HasTrayIcon(form));
    form.cmdMinimizetoTray.Press();
    EXPECT_FALSE(form.Visible());
    EXPECT_TRUE(support::HasTrayIcon(form));
    SendMessageA(form.Window(), WM_LBUTTONDOWN, 1, WM_MOUSEMOVE);
    EXPECT_FALSE(form.Visible());
    SendMessageA(form.Window(), WM_LBUTTONDOWN, 1, modSystemTray::kTrayDoubleClick);
    EXPECT_TRUE(form.Visible());
    EXPECT_FALSE(support::HasTrayIcon(form));
    // A task bar that takes no icon.
    support::TaskBar taskBar;
    taskBar.takesIcons = false;
    form.cmdMinimizetoTray.Press();
    EXPECT_TRUE(form.Visible());
    EXPECT_EQ(form.State(), gui::WindowState::Minimized);
}

TEST_F(MainMenu, TheIconsTextFollowsTheServers) {
    support::TaskBar taskBar;
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    form.Load();
    const auto says = [&](const char* start) {
        EXPECT_TRUE(WaitUntil([&] { return taskBar.tip.starts_with(start); })) << start << taskBar.tip;
    };
    form.cmdMinimizetoTray.Press();
    says("Kerno Tools :: [Kerno Inactive]");
    // Right after the launch there is no window yet.
    form.mnuStartLogin.Choose();
    says("Kerno Tools :: [Login(Active) Character(Inactive) Zone(");
    servers.Kill(Server::Login);
    says("Kerno Tools :: [Kerno Inactive]");

    // Nobody but the action itself changes it now.
    form.tmrTray.Enabled(false);
    ASSERT_TRUE(servers.Launch(Server::Character));
    const int before = taskBar.changed;
    boxes.Answer(IDNO, [&] { EXPECT_GT(taskBar.changed, before); });
    form.mnuStartKerno.Choose();
    EXPECT_TRUE(support::Settle());
    EXPECT_TRUE(IsRunning(Server::Login));
    form.cmdMinimizetoTray.Press();
    says("Kerno Tools :: [Login(Active) Character(Active) Zone(");

    form.tmrTray.Enabled(true);
    servers.Command(Server::Login, standin::Command::RaiseStubbornDialog);
    ASSERT_TRUE(WaitUntil([&] { return servers.DialogCount() == 1; }));
    form.mnuShutdownLogin.Choose();
    says("Kerno Tools :: a dialog of kLogin.exe does not close");
    servers.KillAll();
    EXPECT_TRUE(support::Settle());
    for (int start = Launches().Recent(Server::Login, GetTickCount64()); start < 5; ++start) {
        form.mnuStartLogin.Choose();
        ASSERT_TRUE(WaitUntil([] { return IsRunning(Server::Login); })) << journal::LastLines(10);
        EXPECT_TRUE(support::Settle());
        servers.Kill(Server::Login);
    }
    says("Kerno Tools :: Login server: started 5 times");

    // The task bar was made anew, and has no icon.
    taskBar.added = 0;
    SendMessageA(form.Window(), RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    EXPECT_EQ(taskBar.added, 1);
    SendMessageA(form.Window(), WM_LBUTTONDOWN, 1, modSystemTray::kTrayDoubleClick);
    taskBar.added = 0;
    SendMessageA(form.Window(), RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    EXPECT_EQ(taskBar.added, 0);
}

TEST_F(MainMenu, AStartThatABackupWouldUndoIsAskedAbout) {
    const BackupPhase backup;
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    form.Load();
    for (const int answer : {IDNO, IDYES}) {
        boxes.Answer(answer);
        form.mnuStartLogin.Choose();
        EXPECT_TRUE(support::Settle());
        EXPECT_EQ(servers.IsRunning(Server::Login), answer == IDYES);
    }
    EXPECT_TRUE(boxes.Texts()[0].starts_with("A backup has the servers down")) << boxes.Texts()[0];
}

TEST_F(MainMenu, SaysOfAServerWithMoreRightsThatItCannotBeClosed) {
    gui::Local<frmMainMenu> held(false);
    frmMainMenu& form = *held;
    form.Load();
    support::TakeRights(servers.Launch(Server::Login));
    for (gui::MenuItem* item : {&form.mnuShutdownLogin, &form.mnuShutdownCharacter}) {
        item->Choose();
        EXPECT_TRUE(support::Settle());
    }
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{
                                 "Kerno Tools cannot close what runs as administrator:\nKerno Login Server"});
    EXPECT_NE(journal::LastLines(2).find("Login server: runs as administrator, cannot be closed"),
              std::string::npos);
}

/// The two pickers differ in their key, their file and their message only.
template <class Picker>
void PickAFolder(const char* key, const char* requiredFile, const char* message, support::MessageBoxes& boxes,
                 const std::string& folder, const std::string& (*shared)()) {
    clsINI kTools(settings::kToolsIniPath());
    kTools.INIProperty(key, "before\\");
    Picker form;
    form.Load();
    form.dirCharacter.Path(folder);
    EXPECT_EQ(form.dirCharacter.Path(), folder);
    form.cmdOK.Press();
    EXPECT_TRUE(support::Settle());
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{message});
    EXPECT_TRUE(form.Loaded());
    EXPECT_EQ(kTools.INIProperty(key), "before\\");

    support::WriteFile(folder + "\\" + requiredFile, "");
    form.cmdOK.Press();
    EXPECT_FALSE(form.Loaded());
    EXPECT_EQ(kTools.INIProperty(key), folder + "\\");
    EXPECT_EQ(shared(), folder + "\\");
}

TEST_F(MainMenu, PickersStoreOnlyAFolderThatHoldsTheRequiredFile) {
    const support::TempFolder folder;
    PickAFolder<frmBrowse>("KernoPath", "Kerno.ini", "Character file does not exists, or wrong directory.",
                           boxes, folder.Path(), KernoPath);
    boxes.Clear();
    PickAFolder<frmSQLPath>(
        "MySQLPath", "bin\\mysqld.exe",
        "MySQL Daemon (mysqld.exe) not found in the specified directory (<path>\\bin). Please "
        "check your path",
        boxes, folder.Path(), MySQLPath);
}

TEST_F(MainMenu, PickersBeginWhereAServerRunsOrNearTheToolAndMarkWhatQualifies) {
    MySQLPath("");
    support::WriteFile(kTools.INIPath(), "KernoPath=\r\nMySQLPath=\r\n");
    const std::string beside = program / "Near";
    std::filesystem::create_directories(beside + "\\bin");
    support::WriteFile(beside + "\\bin\\mysqld.exe", "");
    frmSQLPath mysql;
    mysql.Load();
    EXPECT_EQ(mysql.dirCharacter.Path(), beside);
    EXPECT_EQ(mysql.lblHolds.Caption(), "Holds bin\\mysqld.exe");
    TVITEMA item{};
    item.mask = TVIF_STATE;
    item.stateMask = TVIS_BOLD;
    item.hItem = TreeView_GetSelection(mysql.dirCharacter.Window());
    SendMessageA(mysql.dirCharacter.Window(), TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
    EXPECT_TRUE(item.state & TVIS_BOLD);
    mysql.dirCharacter.Path(beside.substr(0, 3));
    EXPECT_EQ(mysql.lblHolds.Caption(), "Does not hold bin\\mysqld.exe");

    ASSERT_TRUE(servers.Launch(Server::Login));
    KernoPath("");
    frmBrowse server;
    server.Load();
    // Tests that run beside this one have servers, too.
    const auto running = modServerControl::PathsRunning("kLogin.exe");
    EXPECT_EQ(std::ranges::count(running, server.dirCharacter.Path() + "\\kLogin.exe"), 1)
        << server.dirCharacter.Path();
}

TEST_F(MainMenu, ADriveThatCannotBeReadIsRefusedAndTheLastGoodOneComesBack) {
    frmBrowse form;
    form.Load();
    const int good = form.drvCharacter.ListIndex();
    // A drive that was pulled out, and one that answers, but not with its folders.
    for (const std::string& drive : {std::string("?:"), servers.Path() + "none"}) {
        form.drvCharacter.AddItem(drive);
        form.drvCharacter.ListIndex(form.drvCharacter.ListCount() - 1);
        EXPECT_EQ(form.drvCharacter.ListIndex(), good);
        EXPECT_TRUE(support::Settle());
    }
    EXPECT_EQ(boxes.Texts(), (std::vector<std::string>{"Drive is unavailable", "Drive is inaccessible"}));
}

} // namespace
