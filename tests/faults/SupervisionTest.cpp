#include "Faults.h"

#include "app/frmMainMenu.h"
#include "servers/modServerControl.h"
#include "supervision/frmServerControl.h"
#include "supervision/RestartAll.h"
#include "support/ChildProcess.h"

#include <random>
#include <set>

namespace {

using modServerControl::kServers;
using modServerControl::Server;
using standin::Command;
using support::WaitUntil;

constexpr std::chrono::minutes kPause{3};

gui::Task<> RestartByTray(clsINI priorities) {
    const supervision::Restart restart{.asker = journal::Asker::Tray, .message = {}, .meanwhile = {}};
    co_await supervision::RestartAll(restart, priorities);
}

/// The servers under supervision, in one kind of trouble after the other.
class Supervision : public Faults {
protected:
    Supervision() {
        Supervise();
        TurnOn({settings::key::kErrorCheckingInterval, settings::key::kShutdownOnBackup,
                settings::key::kLogErrorPopups});
        Set({{settings::key::kLogFilename, "errors.log"}});
    }

    bool OneOfEach() {
        const auto isOne = [&](Server server) {
            const int instances = servers.Instances(server);
            most = std::max(most, instances);
            return instances == 1 && servers.MainWindow(server);
        };
        return std::ranges::count_if(kServers, isOne) == std::ssize(kServers);
    }
    static Server Next(Server server) {
        return kServers[(static_cast<std::size_t>(server) + 1) % kServers.size()];
    }
    void TickBackupAt(long second) {
        panel.backup.clock.Reset();
        for (long past = 1; past < second; ++past)
            panel.backup.clock.Count();
        panel.backup.tmrBackup.Tick();
    }
    static void ForEachBox(const std::function<void(HWND)>& act) {
        modServerControl::FindWindowWhere(nullptr, modServerControl::kDialogClass, [&](HWND box) {
            if (GetWindowThreadProcessId(box, nullptr) == GetCurrentThreadId() && GetDlgItem(box, 0xFFFF))
                act(box);
            return false;
        });
    }
    /// Presses OK in whatever boxes the panel shows; nobody did so far.
    static void CloseBoxes() {
        ForEachBox([](HWND box) { PostMessageA(box, WM_COMMAND, IDOK, 0); });
    }
    /// A program that is no server has a window of the character server's class, and hangs.
    void HangStranger(const char* title) {
        stranger = servers.Launch(Server::Character, "stranger.exe");
        ASSERT_TRUE(support::SetTextOf(stranger, title));
        servers.Command(stranger, Command::Hang, 600);
    }

    struct Fault {
        const char* name;
        std::function<void(Server victim)> begin;
        std::function<void()> end = [] {};
        /// A server that is told to close may still be there for a moment when its successor is.
        bool restarts = false;
    };
    void Try(const Fault& fault, Server victim, std::chrono::milliseconds after);

    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    common::FileHandle lock;
    HWND stranger = nullptr;
    int most = 0;
    ULONGLONG longest = 0;
};

void Supervision::Try(const Fault& fault, Server victim, std::chrono::milliseconds after) {
    SCOPED_TRACE(std::string(fault.name) + ", " + modServerControl::ComponentOf(victim).name + " killed " +
                 std::to_string(after.count()) + " ms later");
    most = 0;
    fault.begin(victim);
    WaitUntil([] { return false; }, after);
    servers.Kill(victim);
    const ULONGLONG killed = GetTickCount64();
    // A restart takes its time on a busy machine.
    ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); }, std::chrono::minutes(2))) << journal::LastLines(10);
    if (!fault.restarts)
        longest = std::max(longest, GetTickCount64() - killed);
    fault.end();
    ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); })) << journal::LastLines(10);
    EXPECT_TRUE(support::Settle(kPause));
    panel.errorDetector.tmrErrorDetector.Tick();
    ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); })) << journal::LastLines(10);
    EXPECT_TRUE(fault.restarts || most == 1) << most << " at a time\n" << journal::LastLines(10);
}

TEST_F(Supervision, AServerThatDiesIsBackOnceInEveryTrouble) {
    const std::string logs = program / "kTools\\Logs";
    const Fault faults[] = {
        {"a hung server", [&](Server victim) { servers.Command(Next(victim), Command::Hang, 5); }},
        {"a hung window of another program", [&](Server) { HangStranger("Another program"); },
         [&] { support::KillOwner(stranger); }},
        // Told by its title, it would be the server, and keep it from being started.
        {"a hung window of another program with a server's title",
         [&](Server) {
             modServerControl::ServerDetectionMethod(modServerControl::kDetectByProcess);
             HangStranger("Kerno Character Server");
         },
         [&] {
             support::KillOwner(stranger);
             modServerControl::ServerDetectionMethod(modServerControl::kDetectByTitle);
         }},
        {"a dialog that does not close",
         [&](Server victim) { servers.Command(Next(victim), Command::RaiseStubbornDialog); },
         [&] { servers.KillAll(); }},
        {"200 dialogs", [&](Server victim) { servers.Command(Next(victim), Command::RaiseDialogs, 200); }},
        {"an open box", [&](Server) { panel.Tell("Nobody presses OK."); }, CloseBoxes},
        {"a locked Kerno.ini",
         [&](Server) {
             lock.reset(
                 CreateFileA(kerno.INIPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
         },
         [&] {
             lock.reset();
             CloseBoxes();
         }},
        {"a restart", [&](Server) { gui::ToolTasks().Start(RestartByTray(kTools)); }, [] {}, true},
        {"a timed backup", [&](Server) { TickBackupAt(3600); }, [&] { TickBackupAt(3720); }, true},
        {"logs that cannot be written",
         [&](Server) {
             std::filesystem::remove_all(logs);
             std::filesystem::create_directories(program / "kTools");
             support::WriteFile(logs, "a file");
         },
         [&] { std::filesystem::remove(logs); }},
    };
    panel.Load();
    std::mt19937 random(1);
    ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); }));
    // In short, each trouble meets one of the servers.
    const std::size_t step = Times(kServers.size(), 1);
    for (int round = Times(1, 2); round > 0; --round)
        for (std::size_t i = 0; i < std::size(faults); ++i)
            for (std::size_t victim = i % step; victim < kServers.size() && !HasFatalFailure();
                 victim += step)
                Try(faults[i], kServers[victim], std::chrono::milliseconds(random() % 500));
    RecordProperty("longest", static_cast<int>(longest));
}

const support::ChildEntry watchesServers("WatchesServers", [](const std::string& folders) {
    const std::size_t bar = folders.find('|');
    common::ProgramFolder(folders.substr(0, bar));
    modServerControl::KernoPath(folders.substr(bar + 1) + "\\");
    gui::Local<frmServerControl> panel;
    panel->Load();
    WaitUntil([] { return false; }, std::chrono::hours(1));
});

/// The restarter of this copy of the tool, or of another one, comes at the same moment.
TEST_F(Supervision, AnOperatorWhoStartsAServerThatHasJustCrashedDoublesNothing) {
    Set({{settings::key::kErrorCheckingInterval, "0.05"},
         {settings::key::kKernoPath, servers.Path()},
         {settings::key::kMySQLPath, servers.Path()}});
    gui::Local<frmMainMenu> menu(false);
    menu->Load();
    gui::MenuItem* const starts[] = {&menu->mnuStartLogin, &menu->mnuStartCharacter, &menu->mnuStartZone};
    std::mt19937 random(1);
    const int crashes = Times(12, 200);
    std::set<HWND> boxes;
    const support::Meanwhile decline([&] {
        ForEachBox([&](HWND box) {
            boxes.insert(box);
            PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(GetDlgItem(box, IDNO) ? IDNO : IDOK), 0);
        });
    });
    for (const bool here : {true, false}) {
        std::optional<support::ChildProcess> otherCopy;
        if (here)
            panel.Load();
        else
            otherCopy.emplace("WatchesServers",
                              program.Path() + "|" + servers.Path().substr(0, servers.Path().size() - 1));
        ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); }));
        for (int crash = 0; crash < crashes / 2 && !HasFailure(); ++crash) {
            const auto victim = static_cast<std::size_t>(random() % kServers.size());
            most = 0;
            servers.Kill(kServers[victim]);
            WaitUntil([] { return false; }, std::chrono::milliseconds(random() % 50));
            starts[victim]->Choose();
            ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); })) << journal::LastLines(10);
            EXPECT_TRUE(support::Settle(kPause));
            EXPECT_EQ(most, 1) << journal::LastLines(10);
        }
        panel.Unload();
        EXPECT_TRUE(support::Settle());
    }
    RecordProperty("boxes", static_cast<int>(boxes.size()));
}

} // namespace
