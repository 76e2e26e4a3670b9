#include "Panel.h"

#include "common/Text.h"
#include "servers/modServerControl.h"
#include "supervision/RestartAll.h"
#include "support/MessageBoxes.h"

#include <algorithm>

namespace {

using namespace settings::key;
using namespace supervision;
using modServerControl::kServers;
using modServerControl::Server;
using standin::Command;
using support::WaitUntil;

constexpr std::size_t kStampedEntry = 2;

/// The entries of a log, without their stamps.
std::vector<std::string> Entries(const std::string& log) {
    std::vector<std::string> entries;
    const auto lines = common::Lines(log);
    for (std::size_t i = 1; i < lines.size(); i += kStampedEntry)
        entries.emplace_back(lines[i]);
    return entries;
}

struct Detection : Panel {
    bool HasDialog() const { return servers.DialogCount() > 0; }

    clsLog log;
    ErrorDetector detector{log, kerno, [] { return true; }};
};

TEST_F(Panel, TheMaintainerStartsWhatIsToRunAndDoesNot) {
    const struct {
        bool enabled;
        std::array<bool, 3> chosen, running, after;
    } cases[] = {
        {false, {true, true, true}, {false, false, false}, {false, false, false}},
        {true, {false, false, false}, {false, false, false}, {false, false, false}},
        {true, {true, false, true}, {false, true, false}, {true, true, true}},
        {true, {true, true, false}, {true, false, false}, {true, true, false}},
        {true, {true, true, true}, {false, false, false}, {true, true, true}},
    };
    const ServerMaintainer maintainer(kerno);
    for (const auto& c : cases) {
        std::array<HWND, 3> before{};
        for (std::size_t i = 0; i < 3; ++i)
            if (c.running[i]) {
                ASSERT_TRUE(before[i] = servers.Launch(kServers[i]));
            }
        // The second time comes before the servers have a window.
        for (int tick = 0; tick < 2; ++tick)
            maintainer.Maintain({.enabled = c.enabled, .servers = c.chosen});
        for (std::size_t i = 0; i < 3; ++i) {
            if (c.after[i]) {
                EXPECT_TRUE(WaitUntil([&] { return servers.MainWindow(kServers[i]) != nullptr; }));
                EXPECT_EQ(servers.Instances(kServers[i]), 1);
            } else {
                EXPECT_FALSE(servers.IsRunning(kServers[i]));
            }
            if (c.running[i]) {
                EXPECT_EQ(servers.MainWindow(kServers[i]), before[i]);
            }
        }
        servers.KillAll();
        ASSERT_TRUE(WaitUntil([] { return std::ranges::none_of(kServers, modServerControl::IsRunning); }));
    }
}

TEST_F(Panel, AServerIsStartedWithThePriorityThatKernoIniHolds) {
    kTools.INIProperty(kLoginPriority, "3");
    kerno.INIProperty(kLoginPriority, "99999");
    support::MessageBoxes boxes;
    frmServerControl panel;
    panel.Load();
    panel.errorDetector.chkCheckServerProcesses.Value(1);
    panel.errorDetector.chkLoginServer.Value(1);
    panel.errorDetector.tmrErrorDetector.Tick();
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{"Kerno Tools Error :: [6] Overflow"});
}

TEST_F(Detection, ATitledDialogGoesOnlyTogetherWithOneOfAServersProcess) {
    // A program that is no server by its name, with a dialog that is one by its title.
    const HWND other = servers.Launch(Server::Character, "other.exe");
    PostMessageA(other, standin::CommandMessage(), static_cast<WPARAM>(Command::RaiseTitledDialog), 1);
    ASSERT_TRUE(WaitUntil([&] { return servers.DialogCount() == 1; }));
    const ErrorDetectorSettings settings{.handleDialogs = true, .logFilename = "errors.log", .message = {}};
    detector.Handle(settings);
    EXPECT_EQ(servers.DialogCount(), 1);
    EXPECT_EQ(Log("errors.log"), "");

    ASSERT_TRUE(servers.Launch(Server::Login));
    servers.Command(Server::Login, Command::RaiseDialogs);
    ASSERT_TRUE(WaitUntil([&] { return servers.DialogCount() == 2; }));
    detector.Handle({.handleDialogs = false, .logFilename = {}, .message = {}});
    EXPECT_EQ(servers.DialogCount(), 2);
    detector.Handle(settings);
    EXPECT_EQ(servers.DialogCount(), 0);
    const std::string text = "Error 1: " + std::string(standin::kErrorText);
    const std::string cut = text.substr(0, text.size() - 1);
    EXPECT_EQ(Entries(Log("errors.log")), (std::vector<std::string>{"Error: " + cut, "WinError: " + cut}));
}

TEST_F(Panel, ADialogThatDoesNotCloseLeavesTheToolAlive) {
    Set({{kEnableErrorDetector, "1"},
         {kErrorCheckingInterval, "0.1"},
         {kHandleDialogs, "1"},
         {kLogErrorPopups, "1"},
         {kLogFilename, "stubborn.log"},
         {kBackupPeriod, "60"}});
    ASSERT_TRUE(servers.Launch(Server::Login));
    servers.Command(Server::Login, Command::RaiseStubbornDialog);
    ASSERT_TRUE(WaitUntil([&] { return servers.DialogCount() == 1; }));
    frmServerControl panel;
    panel.Load();
    panel.backup.cmdEnableBackup.Press();
    // The tick does not return by itself: the operator's clicks and the other timers come to it.
    struct Operator {
        frmServerControl& panel;
        std::function<std::string()> log;
        ULONGLONG end;
        bool sawAll;
    } user{panel, [&] { return Log("stubborn.log"); }, GetTickCount64() + 30'000, false};
    SetTimer(panel.Window(), reinterpret_cast<UINT_PTR>(&user), 50, [](HWND, UINT, UINT_PTR id, DWORD) {
        auto& self = *reinterpret_cast<Operator*>(id);
        self.sawAll = Entries(self.log()).size() >= 2 && self.panel.backup.clock.Seconds() > 0;
        // Closed at the end in any case: the test itself waits in the tick that only this ends.
        if (self.sawAll || GetTickCount64() > self.end)
            PostMessageA(self.panel.cmdCloseWindow.Window(), BM_CLICK, 0, 0);
    });
    EXPECT_TRUE(WaitUntil([&] { return !panel.Loaded(); }));
    EXPECT_TRUE(user.sawAll);
    EXPECT_FALSE(panel.Busy());
    EXPECT_EQ(servers.DialogCount(), 1);
}

TEST_F(Panel, ACrashedServersDialogIsLoggedAndTheSuiteRestarted) {
    Set({{kEnableErrorDetector, "1"},
         {kErrorCheckingInterval, "1"},
         {kHandleDialogs, "1"},
         {kDialogsOptions, "1"},
         {kLogErrorPopups, "1"},
         {kLogFilename, "errors.log"},
         {kSendErrorMessagetoPlayers, "1"},
         {kErrorMessage, "Back in a minute"},
         {kMaintainServer, "1"},
         {kMaintainLoginServer, "1"},
         {kMaintainCharacterServer, "1"}});
    std::array<HWND, 3> before{};
    for (std::size_t i = 0; i < 3; ++i)
        ASSERT_TRUE(before[i] = servers.Launch(kServers[i]));
    // It stays, so that what it sent to the players can be read afterwards.
    servers.Command(Server::Zone, Command::RefuseToClose);
    frmServerControl panel;
    panel.Load();
    servers.Command(Server::Login, Command::RaiseDialogs);
    // One tick only: the next may find a server that is still on its way.
    SetTimer(panel.Window(), reinterpret_cast<UINT_PTR>(&panel), 50, [](HWND, UINT, UINT_PTR id, DWORD) {
        auto& self = *reinterpret_cast<frmServerControl*>(id);
        if (self.Busy())
            self.errorDetector.chkErrorDetector.Value(0);
    });
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(before[0]) && !IsWindow(before[1]); }));
    const HWND zoneLog = FindWindowExA(before[2], nullptr, modServerControl::kMessageBoxClass, nullptr);
    EXPECT_TRUE(WaitUntil([&] {
        return support::TextOf(zoneLog).find("Broadcast: Back in a minute\r\n") != std::string::npos;
    })) << support::TextOf(zoneLog);
    const auto count = [](const char* windowClass) {
        int windows = 0;
        modServerControl::FindWindowWhere(nullptr, windowClass, [&](HWND) { return ++windows < 0; });
        return windows;
    };
    // The two zone servers, and the character server's window of the same class.
    EXPECT_TRUE(WaitUntil([&] { return count("TfrmMain") == 3 && servers.MainWindow(Server::Login); }));
    EXPECT_EQ(count("TForm1"), 2) << "a login or character server was started twice";
    EXPECT_EQ(Entries(Log("errors.log")),
              std::vector<std::string>{"Error: Error 1: Access violation at address 00403A1C"});
}

TEST_F(Panel, ARestartStartsNothingWhenAnExecutableIsMissing) {
    ASSERT_TRUE(servers.Launch(Server::Login));
    ASSERT_TRUE(DeleteFileA((servers.Path() + "kZone.exe").c_str()));
    bool down = false;
    const auto stop = [&] { down = WaitUntil([&] { return !servers.IsRunning(Server::Login); }); };
    RestartAll({.message = {}, .meanwhile = stop, .checkExecutables = true}, kerno);
    EXPECT_TRUE(down);
    EXPECT_FALSE(servers.IsRunning(Server::Login));
    RestartAll({.message = {}, .meanwhile = {}}, kerno);
    EXPECT_TRUE(servers.IsRunning(Server::Login));
}

TEST_F(Panel, TheMonitorActsOnAChangedAddress) {
    IPChangeMonitor monitor(kTools, kerno);
    const std::string old = "IP=10.9.9.9\r\n";
    const std::string written = "IP=10.1.2.3\r\n";
    const struct {
        const char* host;
        bool enabled, modify;
        std::string before, after;
    } cases[] = {
        {"10.1.2.3", true, true, old, written},   {"10.1.2.3", true, false, old, old},
        {"10.1.2.3", false, true, old, old},      {"10.1.2.3", true, true, "IP=10.1.2.3 \r\n", written},
        {"nobody.invalid", true, true, old, old}, {"10.1.2.3", true, true, "", written}, // Kerno.ini has gone
    };
    for (const auto& c : cases) {
        kTools.INIProperty(kDynamicHostname, c.host);
        DeleteFileA(kerno.INIPath().c_str());
        if (!c.before.empty())
            support::WriteFile(kerno.INIPath(), c.before);
        // Without a zone server the others are not restarted either.
        monitor.Act(monitor.Look(),
                    {.enabled = c.enabled, .modifyIni = c.modify, .restart = true, .message = "moving"});
        EXPECT_EQ(common::ReadFileText(kerno.INIPath()), c.after);
        EXPECT_FALSE(servers.IsRunning(Server::Login));
    }
}

TEST_F(Panel, AChangeThatIsNotWrittenIsFoundAgain) {
    kTools.INIProperty(kDynamicHostname, "10.7.7.7");
    ASSERT_TRUE(servers.Launch(Server::Zone));
    frmServerControl panel;
    panel.Load();
    panel.connections.chkOnIPChanges.Value(1);
    panel.connections.chkRestartServer.Value(1);
    panel.connections.tmrMonitorIP.Tick();
    for (const Server server : kServers)
        EXPECT_TRUE(WaitUntil([&] { return servers.MainWindow(server) != nullptr; }));
    EXPECT_EQ(kerno.INIProperty("IP"), "10.1.2.3");
    EXPECT_TRUE(IsChange(panel.connections.ShowAddresses()));
}

} // namespace
