#include "app/frmBrowse.h"
#include "app/frmMainMenu.h"
#include "app/frmSQLPath.h"

#include "common/Files.h"
#include "gui/modSystemTray.h"
#include "settings/kToolsSettings.h"
#include "support/ChildProcess.h"
#include "support/MessageBoxes.h"
#include "support/Servers.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace modServerControl;
using support::WaitUntil;

constexpr const char* kNoExecutables = "Can't find Kerno executables in current directory";

/// A program folder of its own beside the stand-ins, with settings that point to them.
class MainMenu : public testing::Test {
protected:
    MainMenu() {
        common::ProgramFolder(program.Path());
        settings::CreateDefaultSettings(settings::kToolsIniPath());
        kTools.INIProperty("KernoPath", servers.Path());
        kTools.INIProperty("MySQLPath", program.Path() + "\\");
    }

    support::ServerFolder servers;
    support::TempFolder program;
    clsINI kTools{program / "kTools.ini"};
    support::MessageBoxes boxes;
};

TEST_F(MainMenu, LoadsTheSharedSettings) {
    kTools.INIProperty("ServerDetectionMethod", "1");
    frmMainMenu form(false);
    form.Load();
    EXPECT_EQ(KernoPath(), servers.Path());
    EXPECT_EQ(MySQLPath(), program.Path() + "\\");
    EXPECT_EQ(ServerDetectionMethod(), 1);
    EXPECT_EQ(form.Caption(), "Kerno Tools ::");
    EXPECT_FALSE(std::filesystem::exists(program / "kTools")) << "data folders are not made";
}

TEST_F(MainMenu, AsksAboutAPreviousInstanceAndGoesOnAfterNo) {
    boxes.Answer(IDNO);
    frmMainMenu form(true);
    form.Load();
    EXPECT_TRUE(form.Loaded());
    EXPECT_EQ(boxes.Texts(),
              std::vector<std::string>{"It is not advisable to run few instances of this tool. "
                                       "Close this instance ?"});
    EXPECT_EQ(boxes.Seen()[0].style, static_cast<unsigned>(MB_YESNO));
}

/// The pickers open in turn while the main window loads; presses Cancel in each and notes its caption.
std::vector<std::string> CancelPickersDuring(const std::function<void()>& load) {
    static std::vector<std::string> captions;
    captions.clear();
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR, DWORD) {
        const HWND picker = FindWindowA("#32770", nullptr);
        if (!picker || !IsWindowVisible(picker))
            return;
        char caption[100] = "";
        GetWindowTextA(picker, caption, sizeof caption);
        captions.emplace_back(caption);
        SendMessageA(picker, WM_CLOSE, 0, 0);
    });
    load();
    KillTimer(nullptr, timer);
    return captions;
}

TEST_F(MainMenu, TheFirstStartWritesTheDefaultsAndAsksForBothFolders) {
    std::filesystem::remove(program / "kTools.ini");
    frmMainMenu form(false);
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
    frmMainMenu form(false);
    form.Load();
    support::WriteFile(folder + "\\seen.txt",
                       (gui::Ending() ? "ended: " : "goes on: ") + boxes.Texts().at(0));
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
    frmMainMenu form(false);
    form.Load();
    std::filesystem::remove(servers.Path() + "kCharacter.exe");
    form.mnuStartKerno.Choose();
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{kNoExecutables});
    EXPECT_FALSE(servers.IsRunning(Server::Login));
    EXPECT_FALSE(servers.IsRunning(Server::Zone));
}

TEST_F(MainMenu, StartsShowsHidesAndShutsDown) {
    frmMainMenu form(false);
    form.Load();
    form.mnuStartKerno.Choose();
    for (const Server server : kServers)
        EXPECT_TRUE(WaitUntil([&] { return IsRunning(server); }));
    form.mnuHideKerno.Choose();
    for (const Server server : kServers)
        EXPECT_TRUE(WaitUntil([&] { return !IsWindowVisible(servers.MainWindow(server)); }));
    form.mnuShowCharacter.Choose();
    EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(servers.MainWindow(Server::Character)); }));
    EXPECT_FALSE(IsWindowVisible(servers.MainWindow(Server::Login)));

    // A second instance is asked about; after No at the second server the third is not asked about.
    boxes.Answer(IDYES).Answer(IDNO);
    form.mnuStartKerno.Choose();
    ASSERT_EQ(boxes.Seen().size(), 2u);
    EXPECT_EQ(boxes.Texts()[1],
              "An instance of Kerno Character Server is already running. Running 2 instance of "
              "Character server is not recommended. Start another instance ?");

    form.mnuShutdownCharacter.Choose();
    EXPECT_TRUE(WaitUntil([&] { return !IsRunning(Server::Character); }));
}

TEST_F(MainMenu, ARestartOfTheSuiteStartsAllThreeAgain) {
    kTools.INIProperty("LoginPriority", "1");
    frmMainMenu form(false);
    form.Load();
    std::vector<HWND> before;
    for (const Server server : kServers)
        before.push_back(servers.Launch(server));
    form.mnuRestartKerno.Choose();
    for (std::size_t i = 0; i < kServers.size(); ++i)
        EXPECT_TRUE(WaitUntil([&] { return !IsWindow(before[i]) && IsRunning(kServers[i]); }));
}

TEST_F(MainMenu, TheTrayIconTakesTheWindowAwayAndADoubleClickBringsItBack) {
    frmMainMenu form(false);
    form.Show();
    form.cmdMinimizetoTray.Press();
    EXPECT_FALSE(form.Visible());
    SendMessageA(form.Window(), WM_LBUTTONDOWN, 1, WM_MOUSEMOVE);
    EXPECT_FALSE(form.Visible());
    SendMessageA(form.Window(), WM_LBUTTONDOWN, 1, modSystemTray::kTrayDoubleClick);
    EXPECT_TRUE(form.Visible());
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
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{message});
    EXPECT_TRUE(form.Loaded());
    EXPECT_EQ(kTools.INIProperty(key), "before\\");

    std::filesystem::create_directories(folder + "\\bin");
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

TEST_F(MainMenu, ADriveThatCannotBeReadIsRefusedAndTheLastGoodOneComesBack) {
    frmBrowse form;
    form.Load();
    const int good = form.drvCharacter.ListIndex();
    // A drive that was pulled out, and one that answers, but not with its folders.
    for (const std::string& drive : {std::string("?:"), servers.Path() + "none"}) {
        form.drvCharacter.AddItem(drive);
        form.drvCharacter.ListIndex(form.drvCharacter.ListCount() - 1);
        EXPECT_EQ(form.drvCharacter.ListIndex(), good);
    }
    EXPECT_EQ(boxes.Texts(), (std::vector<std::string>{"Drive is unavailable", "Drive is inaccessible"}));
}

} // namespace
