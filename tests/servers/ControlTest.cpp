#include "servers/modServerControl.h"
#include "support/FakeWindow.h"
#include "support/Servers.h"
#include "support/TempFolder.h"
#include "support/Test.h"

using namespace modServerControl;
using standin::Command;
using support::DialogWindow;
using support::FakeWindow;
using support::ServerFolder;
using support::WaitUntil;
using support::WindowHandle;

namespace {

TEST(Control, StartsMinimisedAndShutsDown) {
    const ServerFolder folder;
    for (const Server server : kServers) {
        EXPECT_EQ(support::Run(Shutdown(server)), 0);
        EXPECT_EQ(Start(server), 1);
        ASSERT_TRUE(WaitUntil([&] { return IsIconic(MainWindow(server)); }));
        // Minimised, and with the focus.
        EXPECT_EQ(GetPropA(MainWindow(server), standin::kShowCommandProperty),
                  reinterpret_cast<HANDLE>(INT_PTR{SW_SHOWMINIMIZED}));
    }
    EXPECT_EQ(std::filesystem::current_path().string() + "\\", folder.Path());
    // The zone server's pause ends in its overflow, and takes the status along.
    EXPECT_EQ(support::Run(ShutdownLoginServer()), 1);
    EXPECT_EQ(support::Run(ShutdownCharacterServer()), 1);
    EXPECT_EQ(support::Run(ShutdownZoneServer()), 0);
    EXPECT_TRUE(WaitUntil([&] {
        return std::ranges::none_of(kServers, [&](Server server) { return folder.IsRunning(server); });
    }));
    std::filesystem::remove(folder.Path() + "kLogin.exe");
    support::WriteFile(folder.Path() + "kZone.exe", "no program");
    EXPECT_EQ(StartLoginServer(), 0);
    EXPECT_EQ(StartZoneServer(), 0);
    KernoPath(folder.Path().substr(0, folder.Path().size() - 1));
    EXPECT_EQ(StartCharacterServer(), 0);
}

TEST(Control, AServerWhoseFileSomebodyHasForAMomentIsStarted) {
    const ServerFolder folder;
    EXPECT_TRUE(
        support::WorksInAMomentsLock(folder.Path() + "kLogin.exe", [] { return Start(Server::Login) == 1; }));
    EXPECT_TRUE(WaitUntil([] { return IsRunning(Server::Login); }));
}

TEST(Control, ShowsAndHidesTheWindows) {
    const ServerFolder folder;
    EXPECT_EQ(ShowZoneServer(), 0);
    const HWND main = folder.Launch(Server::Zone);
    const HWND app = folder.AppWindow(Server::Zone);
    ASSERT_TRUE(main);
    ASSERT_TRUE(app);
    // Of a second instance as well, but one application window only.
    const HWND second = folder.Launch(Server::Zone, "second.exe");
    EXPECT_EQ(HideZoneServer(), 1);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindowVisible(main) && !IsWindowVisible(second); }));
    EXPECT_EQ(ShowZoneServer(), 1);
    EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(main) && IsWindowVisible(second); }));
    ASSERT_TRUE(PostMessageA(second, WM_CLOSE, 0, 0));
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(second); }));
    EXPECT_EQ(HideZoneServer(), 1);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindowVisible(main) && !IsWindowVisible(app); }));
    EXPECT_TRUE(IsZoneRunning());
    EXPECT_EQ(ShowZoneServer(), 1);
    EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(main) && IsWindowVisible(app); }));
    ASSERT_TRUE(support::SetTextOf(app, "Something else"));
    EXPECT_EQ(HideZoneServer(), 0);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); }));
    EXPECT_TRUE(IsWindowVisible(app));
}

TEST(Control, OutlivesServersThatRefuseHangOrCrash) {
    const ServerFolder folder;
    for (const Server server : kServers)
        ASSERT_TRUE(folder.Launch(server));
    folder.Command(Server::Character, Command::RefuseToClose);
    EXPECT_EQ(support::Run(ShutdownCharacterServer()), 1);
    EXPECT_TRUE(WaitUntil(
        [&] { return support::TextOf(folder.Child(Server::Character, "TMemo")).ends_with("refused.\r\n"); }));
    EXPECT_TRUE(IsCharacterRunning());

    folder.Command(Server::Login, Command::WriteLines, 3);
    folder.Command(Server::Login, Command::Hang, 600);
    folder.Command(Server::Zone, Command::Crash);
    EXPECT_TRUE(WaitUntil([&] { return !folder.IsRunning(Server::Zone); }));
    EXPECT_EQ(TrayStatusText(), "Kerno Tools :: [Login(Active) Character(Active) Zone(Inactive)]");
    // Nothing here may wait for an answer that does not come in ten minutes.
    EXPECT_TRUE(WaitUntil([&] { return ReadLoginLog().empty(); }));
    EXPECT_EQ(HideLoginServer(), 1);
    EXPECT_EQ(ShowLoginServer(), 1);
    EXPECT_EQ(SetLoginPriority(4), 1);
    EXPECT_EQ(support::Run(ShutdownLoginServer()), 1);
    EXPECT_TRUE(IsLoginRunning());
}

TEST(Control, AShutdownClosesOneInstanceOnly) {
    const ServerFolder folder;
    const HWND windows[] = {folder.Launch(Server::Login), folder.Launch(Server::Login, "second.exe")};
    for (const HWND window : windows)
        folder.Command(window, Command::RefuseToClose);
    EXPECT_EQ(support::Run(ShutdownLoginServer()), 1);
    std::ptrdiff_t asked = 0;
    for (const HWND window : windows) {
        // What it writes on demand comes after what it writes about a close.
        folder.Command(window, Command::WriteLines);
        const HWND memo = FindWindowExA(window, nullptr, kMessageBoxClass, nullptr);
        ASSERT_TRUE(WaitUntil([&] { return support::TextOf(memo).ends_with("Line 1\r\n"); }));
        asked += support::TextOf(memo).find("refused") != std::string::npos;
    }
    EXPECT_EQ(asked, 1);
}

WindowHandle askedMeanwhile;

/// A server that asks something as soon as anybody looks for its window.
LRESULT CALLBACK AskingServer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_GETTEXT && !askedMeanwhile)
        askedMeanwhile = DialogWindow("kLogin asks");
    return DefWindowProcA(window, message, wParam, lParam);
}

TEST(Control, AShutdownSweepsDialogsAwayBeforeAndAfterTheClose) {
    const ServerFolder folder;
    ASSERT_TRUE(folder.Launch(Server::Login));
    folder.Command(Server::Login, Command::RaiseDialogs);
    ASSERT_TRUE(WaitUntil([&] { return folder.DialogCount() == 1; }));
    EXPECT_EQ(support::Run(ShutdownCharacterServer()), 0);
    EXPECT_EQ(folder.DialogCount(), 0);

    folder.KillAll();
    const WindowHandle server = FakeWindow("TForm1", "Kerno Login Server ", AskingServer);
    EXPECT_EQ(support::Run(ShutdownLoginServer()), 1);
    ASSERT_TRUE(askedMeanwhile);
    EXPECT_FALSE(IsWindow(askedMeanwhile.release()));
}

TEST(Messages, AreTakenFromTheServerAndReachThePlayersThroughTwo) {
    const ServerFolder folder;
    EXPECT_EQ(TypeZoneMessage("nobody"), 0);
    EXPECT_EQ(ClickServerButton("Send Message"), 0);
    EXPECT_EQ(ReadZoneLog(), "");
    ASSERT_TRUE(folder.Launch(Server::Zone));
    const HWND memo = folder.Child(Server::Zone, kMessageBoxClass);
    ASSERT_TRUE(support::SetTextOf(memo, "  one\r\ntwo, \xE9 "));
    EXPECT_EQ(ReadZoneLog(), "one\r\ntwo, \xE9");
    EXPECT_EQ(support::TextOf(memo), "");
    EXPECT_EQ(ReadZoneLog(), "");
    // The zone server's own button is not the one that is pressed.
    EXPECT_EQ(SendPlayerMessage("Closing, caf\xE9"), 0);
    const HWND field = folder.Child(Server::Zone, kTextFieldClass);
    EXPECT_TRUE(WaitUntil([&] { return support::TextOf(field) == "Closing, caf\xE9"; }));
    ASSERT_TRUE(folder.Launch(Server::Character));
    for (const std::int16_t method : {kDetectByTitle, kDetectByProcess}) {
        ServerDetectionMethod(method);
        EXPECT_EQ(ClickServerButton("No such button"), 0);
        EXPECT_EQ(SendPlayerMessage("!"), 1);
        std::string log;
        EXPECT_TRUE(WaitUntil([&] { return !(log += ReadZoneLog()).empty(); }));
        const char* sent = method == kDetectByTitle ? "Broadcast: Closing, caf\xE9!\r\n" : "Broadcast: !\r\n";
        EXPECT_TRUE(log.ends_with(sent)) << log;
    }
}

TEST(Messages, OfABoxThatRefusesToBeEmptiedAreTakenOnce) {
    const ServerFolder folder;
    ASSERT_TRUE(folder.Launch(Server::Login));
    folder.Command(Server::Login, Command::WriteLines, 2);
    folder.Command(Server::Login, Command::KeepMessages);
    std::string log;
    EXPECT_TRUE(WaitUntil([&] { return (log += ReadLoginLog()).ends_with("Line 2\r\n"); })) << log;
    EXPECT_EQ(ReadLoginLog(), "");
    folder.Command(Server::Login, Command::WriteLines);
    EXPECT_TRUE(WaitUntil([&] { return !(log = ReadLoginLog()).empty(); }));
    EXPECT_EQ(log, "Line 1\r\n");
    EXPECT_EQ(ReadLoginLog(), "");
}

TEST(Dialogs, AreClosedByTheirKindAndSweptAwayWhoeverRaisesThem) {
    const ServerFolder folder;
    ASSERT_TRUE(folder.Launch(Server::Login));
    EXPECT_EQ(support::Run(CloseServerDialogs()), 1);
    folder.Command(Server::Login, Command::RaiseDialogs);
    ASSERT_TRUE(WaitUntil([&] { return folder.DialogCount() == 1; }));
    EXPECT_EQ(HasDialogByProcess(), 1);
    EXPECT_EQ(HasDialogByTitle(), 0);
    EXPECT_EQ(CloseDialogByTitle(), "");
    // All but the last character is read.
    EXPECT_EQ(CloseDialogByProcess() + ".", std::string("Error 1: ") + standin::kErrorText);
    EXPECT_TRUE(WaitUntil([&] { return !HasDialogByProcess(); }));
    folder.Command(Server::Login, Command::RaiseTitledDialog);
    ASSERT_TRUE(WaitUntil([&] { return folder.DialogCount() == 1; }));
    EXPECT_EQ(HasDialogByTitle(), 1);
    EXPECT_TRUE(CloseDialogByTitle().starts_with("Error 2: "));
    EXPECT_TRUE(WaitUntil([&] { return !HasDialogByTitle(); }));

    folder.Command(Server::Login, Command::RaiseDialogs, 20);
    // A program that is no server, with a server's name in its title.
    const HWND stranger = folder.Launch(Server::Character, "stranger.exe");
    folder.Command(stranger, Command::RaiseTitledDialog);
    EXPECT_TRUE(WaitUntil([&] { return folder.DialogCount() == 9; }));
    EXPECT_EQ(support::Run(CloseServerDialogs()), 1);
    EXPECT_EQ(folder.DialogCount(), 0);
    EXPECT_EQ(HasDialogByProcess(), 0);
    EXPECT_EQ(HasDialogByTitle(), 0);
}

TEST(ZonePause, EndsByTheHour) {
    struct Case {
        double start; // the clock at the first look, days
        double later; // and from the second look on
        int looks;    // at the clock, the first included
        bool ends;    // by equality; else by overflow
    };
    constexpr double kLast = 2147483647;
    const Case cases[] = {
        {kLast - 2000, kLast - 2000, 1001, true},        // midnight
        {kLast - 2000.25, kLast - 2000.25, 1001, false}, // at a quarter to it, 1000 turns are not enough
        {kLast - 2000.5, kLast - 2000.5, 1002, false},   // halves go to the even day
        {kLast - 1999.5, kLast - 1999, 1001, true},      // midnight comes while it counts
        {kLast - 1000, kLast - 1000, 1001, true},        // the last number that there is
        {kLast - 999, kLast - 999, 1000, false},         // the count runs out first
    };
    for (const Case& c : cases) {
        int looks = 0;
        int slices = 0;
        ZonePause pause({[&] { return ++looks == 1 ? c.start : c.later; }, [] { return true; }});
        const auto run = [&] {
            while (!pause.CountOn())
                ++slices;
        };
        if (c.ends)
            EXPECT_NO_THROW(run()) << c.start - kLast;
        else
            EXPECT_THROW(run(), RuntimeError) << c.start - kLast;
        EXPECT_EQ(looks, c.looks) << c.start - kLast;
        EXPECT_EQ(slices, 1) << c.start - kLast;
    }
}

} // namespace
