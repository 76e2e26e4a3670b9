#include "Faults.h"

#include "servers/modServerControl.h"
#include "supervision/frmServerControl.h"
#include "supervision/RestartAll.h"

#include <random>

namespace {

using modServerControl::kServers;
using modServerControl::Server;
using standin::Command;
using support::WaitUntil;

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
        panel.Load();
    }

    bool OneOfEach() {
        return std::ranges::all_of(kServers, [&](Server server) {
            return servers.Instances(server) == 1 && servers.MainWindow(server);
        });
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
    /// Presses OK in whatever boxes the panel shows; nobody did so far.
    static void CloseBoxes() {
        modServerControl::FindWindowWhere(nullptr, modServerControl::kDialogClass, [](HWND box) {
            if (GetWindowThreadProcessId(box, nullptr) == GetCurrentThreadId() && GetDlgItem(box, 0xFFFF))
                PostMessageA(box, WM_COMMAND, IDOK, 0);
            return false;
        });
    }

    struct Fault {
        const char* name;
        std::function<void(Server victim)> begin;
        std::function<void()> end = [] {};
    };

    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    common::FileHandle lock;
};

TEST_F(Supervision, AServerThatDiesIsBackOnceInEveryTrouble) {
    const std::string logs = program / "kTools\\Logs";
    const Fault faults[] = {
        {"a hung server", [&](Server victim) { servers.Command(Next(victim), Command::Hang, 5); }},
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
        {"a restart", [&](Server) { gui::ToolTasks().Start(RestartByTray(kTools)); }},
        {"a timed backup", [&](Server) { TickBackupAt(3600); }, [&] { TickBackupAt(3720); }},
        {"logs that cannot be written",
         [&](Server) {
             std::filesystem::remove_all(logs);
             std::filesystem::create_directories(program / "kTools");
             support::WriteFile(logs, "a file");
         },
         [&] { std::filesystem::remove(logs); }},
    };
    std::mt19937 random(1);
    ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); }));
    for (int round = Times(1, 5); round > 0; --round) {
        for (const auto& [name, begin, end] : faults) {
            for (const Server victim : kServers) {
                SCOPED_TRACE(std::string(name) + ", " + modServerControl::ComponentOf(victim).name);
                begin(victim);
                WaitUntil([] { return false; }, std::chrono::milliseconds(random() % 500));
                servers.Kill(victim);
                ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); }));
                end();
                ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); }));
                EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
                panel.errorDetector.tmrErrorDetector.Tick();
                ASSERT_TRUE(WaitUntil([&] { return OneOfEach(); }));
            }
        }
    }
}

} // namespace
