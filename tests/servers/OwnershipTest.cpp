#include "servers/modServerControl.h"
#include "servers/Processes.h"
#include "servers/ServerWatch.h"
#include "servers/StubbornDialogs.h"
#include "support/ChildProcess.h"
#include "support/FakeWindow.h"
#include "support/Servers.h"
#include "support/Surroundings.h"
#include "support/Test.h"

using namespace modServerControl;
using standin::Command;
using support::ServerFolder;
using support::WaitUntil;

namespace {

const support::ChildEntry ownsServers("OwnsServers", [](const std::string& folder) {
    KernoPath(folder + "\\");
    const auto ownership = Ownership::Take(kServers);
    support::WaitUntil([] { return false; }, std::chrono::minutes(5));
});

TEST(Ownership, IsSeenByEveryCopyOfTheToolAndEndsWithItsOwner) {
    const ServerFolder folder;
    {
        const Server zone[] = {Server::Zone};
        const auto ownership = Ownership::Take(zone);
        ASSERT_TRUE(ownership);
        EXPECT_TRUE(IsOwned(Server::Zone));
        EXPECT_FALSE(IsOwned(Server::Login));
        // All of them or none.
        EXPECT_FALSE(Ownership::Take(kServers));
        EXPECT_FALSE(IsOwned(Server::Login));
        CancelStart(Server::Login);
        EXPECT_FALSE(ownership->StartIsCancelled(Server::Zone));
        CancelStart(Server::Zone);
        EXPECT_TRUE(ownership->StartIsCancelled(Server::Zone));
    }
    EXPECT_FALSE(IsOwned(Server::Zone));
    support::ChildProcess owner("OwnsServers", folder.Path().substr(0, folder.Path().size() - 1));
    ASSERT_TRUE(WaitUntil([] { return IsOwned(Server::Login); }));
    EXPECT_FALSE(Ownership::Take(kServers));
    // Another server folder is another suite.
    KernoPath("C:\\elsewhere\\");
    EXPECT_FALSE(IsOwned(Server::Login));
    KernoPath(folder.Path());
    owner.Kill();
    EXPECT_TRUE(WaitUntil([] { return Ownership::Take(kServers).has_value(); }));
}

TEST(Starting, IsAYoungProcessWithoutARecognisedWindow) {
    const ServerFolder folder;
    EXPECT_FALSE(IsStarting(Server::Zone));
    const HWND window = folder.Launch(Server::Zone);
    ASSERT_TRUE(window);
    EXPECT_FALSE(IsStarting(Server::Zone));
    // Its window has no clock yet.
    ASSERT_TRUE(support::SetTextOf(window, "Kerno Zone Server"));
    EXPECT_FALSE(IsZoneRunning());
    EXPECT_TRUE(IsStarting(Server::Zone));
    folder.KillAll();
    EXPECT_FALSE(IsStarting(Server::Zone));
}

TEST(Starting, AgesComeFromAClockThatDoesNotJump) {
    constexpr ULONGLONG kSecond = 10'000'000;
    ProcessAges ages;
    const ProcessId process{.id = 7, .created = 1000 * kSecond};
    const auto age = [&](ULONGLONG now, ULONGLONG ticks) {
        return ages.Age(process, now * kSecond, ticks).count();
    };
    EXPECT_EQ(age(1003, 50'000), 3000);
    EXPECT_EQ(age(9000, 51'000), 4000) << "the system's clock was set forward";
    EXPECT_EQ(age(10, 52'000), 5000) << "and back";
    ages.Keep({});
    EXPECT_EQ(age(999, 60'000), 0) << "a new process of the same id";
}

TEST(Stubborn, DialogsAreLoggedAfterGrowingPausesAndGivenUp) {
    const support::WindowHandle dialog = support::DialogWindow("kZone.exe - stopped working");
    StubbornDialogs stubborn;
    std::vector<int> logged;
    for (int second = 0; second < 200; ++second)
        if (stubborn.MayLog(dialog.get(), 1'000'000 + static_cast<ULONGLONG>(second) * 1000))
            logged.push_back(second);
    EXPECT_EQ(logged, (std::vector<int>{0, 1, 3, 7, 15, 31, 63, 123, 183}));
    EXPECT_FALSE(stubborn.Oldest(1'001'000));
    const auto told = stubborn.Oldest(1'005'000);
    ASSERT_TRUE(told);
    EXPECT_EQ(told->title, "kZone.exe - stopped working");
    EXPECT_EQ(told->age.count(), 5);
    EXPECT_FALSE(stubborn.IsGivenUp(dialog.get(), 1'029'000));
    EXPECT_TRUE(stubborn.IsGivenUp(dialog.get(), 1'030'000));
}

TEST(Stubborn, AShutdownGoesOnWithoutADialogThatDoesNotClose) {
    const ServerFolder folder;
    const HWND window = folder.Launch(Server::Login);
    folder.Command(Server::Login, Command::RaiseStubbornDialog);
    ASSERT_TRUE(WaitUntil([&] { return folder.DialogCount() == 1; }));
    const HWND dialog = FindWindowWhere(nullptr, kDialogClass, IsServerProcessWindow);
    ASSERT_TRUE(dialog);
    // It has been there for nearly as long as anybody waits.
    Stubborn().Meet(dialog, GetTickCount64() - 29'000);
    EXPECT_EQ(support::Run(ShutdownLoginServer()), 1);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(window); }));
}

TEST(LiveLine, TellsEachState) {
    const SYSTEMTIME since{2026, 1, 4, 1, 14, 3, 9, 0};
    const SYSTEMTIME now{2026, 1, 4, 1, 14, 5, 0, 0};
    const std::tuple<Sight, int, const char*> cases[] = {
        {{.condition = Condition::Running}, 4, "Zone server: running since 14:03:09; checked 14:05:00"},
        {{.condition = Condition::Gone},
         5,
         "Zone server: gone since 14:03:09; started 5 times within ten minutes; checked 14:05:00"},
        {{.condition = Condition::Starting}, 0, "Zone server: starting since 14:03:09; checked 14:05:00"},
        {{.condition = Condition::Restarting},
         0,
         "Zone server: being restarted since 14:03:09; checked 14:05:00"},
        {{.condition = Condition::Hung, .hasMoreRights = true},
         0,
         "Zone server: hung since 14:03:09; runs as administrator, kTools cannot close it; checked 14:05:00"},
        {{.condition = Condition::Dialog, .dialog = "Error"},
         0,
         "Zone server: dialog open since 14:03:09 (\"Error\"); checked 14:05:00"},
        {{.condition = Condition::Dialog, .dialog = std::string(41, 'x')},
         0,
         "Zone server: dialog open since 14:03:09 (\"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...\"); "
         "checked 14:05:00"}};
    for (const auto& [sight, launches, line] : cases)
        EXPECT_EQ(LiveLine(Server::Zone, sight, since, now, launches), line);
    LaunchHistory history;
    for (int launch = 0; launch < 7; ++launch)
        history.Note(Server::Login, static_cast<ULONGLONG>(launch) * 150'000);
    EXPECT_EQ(history.Recent(Server::Login, 900'000), 4);
    EXPECT_EQ(history.Recent(Server::Zone, 900'000), 0);
}

TEST(LiveLine, FollowsARealServer) {
    const ServerFolder folder;
    const auto sees = [](Condition condition) { return LookAt(Server::Login).condition == condition; };
    EXPECT_TRUE(sees(Condition::Gone));
    ASSERT_TRUE(folder.Launch(Server::Login));
    EXPECT_TRUE(sees(Condition::Running));
    EXPECT_FALSE(LookAt(Server::Login).hasMoreRights);
    folder.Command(Server::Login, Command::RaiseDialogs);
    EXPECT_TRUE(WaitUntil([&] { return sees(Condition::Dialog); }));
    EXPECT_EQ(LookAt(Server::Login).dialog, standin::kErrorTitle);
    const auto ownership = Ownership::Take(kServers);
    EXPECT_TRUE(sees(Condition::Restarting));
}

TEST(LiveLine, TellsWhoseWindowItIsAndWhatCannotBeClosed) {
    const ServerFolder folder;
    ServerDetectionMethod(kDetectByProcess);
    const HWND login = folder.Launch(Server::Login);
    support::TakeRights(login);
    // Its modules cannot be looked at, but its name can be asked for.
    EXPECT_TRUE(IsLoginRunning());
    const Sight sight = LookAt(Server::Login);
    EXPECT_EQ(sight.condition, Condition::Running);
    EXPECT_TRUE(sight.hasMoreRights);
    EXPECT_EQ(sight.stranger, "");

    ServerDetectionMethod(kDetectByTitle);
    const HWND stranger = folder.Launch(Server::Character, "stranger.exe");
    EXPECT_EQ(LookAt(Server::Character).stranger, "stranger.exe");
    EXPECT_NE(ServerWatch().Line(Server::Character).find("stranger.exe"), std::string::npos);
    ServerDetectionMethod(kDetectByProcess);
    EXPECT_EQ(LookAt(Server::Character).condition, Condition::Gone);
    support::KillOwner(stranger);
}

class Journal : public testing::Test, protected support::Surroundings {};

TEST_F(Journal, KeepsOneLineForEachEventAndRotates) {
    EXPECT_EQ(journal::LastLines(3), "");
    for (int line = 1; line <= 5; ++line)
        journal::Write(journal::Asker::Restarter, "line " + std::to_string(line) + "\r\nof two");
    const std::string last = journal::LastLines(2);
    EXPECT_EQ(std::ranges::count(last, '\n'), 2) << last;
    EXPECT_TRUE(last.ends_with("] restarter: line 5  of two\r\n")) << last;
    for (int file = 0; file < 5; ++file) {
        support::WriteFile(journal::Path(), std::string(256 * 1024, static_cast<char>('a' + file)));
        journal::Write(journal::Asker::Tray, "new");
    }
    EXPECT_EQ(std::ranges::count(Log("Supervision.log"), '\n'), 1);
    for (const auto& [name, content] : {std::pair("Supervision.1.log", 'e'), {"Supervision.3.log", 'c'}})
        EXPECT_EQ(Log(name).front(), content) << name;
    EXPECT_EQ(Log("Supervision.4.log"), "");
    // Without a folder to write into nobody is disturbed.
    common::ProgramFolder("Q:\\nowhere");
    journal::Write(journal::Asker::Tray, "lost");
    EXPECT_EQ(journal::LastLines(1), "");
}

TEST_F(Journal, TellsWhatCameOfALaunch) {
    StartWithPriority(Server::Login, kTools, journal::Asker::Restarter, "gone");
    EXPECT_TRUE(support::Settle());
    const std::string line = journal::LastLines(1);
    EXPECT_NE(line.find("restarter: Login server: gone; started; window after "), line.npos) << line;
    support::WriteFile(servers.Path() + "kZone.exe", "no program");
    std::filesystem::remove(servers.Path() + "kCharacter.exe");
    for (const auto& [server, words] :
         {std::pair(Server::Zone, "Zone server: could not be started: Path/File access error (193: "),
          {Server::Character, "Character server: could not be started: File not found (2: "}}) {
        EXPECT_EQ(StartWithPriority(server, kTools, journal::Asker::Tray), 0);
        EXPECT_NE(journal::LastLines(1).find(words), std::string::npos) << journal::LastLines(1);
    }
}

} // namespace
