#include "Panel.h"

#include "servers/modServerControl.h"
#include "supervision/RestartAll.h"

namespace {

/// The entries of a log, without the stamps between them.
std::vector<std::string> Entries(const std::string& log) {
    std::vector<std::string> entries;
    for (const auto line : common::Lines(log))
        if (line.find("rror: ") != line.npos)
            entries.emplace_back(line);
    return entries;
}

TEST_F(Panel, TheMaintainerStartsWhatIsToRunAndDoesNot) {
    const std::tuple<bool, std::array<bool, 3>, std::array<bool, 3>, std::array<bool, 3>> cases[] = {
        {false, {true, true, true}, {false, false, false}, {false, false, false}},
        {true, {true, false, true}, {false, true, false}, {true, true, true}},
        {true, {true, true, false}, {true, false, false}, {true, true, false}}};
    for (const auto& [enabled, chosen, running, after] : cases) {
        for (std::size_t i = 0; i < 3; ++i)
            if (running[i])
                servers.Launch(kServers[i]);
        // The second time comes before the servers have a window.
        for (int tick = 0; tick < 2; ++tick)
            ServerMaintainer(kerno).Maintain({.enabled = enabled, .servers = chosen});
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_TRUE(WaitUntil([&] { return (servers.MainWindow(kServers[i]) != nullptr) == after[i]; }));
            EXPECT_EQ(servers.Instances(kServers[i]), after[i]) << i;
        }
        servers.KillAll();
        ASSERT_TRUE(WaitUntil([] { return std::ranges::none_of(kServers, modServerControl::IsRunning); }));
    }
}

TEST_F(Panel, AServerIsStartedWithThePriorityThatKernoIniHolds) {
    kTools.INIProperty(kLoginPriority, "3");
    kerno.INIProperty(kLoginPriority, "99999");
    support::MessageBoxes boxes;
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    panel.errorDetector.chkCheckServerProcesses.Value(1);
    panel.errorDetector.chkLoginServer.Value(1);
    panel.errorDetector.tmrErrorDetector.Tick();
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{"Kerno Tools Error :: [6] Overflow"});
}

TEST_F(Panel, ATitledDialogGoesOnlyTogetherWithOneOfAServersProcess) {
    clsLog log;
    const ErrorDetectorSettings settings{.handleDialogs = true, .logFilename = "errors.log", .message = {}};
    const ErrorDetector detector(log, kerno, [&] { return settings; });
    // A program that is no server by its name, with a dialog that is one by its title.
    const HWND other = servers.Launch(Server::Character, "other.exe");
    servers.Command(other, Command::RaiseTitledDialog);
    ASSERT_TRUE(WaitUntil([&] { return servers.DialogCount() == 1; }));
    support::Run(detector.Handle());
    EXPECT_EQ(servers.DialogCount(), 1);
    EXPECT_EQ(Log("errors.log"), "");

    ASSERT_TRUE(servers.Launch(Server::Login));
    servers.Command(Server::Login, Command::RaiseDialogs);
    ASSERT_TRUE(WaitUntil([&] { return servers.DialogCount() == 2; }));
    support::Run(detector.Handle());
    EXPECT_EQ(servers.DialogCount(), 0);
    const std::string cut = "Error 1: Access violation at address 00403A1C";
    EXPECT_EQ(Entries(Log("errors.log")), (std::vector<std::string>{"Error: " + cut, "WinError: " + cut}));
}

TEST_F(Panel, ADialogThatDoesNotCloseLeavesTheToolAlive) {
    TurnOn({kEnableErrorDetector, kHandleDialogs, kLogErrorPopups});
    Set({{kErrorCheckingInterval, "0.1"}, {kLogFilename, "stubborn.log"}, {kBackupPeriod, "60"}});
    ASSERT_TRUE(servers.Launch(Server::Login));
    servers.Command(Server::Login, Command::RaiseStubbornDialog);
    ASSERT_TRUE(WaitUntil([&] { return servers.DialogCount() == 1; }));
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    panel.backup.cmdEnableBackup.Press();
    // The tick does not return by itself: the operator's clicks and the other timers come to it. Closed at
    // the end in any case: the test itself waits in the tick that only this ends.
    bool sawAll = false;
    const support::Meanwhile operate([&, end = GetTickCount64() + 30'000] {
        sawAll =
            sawAll || (Entries(Log("stubborn.log")).size() >= 2 && panel.backup.clock.BackupSeconds() > 0);
        if (sawAll || GetTickCount64() > end)
            PostMessageA(panel.cmdCloseWindow.Window(), BM_CLICK, 0, 0);
    });
    EXPECT_TRUE(WaitUntil([&] { return !panel.Loaded(); }));
    EXPECT_TRUE(sawAll);
    EXPECT_FALSE(panel.Busy());
    EXPECT_EQ(servers.DialogCount(), 1);
}

TEST_F(Panel, ACrashedServersDialogIsLoggedAndTheSuiteRestarted) {
    TurnOn({kEnableErrorDetector, kErrorCheckingInterval, kHandleDialogs, kDialogsOptions, kLogErrorPopups,
            kSendErrorMessagetoPlayers, kMaintainServer, kMaintainLoginServer, kMaintainCharacterServer});
    Set({{kLogFilename, "errors.log"}, {kErrorMessage, "Back in a minute"}});
    std::array<HWND, 3> before{};
    for (std::size_t i = 0; i < 3; ++i)
        ASSERT_TRUE(before[i] = servers.Launch(kServers[i]));
    // It stays, so that what it sent to the players can be read afterwards.
    servers.Command(Server::Zone, Command::RefuseToClose);
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    servers.Command(Server::Login, Command::RaiseDialogs);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(before[0]) && !IsWindow(before[1]); }));
    const HWND zoneLog = FindWindowExA(before[2], nullptr, modServerControl::kMessageBoxClass, nullptr);
    EXPECT_TRUE(WaitUntil([&] {
        return support::TextOf(zoneLog).find("Broadcast: Back in a minute\r\n") != std::string::npos;
    })) << support::TextOf(zoneLog);
    EXPECT_TRUE(WaitUntil(
        [&] {
            return servers.MainWindow(Server::Login) && servers.MainWindow(Server::Character) &&
                   servers.Instances(Server::Zone) == 2;
        },
        kPause));
    EXPECT_EQ(servers.Instances(Server::Login), 1);
    EXPECT_EQ(servers.Instances(Server::Character), 1);
    EXPECT_EQ(Entries(Log("errors.log")),
              std::vector<std::string>{"Error: Error 1: Access violation at address 00403A1C"});
}

gui::Task<> UntilDown(const support::ServerFolder& servers, bool& down) {
    const auto isDown = [&servers] { return !servers.IsRunning(Server::Login); };
    down = co_await gui::Until(isDown, std::chrono::seconds(30));
}

TEST_F(Panel, ARestartStartsNothingWhenAnExecutableIsMissing) {
    ASSERT_TRUE(servers.Launch(Server::Login));
    ASSERT_TRUE(DeleteFileA((servers.Path() + "kZone.exe").c_str()));
    bool down = false;
    const auto stop = [&] { return UntilDown(servers, down); };
    const Restart restart{
        .asker = journal::Asker::Detector, .message = {}, .meanwhile = stop, .checkExecutables = true};
    EXPECT_TRUE(support::Run(RestartAll(restart, kerno), kPause));
    EXPECT_TRUE(down);
    EXPECT_FALSE(servers.IsRunning(Server::Login));
}

TEST_F(Panel, TheMonitorActsOnAChangedAddress) {
    IPChangeMonitor monitor(kTools, kerno);
    const std::string old = "IP=10.9.9.9\r\n";
    const std::string written = "IP=10.1.2.3\r\n";
    const std::tuple<const char*, bool, bool, std::string> cases[] = {{"10.1.2.3", true, true, written},
                                                                      {"10.1.2.3", true, false, old},
                                                                      {"10.1.2.3", false, true, old},
                                                                      {"nobody.invalid", true, true, old}};
    for (const auto& [host, enabled, modify, after] : cases) {
        kTools.INIProperty(kDynamicHostname, host);
        support::WriteFile(kerno.INIPath(), old);
        // Without a zone server the others are not restarted either.
        const Addresses addresses = support::Run(monitor.Look());
        support::Run(monitor.Act(
            addresses, {.enabled = enabled, .modifyIni = modify, .restart = true, .message = "moving"}));
        EXPECT_EQ(common::ReadFileText(kerno.INIPath()), after);
        EXPECT_FALSE(servers.IsRunning(Server::Login));
    }
}

TEST_F(Panel, AChangeThatIsNotWrittenIsFoundAgain) {
    kTools.INIProperty(kDynamicHostname, "10.7.7.7");
    const HWND zone = servers.Launch(Server::Zone);
    ASSERT_TRUE(zone);
    // The character server has the button that sends what was typed at the zone server, which stays, so that
    // what it sent to the players can be read afterwards.
    ASSERT_TRUE(servers.Launch(Server::Character));
    servers.Command(Server::Zone, Command::RefuseToClose);
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    panel.connections.chkOnIPChanges.Value(1);
    panel.connections.chkRestartServer.Value(1);
    panel.connections.chkSendMessageIPChange.Value(1);
    panel.connections.txtMessageIPChange.Text("We are moving");
    panel.connections.tmrMonitorIP.Tick();
    const HWND zoneLog = FindWindowExA(zone, nullptr, modServerControl::kMessageBoxClass, nullptr);
    EXPECT_TRUE(WaitUntil([&] {
        return support::TextOf(zoneLog).find("Broadcast: We are moving\r\n") != std::string::npos;
    })) << support::TextOf(zoneLog);
    for (const Server server : kServers)
        EXPECT_TRUE(WaitUntil([&] { return servers.MainWindow(server) != nullptr; }, kPause));
    EXPECT_EQ(kerno.INIProperty("IP"), "10.1.2.3");
    EXPECT_TRUE(IsChange(support::Run(panel.connections.ShowAddresses())));
}

} // namespace
