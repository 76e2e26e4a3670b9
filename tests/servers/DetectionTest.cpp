#include "servers/ForeignWindows.h"
#include "servers/modServerControl.h"
#include "support/FakeWindow.h"
#include "support/Servers.h"
#include "support/Test.h"

#include <set>

using namespace modServerControl;
using support::DialogWindow;
using support::FakeWindow;
using support::ServerFolder;
using support::WindowHandle;

namespace {

TEST(Detection, TellsServersByTheirTitles) {
    const std::tuple<const char*, bool, bool, bool> cases[] = {
        {"Kerno Login Server", true, false, false},
        {"Kerno Login Serve", false, false, false}, // its last character is not read
        {"Kerno Login Serverless", true, false, false},
        {"kerno login server", false, false, false},
        {"My Kerno Login Server", false, false, false},
        {"Kerno Character Server", false, true, false},
        {"Kerno Zone Server 00:12:34:56 x", false, false, true},
        {"Kerno Zone Server 00:12:34:56", false, false, false},
        {"Kerno Zone Server 00:12:34:5x x", false, false, false},
        {"Kerno Zone Server 00.12:34:56 x", false, false, false},
        {"", false, false, false}};
    ServerDetectionMethod(kDetectByTitle);
    for (const auto& [title, login, character, zone] : cases) {
        const auto loginWindow = FakeWindow("TForm1", title);
        const auto zoneWindow = FakeWindow("TfrmMain", title);
        EXPECT_EQ(IsLoginRunning(), login) << title;
        EXPECT_EQ(IsCharacterRunning(), character) << title;
        EXPECT_EQ(IsZoneRunning(), zone) << title;
    }
    const auto app = FakeWindow("TApplication", "Kerno Zone");
    const auto shortApp = FakeWindow("TApplication", "Kerno Zon");
    EXPECT_TRUE(IsZoneAppWindow(app.get()));
    EXPECT_FALSE(IsZoneAppWindow(shortApp.get()));
}

TEST(Detection, TellsDialogsByTheirTitleWithoutItsLastCharacter) {
    for (const auto& [title, expected] : {std::pair("Error in KZONE.", 1), {"kLogin", 0}, {"Kerno", 0}}) {
        const WindowHandle dialog = DialogWindow(title);
        EXPECT_EQ(HasDialogByTitle(), expected) << title;
    }
}

TEST(Detection, VisitsEveryWindowAlthoughTheyChangePlaces) {
    std::vector<WindowHandle> windows;
    for (int i = 0; i < 5; ++i)
        windows.push_back(FakeWindow("kToolsTestRaised", ""));
    for (const HWND raised : {HWND{}, windows.front().get(), windows.back().get()}) {
        std::multiset<HWND> visited;
        FindWindowWhere(nullptr, "kToolsTestRaised", [&](HWND window) {
            visited.insert(window);
            SetWindowPos(raised ? raised : window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
            return false;
        });
        for (const auto& window : windows)
            EXPECT_EQ(visited.count(window.get()), 1u);
    }
    // A window that goes while it is visited does not end the walk.
    int visits = 0;
    FindWindowWhere(nullptr, "kToolsTestRaised", [&](HWND window) {
        ++visits;
        return visits < 5 && !DestroyWindow(window);
    });
    EXPECT_EQ(visits, 5);
}

TEST(Detection, FindsTheThreeServersByEitherMethodAndByNoOther) {
    const ServerFolder folder;
    EXPECT_EQ(TrayStatusText(), "Kerno Tools :: [Kerno Inactive]");
    for (const Server server : kServers)
        ASSERT_TRUE(folder.Launch(server));
    for (const std::int16_t method : {kDetectByTitle, kDetectByProcess, std::int16_t{2}, std::int16_t{-1}}) {
        ServerDetectionMethod(method);
        for (const Server server : kServers) {
            const bool known = method == kDetectByTitle || method == kDetectByProcess;
            EXPECT_EQ(MainWindow(server), known ? folder.MainWindow(server) : nullptr) << method;
            EXPECT_EQ(IsAppWindow(server, folder.AppWindow(server)), known) << method;
        }
    }
    ServerDetectionMethod(kDetectByProcess);
    folder.Kill(Server::Character);
    EXPECT_EQ(TrayStatusText(), "Kerno Tools :: [Login(Active) Character(Inactive) Zone(Active)]");
}

TEST(Detection, ComparesExecutablesWithTheirLetterCase) {
    const ServerFolder folder;
    std::filesystem::rename(folder.Path() + "kZone.exe", folder.Path() + "other");
    std::filesystem::rename(folder.Path() + "other", folder.Path() + "KZONE.EXE");
    const HWND window = folder.Launch(Server::Zone, "KZONE.EXE");
    ASSERT_TRUE(window);
    EXPECT_TRUE(IsZoneRunning());
    ServerDetectionMethod(kDetectByProcess);
    EXPECT_FALSE(IsZoneRunning());
    EXPECT_FALSE(IsServerProcessWindow(window));
    EXPECT_TRUE(IsServerPathWindow(window));
}

TEST(Detection, KnowsAProgramThatCannotBeLookedInto) {
    const ServerFolder folder;
    ServerDetectionMethod(kDetectByProcess);
    support::TakeRights(folder.Launch(Server::Login));
    ASSERT_TRUE(support::WaitUntil(IsLoginRunning));
    EXPECT_EQ(GetWindowModuleName(MainWindow(Server::Login)), "kLogin.exe");
    EXPECT_TRUE(HasMoreRights(MainWindow(Server::Login)));
}

TEST(Priority, PairsIndexesWithClasses) {
    const ServerFolder folder;
    const HWND window = folder.Launch(Server::Login);
    ASSERT_TRUE(window);
    // Index 2 is refused, and the class stays what it was.
    const int cases[][3] = {{5, 1, 5}, {4, 1, 4}, {2, 0, 4}, {1, 1, 1}, {3, 1, 3}, {-1, 0, 3}, {6, 0, 3}};
    for (const auto& [set, status, read] : cases) {
        EXPECT_EQ(SetLoginPriority(set), status) << set;
        EXPECT_EQ(GetLoginPriority(), read) << set;
    }
    EXPECT_EQ(SetProcessPriority(window, ABOVE_NORMAL_PRIORITY_CLASS), 1);
    EXPECT_EQ(GetLoginPriority(), 0);
    EXPECT_EQ(SetCharacterPriority(3), 0);
    EXPECT_EQ(GetCharacterPriority(), 0);
    // A second instance is given the priority too.
    const HWND second = folder.Launch(Server::Login, "second.exe");
    EXPECT_EQ(SetLoginPriority(5), 1);
    for (const HWND each : {window, second})
        EXPECT_EQ(GetProcessPriority(each), DWORD{IDLE_PRIORITY_CLASS});
}

} // namespace
