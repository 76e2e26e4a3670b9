#include "Panel.h"

#include "servers/Journal.h"
#include "servers/modServerControl.h"
#include "supervision/RestartAll.h"
#include "support/FakeWindow.h"

#include <atomic>
#include <thread>

namespace {

/// A panel that looks after all servers ten times a second.
class Restarting : public Panel {
protected:
    Restarting() {
        TurnOn({kEnableErrorDetector, kMaintainServer, kMaintainLoginServer, kMaintainCharacterServer,
                kMaintainZoneServer});
        Set({{kErrorCheckingInterval, "0.1"},
             {kBackupPeriod, "60"},
             {kBackupDuration, "2"},
             {kMaxArchivedBackups, "10"}});
        panel.Load();
    }

    void ExpectOneOfEach(const std::string& when) {
        EXPECT_TRUE(
            WaitUntil([] { return std::ranges::all_of(kServers, modServerControl::IsRunning); }, kPause))
            << when;
        EXPECT_TRUE(support::Settle(kPause));
        for (const Server server : kServers)
            EXPECT_EQ(servers.Instances(server), 1)
                << when << ", " << modServerControl::ComponentOf(server).name;
    }
    /// Ticks the backup's clock at the second of its cycle.
    void TickAt(long second) {
        panel.backup.clock.Reset();
        for (long past = 1; past < second; ++past)
            panel.backup.clock.Count();
        panel.backup.tmrBackup.Tick();
    }

    support::MessageBoxes boxes;
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
};

TEST_F(Restarting, NobodyStartsWhatSomebodyElseRestarts) {
    ExpectOneOfEach("at first");
    const Restart restart{.asker = journal::Asker::Tray, .message = {}, .meanwhile = {}};
    EXPECT_TRUE(support::Run(RestartAll(restart, kTools), kPause));
    ExpectOneOfEach("after a restart under the restarter's eyes");
    {
        const auto ownership = modServerControl::Ownership::Take(kServers);
        EXPECT_FALSE(support::Run(RestartAll(restart, kTools), kPause));
        servers.Kill(Server::Login);
        for (int tick = 0; tick < 3; ++tick)
            panel.errorDetector.tmrErrorDetector.Tick();
        EXPECT_FALSE(servers.IsRunning(Server::Login));
    }
    ExpectOneOfEach("after the other restart has ended");
}

TEST_F(Restarting, ATimedBackupStartsOnlyWhatTheRestarterDidNot) {
    ExpectOneOfEach("at first");
    panel.backup.chkShutdownServers.Value(1);
    TickAt(3600);
    EXPECT_TRUE(modServerControl::BackupPhase::IsOn());
    ExpectOneOfEach("while the backup lasts");
    TickAt(3720);
    EXPECT_FALSE(modServerControl::BackupPhase::IsOn());
    ExpectOneOfEach("after the backup");
}

TEST_F(Restarting, WhoEndsABackupsTimeIsAskedAboutTheServers) {
    panel.errorDetector.chkErrorDetector.Value(0);
    panel.backup.chkShutdownServers.Value(1);
    panel.backup.cmdEnableBackup.Press();
    // What stands in the way of a backup is told first.
    EXPECT_TRUE(support::Settle(kPause));
    boxes.Clear();
    struct Case {
        gui::CommandButton& button;
        int answer;
    };
    for (const Case& c : {Case{panel.backup.cmdResetTimer, IDNO}, {panel.backup.cmdEnableBackup, IDYES}}) {
        servers.Launch(Server::Login);
        TickAt(3600);
        ASSERT_TRUE(WaitUntil([&] { return !servers.IsRunning(Server::Login); }));
        boxes.Answer(c.answer);
        c.button.Press();
        EXPECT_TRUE(support::Settle(kPause));
        EXPECT_EQ(servers.IsRunning(Server::Login), c.answer == IDYES);
        EXPECT_FALSE(modServerControl::BackupPhase::IsOn());
    }
    EXPECT_EQ(boxes.Texts(),
              std::vector<std::string>(2, "A backup has shut the servers down. Start them now ?"));
}

TEST_F(Restarting, ALockedFileKeepsNoServerDownAndIsToldOnce) {
    ExpectOneOfEach("at first");
    kerno.INIProperty(kLoginPriority, "3");
    const common::FileHandle lock(
        CreateFileA(kerno.INIPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    bool back = false;
    // The box stays open until the servers are back, and those that die meanwhile too.
    boxes.Answer(IDOK, [&] {
        const auto areBack = [] { return std::ranges::all_of(kServers, modServerControl::IsRunning); };
        back = WaitUntil(areBack);
        for (const Server server : {Server::Login, Server::Zone})
            servers.Kill(server);
        back = WaitUntil(areBack) && back;
    });
    for (const Server server : kServers)
        servers.Kill(server);
    EXPECT_TRUE(WaitUntil([&] { return back; }));
    EXPECT_EQ(boxes.Seen().size(), 1u) << testing::PrintToString(boxes.Texts());
}

gui::Task<> Await(Restart restart, clsINI priorities) {
    co_await RestartAll(restart, priorities);
}

TEST_F(Restarting, AnErrorOfARestartThatNobodyAwaitsIsTold) {
    ExpectOneOfEach("at first");
    panel.errorDetector.chkErrorDetector.Value(0);
    gui::Tasks window;
    window.Start(Await({.asker = journal::Asker::Address, .message = {}, .meanwhile = {}}, kerno));
    const common::FileHandle lock(
        CreateFileA(kerno.INIPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    window.Cancel();
    ExpectOneOfEach("after the restart");
    ASSERT_EQ(boxes.Seen().size(), 1u);
    EXPECT_TRUE(boxes.Texts()[0].starts_with(
        "The servers were restarted, but not with their priorities: Permission denied"))
        << boxes.Texts()[0];
    EXPECT_NE(journal::LastLines(20).find("address: Login server: has no priority: Permission denied"),
              std::string::npos);
}

/// Releases the socket library under whoever uses it, as a part of the program would that counts wrongly.
class SocketSpoiler {
public:
    ~SocketSpoiler() {
        over_ = true;
        thread_.join();
    }

private:
    std::atomic<bool> over_ = false;
    std::thread thread_{[this] {
        const FARPROC release = GetProcAddress(LoadLibraryA("ws2_32"), "WSACleanup");
        while (!over_)
            release();
    }};
};

TEST_F(Restarting, ABoxOfTheAddressDetectionHoldsNothingUp) {
    ExpectOneOfEach("at first");
    std::optional<SocketSpoiler> spoiler(std::in_place);
    const auto tick = [&] {
        const int others = gui::TasksUnderWay();
        panel.connections.tmrMonitorIP.Tick();
        EXPECT_TRUE(WaitUntil([&] { return gui::TasksUnderWay() <= others || boxes.Seen().empty(); }));
    };
    boxes.Answer(IDOK, [&] {
        for (int failing = 0; failing < 20; ++failing)
            tick();
        spoiler.reset();
        Set({{kDynamicHostname, "10.9.8.7"}});
        EXPECT_TRUE(WaitUntil([&] {
            panel.connections.tmrMonitorIP.Tick();
            return panel.connections.txtDetectedIPAddress.Text() == "10.9.8.7";
        }));
        servers.Kill(Server::Login);
        EXPECT_TRUE(WaitUntil(modServerControl::IsLoginRunning));
        const Restart restart{.asker = journal::Asker::Tray, .message = {}, .meanwhile = {}};
        EXPECT_TRUE(support::Run(RestartAll(restart, kTools), kPause));
    });
    EXPECT_TRUE(WaitUntil([&] {
        tick();
        return !boxes.Seen().empty();
    }));
    ExpectOneOfEach("after the box");
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{"Winsocks clean up failed. Error Number:[10093"});
}

TEST_F(Restarting, AStubbornDialogKeepsNoOtherServerDown) {
    ExpectOneOfEach("at first");
    panel.errorDetector.chkHandlePopups.Value(1);
    servers.Command(Server::Login, Command::RaiseStubbornDialog);
    panel.errorDetector.tmrState.Enabled(true);
    EXPECT_TRUE(WaitUntil(
        [&] { return panel.errorDetector.lblStubbornDialog.Caption().starts_with("kLogin.exe shows \""); }));
    EXPECT_TRUE(panel.errorDetector.cmdBringDialogToFront.Enabled());
    servers.Kill(Server::Zone);
    EXPECT_TRUE(WaitUntil([&] { return modServerControl::IsZoneRunning(); }));
    // Without "Close the dialogs" nobody goes on with it.
    panel.errorDetector.chkHandlePopups.Value(0);
    EXPECT_TRUE(support::Settle(kPause));
    EXPECT_EQ(servers.DialogCount(), 1);
}

TEST_F(Panel, TheDetectorKnowsADialogByItsWholeTitle) {
    clsLog log;
    const ErrorDetectorSettings settings{.handleDialogs = true, .logFilename = "errors.log", .message = {}};
    const ErrorDetector detector(log, kerno, [&] { return settings; });
    const support::WindowHandle dialog = support::DialogWindow("Error in kLogin");
    ASSERT_TRUE(servers.Launch(Server::Login));
    servers.Command(Server::Login, Command::RaiseDialogs);
    ASSERT_TRUE(WaitUntil([&] { return servers.DialogCount() == 1; }));
    support::Run(detector.Handle());
    EXPECT_FALSE(IsWindow(dialog.get()));
    EXPECT_NE(Log("errors.log").find("WinError: Really close"), std::string::npos) << Log("errors.log");
}

TEST_F(Panel, AFileThatIsNotThereHasNoAddressThatChanges) {
    ASSERT_TRUE(DeleteFileA(kerno.INIPath().c_str()));
    IPChangeMonitor monitor(kTools, kerno);
    const Addresses addresses = support::Run(monitor.Look());
    support::Run(
        monitor.Act(addresses, {.enabled = true, .modifyIni = true, .restart = false, .message = {}}));
    EXPECT_FALSE(std::filesystem::exists(kerno.INIPath()));
}

TEST_F(Panel, TheEndOfTheSessionSavesWithoutABox) {
    support::MessageBoxes boxes;
    gui::Local<frmServerControl> held;
    held->Load();
    held->connections.txtMessageIPChange.Text("moving");
    SendMessageA(held->Window(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(kTools.INIProperty(kMessageOnIPChange), "moving");
    const common::FileHandle lock(
        CreateFileA(kTools.INIPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    SendMessageA(held->Window(), WM_ENDSESSION, TRUE, 0);
    EXPECT_TRUE(boxes.Seen().empty());
}

} // namespace
