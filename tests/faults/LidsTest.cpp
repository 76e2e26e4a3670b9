#include "Faults.h"
#include "TableFiles.h"

#include "app/frmMainMenu.h"
#include "gui/Aside.h"
#include "servers/Databases.h"
#include "servers/modServerControl.h"
#include "servers/Processes.h"
#include "supervision/frmServerControl.h"
#include "support/Database.h"

#include <atomic>
#include <memory>
#include <random>

namespace {

using modServerControl::kServers;
using modServerControl::Server;
using standin::Command;
using support::WaitUntil;

/// The pause before the zone server is told to close counts two thousand million turns, which takes minutes
/// where others have the processors too.
constexpr std::chrono::minutes kLimit{5};
constexpr ULONGLONG kLookFor = std::chrono::milliseconds(kLimit - std::chrono::minutes(1)).count();

gui::Task<> Sweep(bool& over) {
    co_await modServerControl::CloseServerDialogs();
    over = true;
}

gui::Task<> Copy(clsMySQLCopyDatabase& copier, bool& over) {
    co_await copier.ConnectSource();
    co_await copier.ConnectDestination();
    co_await copier.CopyDatabase("glogin", "bk");
    over = true;
}

gui::Task<> AskOf(frmServerControl& form) {
    co_await form.MsgBox("Go on ?", MB_YESNO);
}

gui::Task<> CallThatDoesNotComeBack(std::shared_ptr<std::atomic<bool>> release) {
    auto call = [release] {
        while (!*release)
            Sleep(5);
    };
    co_await gui::Aside(call);
}

/// What can lie over a long action: windows, boxes, the system's own loops, a call that does not come back.
class Lids : public Faults, protected support::Databases {
protected:
    struct Lid {
        const char* name;
        std::function<void()> open;
        std::function<bool()> isOpen;
        std::function<void()> close;
        /// It is laid anew where it is not there, or not there any more: the system takes the title bar from
        /// the mouse when another program's window comes to the front, and a press may miss it for the same
        /// reason.
        bool again = false;
    };
    struct Action {
        const char* name;
        std::function<void()> begin;
        std::function<bool()> isOver;
        /// What the action waits for at last, where it does not end by itself.
        std::function<void()> meanwhile = [] {};
        std::function<void()> end = [] {};
    };

    Lids() {
        // Backups are made of the three databases' files.
        Set({{settings::key::kKernoPath, servers.Path()}, {settings::key::kMySQLPath, program / "mysql\\"}});
        kerno.INIProperty(settings::key::kBackupOption, "0");
        WriteTables(program / "mysql", 'x');
        TurnOn({settings::key::kShutdownOnBackup});
        menu.Show();
        panel.Show();
    }
    ~Lids() override {
        *release = true;
        panel.Unload();
        EXPECT_TRUE(support::Settle());
    }

    static HWND Titled(const char* title) {
        const HWND window = FindWindowA(modServerControl::kDialogClass, title);
        return IsWindowVisible(window) ? window : nullptr;
    }
    static HWND Box(const char* start) {
        return modServerControl::FindWindowWhere(nullptr, modServerControl::kDialogClass, [&](HWND box) {
            return GetWindowThreadProcessId(box, nullptr) == GetCurrentThreadId() &&
                   support::TextOf(GetDlgItem(box, 0xFFFF)).starts_with(start);
        });
    }
    /// The window of this thread's that a loop of the system's own is about.
    static HWND InLoop(DWORD loop) {
        GUITHREADINFO thread{};
        thread.cbSize = sizeof thread;
        GetGUIThreadInfo(GetCurrentThreadId(), &thread);
        return thread.flags & loop ? panelWindow : nullptr;
    }
    static void SendMouse(DWORD what) {
        INPUT input{};
        input.mi.dwFlags = what;
        SendInput(1, &input, sizeof input);
    }
    /// By the mouse, which holds it: newer Wine ends a move by keyboard at the next message.
    void GrabTitleBar() const {
        SetForegroundWindow(panel.Window());
        RECT place{};
        GetWindowRect(panel.Window(), &place);
        SetCursorPos(place.left + 100, place.top + GetSystemMetrics(SM_CYCAPTION) / 2 + 2);
        SendMouse(MOUSEEVENTF_LEFTUP);
        SendMouse(MOUSEEVENTF_LEFTDOWN);
    }
    static Lid WindowLid(const char* name, const char* title, std::function<void()> open) {
        return {name, std::move(open), [title] { return Titled(title) != nullptr; },
                [title] { PostMessageA(Titled(title), WM_CLOSE, 0, 0); }};
    }
    static Lid BoxLid(const char* name, const char* start, int button, std::function<void()> open) {
        return {name, std::move(open), [start] { return Box(start) != nullptr; },
                [start, button] { PostMessageA(Box(start), WM_COMMAND, static_cast<WPARAM>(button), 0); }};
    }
    std::vector<Lid> AllLids();
    std::vector<Action> AllActions();
    void LaunchAll();
    bool HasNewOnes();
    bool HasBackup() {
        const std::filesystem::path folder = program / "kTools\\Backup";
        return std::filesystem::exists(folder) && !std::filesystem::is_empty(folder);
    }
    void TickBackupAt(long second) {
        panel.backup.clock.Reset();
        for (long past = 1; past < second; ++past)
            panel.backup.clock.Count();
        panel.backup.tmrBackup.Tick();
    }
    void Lay(const Lid& lid, const Action& action);

    gui::Local<frmMainMenu> heldMenu{false};
    frmMainMenu& menu = *heldMenu;
    gui::Local<frmServerControl> heldPanel;
    frmServerControl& panel = *heldPanel;
    std::shared_ptr<std::atomic<bool>> release = std::make_shared<std::atomic<bool>>(false);
    std::array<std::vector<modServerControl::ProcessId>, kServers.size()> before;
    clsMySQLCopyDatabase copier;
    bool isOver = false;
    static inline HWND panelWindow = nullptr;
};

std::vector<Lids::Lid> Lids::AllLids() {
    panelWindow = panel.Window();
    return {
        WindowLid("About", "About Kerno Tools", [&] { menu.mnuAbout.Choose(); }),
        WindowLid("the settings dialog", "Kerno Tools :: Server Control Settings",
                  [&] { panel.mnuSettings.Choose(); }),
        WindowLid("a folder picker", "Kerno Tools :: Server Folder", [&] { menu.mnuSetPath.Choose(); }),
        BoxLid("a question", "Go on ?", IDNO, [&] { gui::ToolTasks().Start(AskOf(panel)); }),
        BoxLid("a box with OK", "Nobody presses OK.", IDOK, [&] { panel.Tell("Nobody presses OK."); }),
        {"an open menu", [&] { PostMessageA(panel.Window(), WM_SYSCOMMAND, SC_KEYMENU, ' '); },
         [] { return InLoop(GUI_INMENUMODE) != nullptr; },
         [&] { PostMessageA(panel.Window(), WM_CANCELMODE, 0, 0); }},
        {"a dragged window", [&] { GrabTitleBar(); }, [] { return InLoop(GUI_INMOVESIZE) != nullptr; },
         [] { SendMouse(MOUSEEVENTF_LEFTUP); }, true},
        {"a call that does not come back",
         [&] {
             *release = false;
             gui::ToolTasks().Start(CallThatDoesNotComeBack(release));
         },
         [] { return gui::CallsAreAside(); }, [&] { *release = true; }},
    };
}

std::vector<Lids::Action> Lids::AllActions() {
    return {
        {"shutdown",
         [&] {
             LaunchAll();
             DeleteFileA(journal::Path().c_str());
             menu.mnuShutdownKerno.Choose();
         },
         // Behind the zone server's pause.
         [] { return journal::LastLines(1).ends_with("Zone server: told to close\r\n"); }},
        {"restart",
         [&] {
             LaunchAll();
             menu.mnuRestartKerno.Choose();
         },
         [&] { return HasNewOnes(); }},
        {"sweep",
         [&] {
             isOver = false;
             LaunchAll();
             servers.Command(Server::Login, Command::RaiseStubbornDialog);
             EXPECT_TRUE(WaitUntil([&] { return servers.DialogCount() == 1; }));
             gui::ToolTasks().Start(Sweep(isOver));
         },
         [&] { return isOver; },
         // The sweep looks after the dialog until somebody answers it.
         [&] {
             modServerControl::FindWindowWhere(nullptr, modServerControl::kDialogClass, [](HWND dialog) {
                 if (modServerControl::IsServerProcessWindow(dialog))
                     PostMessageA(dialog, WM_COMMAND, IDOK, 0);
                 return false;
             });
         }},
        {"copy",
         [&] {
             isOver = false;
             remote.Execute("DROP DATABASE IF EXISTS bk");
             gui::ToolTasks().Start(Copy(copier, isOver));
         },
         [&] { return isOver; }},
        {"backup by hand",
         [&] {
             LaunchAll();
             std::filesystem::remove_all(program / "kTools\\Backup");
             panel.backup.cmdBackupFiles.Press();
         },
         [&] { return HasBackup() && HasNewOnes(); }},
        {"timed backup",
         [&] {
             LaunchAll();
             std::filesystem::remove_all(program / "kTools\\Backup");
             TickBackupAt(3600);
         },
         [&] { return HasBackup(); }, [] {},
         [&] {
             EXPECT_TRUE(support::Settle(kLimit));
             TickBackupAt(3720);
         }},
    };
}

bool Lids::HasNewOnes() {
    return std::ranges::all_of(kServers, [&](Server server) {
        const auto now = modServerControl::ProcessesOf(server);
        return now.size() == 1 && now != before[static_cast<std::size_t>(server)] &&
               modServerControl::IsRunning(server);
    });
}

void Lids::LaunchAll() {
    for (const Server server : kServers) {
        if (!servers.IsRunning(server))
            servers.Launch(server);
        before[static_cast<std::size_t>(server)] = modServerControl::ProcessesOf(server);
    }
}

void Lids::Lay(const Lid& lid, const Action& action) {
    SCOPED_TRACE(std::string(lid.name) + " over " + action.name);
    action.begin();
    ASSERT_FALSE(action.isOver());
    lid.open();
    bool wasOpen = false;
    bool wasOver = false;
    bool stillOpen = false;
    {
        // A press that comes sooner would be the second one of a double click.
        const ULONGLONG pressAgain = 2 * GetDoubleClickTime();
        // The loops of menus and dragged windows lie over the test as well.
        const support::Meanwhile look([&, end = GetTickCount64() + kLookFor,
                                       next = GetTickCount64() + (lid.again ? pressAgain : 0)]() mutable {
            // Looking costs the action's time.
            const ULONGLONG now = GetTickCount64();
            if (wasOver || now < next)
                return;
            next = now + 200;
            if (now < end && (lid.again || !wasOpen) && !lid.isOpen()) {
                if (lid.again) {
                    lid.open();
                    next = now + pressAgain;
                }
                return;
            }
            if (!wasOpen)
                action.meanwhile();
            wasOpen = true;
            wasOver = action.isOver();
            if (!wasOver && now < end)
                return;
            stillOpen = lid.isOpen();
            wasOver = true;
            lid.close();
        });
        EXPECT_TRUE(WaitUntil([&] { return wasOver; }, kLimit));
    }
    EXPECT_TRUE(wasOpen);
    EXPECT_TRUE(action.isOver()) << journal::LastLines(20) << Log("Backup.log");
    EXPECT_TRUE(stillOpen) << "the lid has gone by itself";
    EXPECT_TRUE(WaitUntil([&] { return !lid.isOpen(); }));
    action.end();
    EXPECT_TRUE(support::Settle(kLimit));
}

TEST_F(Lids, TheActionBelowEndsWhileTheLidStays) {
    root.Execute("CREATE DATABASE glogin");
    root.Execute("CREATE TABLE glogin.t (id int PRIMARY KEY, v varchar(200))");
    root.Execute("INSERT INTO glogin.t SELECT seq, REPEAT('x', 200) FROM " + support::Numbers(1, 200'000));
    copier.SourceHostname(support::kLocalServer);
    copier.SourceUsername("root");
    copier.DestinationHostname(support::kRemoteServer);
    copier.DestinationUsername("root");
    const std::vector<Lid> lids = AllLids();
    const std::vector<Action> actions = AllActions();
    // In short, each lid lies over one of the actions.
    const std::size_t step = static_cast<std::size_t>(Times(static_cast<int>(actions.size()), 1));
    for (std::size_t i = 0; i < lids.size(); ++i)
        for (std::size_t k = i % step; k < actions.size() && !HasFailure(); k += step)
            Lay(lids[i], actions[k]);
}

/// Presses that meet a restart, at random; each is refused, joins or opens a window.
TEST_F(Lids, AStormOfPressesDoesNotDeepenTheStack) {
    LaunchAll();
    gui::MenuItem* const items[] = {&menu.mnuRestartKerno, &menu.mnuRestartZone, &menu.mnuStartKerno,
                                    &menu.mnuAbout,        &menu.mnuSetPath,     &panel.mnuSettings,
                                    &menu.mnuShutdownLogin};
    std::mt19937 random(1);
    std::uintptr_t highest = 0;
    std::uintptr_t lowest = UINTPTR_MAX;
    const int presses = Times(300, 3000);
    int pressed = 0;
    menu.mnuRestartKerno.Choose();
    {
        const support::Meanwhile press([&] {
            const char here = 0;
            const auto depth = reinterpret_cast<std::uintptr_t>(&here);
            highest = std::max(highest, depth);
            lowest = std::min(lowest, depth);
            if (pressed++ < presses)
                items[random() % std::size(items)]->Choose();
        });
        EXPECT_TRUE(WaitUntil([&] { return pressed >= presses; }, kLimit));
    }
    EXPECT_LT(highest - lowest, 4096u);
    RecordProperty("depth", static_cast<int>(highest - lowest));
    const support::Meanwhile close([&] {
        modServerControl::FindWindowWhere(nullptr, modServerControl::kDialogClass, [&](HWND window) {
            if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId() && window != menu.Window())
                PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(GetDlgItem(window, IDNO) ? IDNO : IDOK),
                             0);
            if (window != menu.Window())
                PostMessageA(window, WM_CLOSE, 0, 0);
            return false;
        });
    });
    EXPECT_TRUE(support::Settle(kLimit));
}

} // namespace
