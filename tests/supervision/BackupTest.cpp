#include "Backup.h"

#include "supervision/BackupWork.h"

#include <limits>

namespace {

using Action = BackupAction;

const SYSTEMTIME kNow{2004, 6, 3, 30, 23, 58, 30, 0};

TEST(BackupClock, ACycleSecondBySecond) {
    BackupSettings settings{60, 2, false, true, "soon", 2, 5};
    for (long second = 1; second <= 3720; ++second) {
        const bool announced = second >= 3000 && second < 3600 && second % 120 == 0;
        const Action expected = second < 3600   ? announced ? Action::Announce : Action::Nothing
                                : second < 3720 ? Action::Backup
                                                : Action::Restore;
        ASSERT_EQ(ActionAt(second, settings), expected) << second;
        const long left = second > 3660 ? -2 : second > 3600 ? -1 : (3600 - second) / 60;
        ASSERT_EQ(MinutesLeft(second, settings), left) << second;
    }
    settings.messageIntervalMinutes = 0;
    EXPECT_EQ(support::ErrorNumber([&] { ActionAt(1, settings); }), common::kDivisionByZero);
    EXPECT_EQ(ActionAt(3600, settings), Action::Backup);
    settings.announce = false;
    EXPECT_EQ(ActionAt(1, settings), Action::Nothing);
}

TEST(BackupClock, StandsSillyNumbers) {
    const double huge = std::numeric_limits<double>::infinity();
    const std::tuple<BackupSettings, long, Action> cases[] = {
        {{0, 2, false, true, "$RestoreTime", 2, 5}, 1, Action::Backup},
        {{huge, 2, false, true, "$RestoreTime", huge, huge}, 1, Action::Nothing},
        {{60, huge, false, true, "$RestoreTime", 1, 5}, 2147483647, Action::Backup},
        {{-huge, 2, false, true, "$RestoreTime", 2, 5}, 1, Action::Restore},
        {{60, 2, false, true, "$RestoreTime", -2, -5}, 3480, Action::Announce}};
    for (const auto& [settings, second, action] : cases) {
        EXPECT_EQ(ActionAt(second, settings), action) << settings.periodMinutes << ' ' << second;
        EXPECT_NE(Announcement(second, settings, kNow), "");
    }
}

TEST(BackupClock, AnnouncesWithAllPlaceholders) {
    const BackupSettings settings{60, 2.5, false, true,
                                  "$TimetoBackup, $BackupDuration, $RestoreTime! "
                                  "$timetobackup $TimetoBackup"};
    EXPECT_EQ(Announcement(3470, settings, kNow),
              "2 minutes, 2.5 minutes, 7/1/2004 12:03:10 AM! $timetobackup 2 minutes");
}

TEST(BackupArchive, NamesAreMinutes) {
    SYSTEMTIME time = kNow;
    for (const auto& [hour, text] :
         {std::pair<WORD, std::string>{0, "12 58 AM"}, {12, "12 58 PM"}, {13, "01 58 PM"}}) {
        time.wHour = hour;
        EXPECT_EQ(BackupName(time), "30-06-2004 " + text);
    }
    const std::int64_t midnight = *BackupMinute("30-06-2004 00 00 AM");
    // Noon counts as the midnight after it, and midnight as noon.
    for (const auto& [name, expected] : {std::pair{"30-06-2004 12 05 AM", 12 * 60 + 5},
                                         {"30-06-2004 12 05 PM", 24 * 60 + 5},
                                         {"30-06-2004 11 59 PM", 24 * 60 - 1},
                                         {"29-02-2004 01 00 AM", -122 * 24 * 60 + 60}})
        EXPECT_EQ(*BackupMinute(name) - midnight, expected) << name;
    // The signs of this locale and of any other that was in force once; whatever else ends a name is no sign.
    const DaySigns japanese{"\x8c\xdf\x91O", "\x8c\xdf\x8c\xe3"};
    EXPECT_EQ(BackupName(time, japanese), "30-06-2004 01 58 " + japanese.pm);
    EXPECT_EQ(BackupMinute("30-06-2004 01 58 " + japanese.pm, japanese), midnight + 13 * 60 + 58);
    EXPECT_EQ(BackupMinute("30-06-2004 01 58 " + japanese.am, japanese), midnight + 60 + 58);
    EXPECT_EQ(BackupMinute("30-06-2004 01 58 pm", japanese), midnight + 13 * 60 + 58);
    EXPECT_EQ(BackupMinute("30-06-2004 01 58 " + japanese.pm), std::nullopt);
    for (const char* foreign : {"", "30-06-2004 01 00 old", "29-02-2003 01 00 AM", "30-06-2004 01 00",
                                "30-06-2004  01 00 AM", "30-06-2004 my own files"})
        EXPECT_EQ(BackupMinute(foreign), std::nullopt) << foreign;
}

TEST(BackupArchive, TheYoungestRemain) {
    using Names = std::vector<std::string>;
    const std::string noon = "30-06-2004 12 00 PM";
    const std::string midnight = "30-06-2004 12 00 AM";
    const std::string morning = "30-06-2004 09 00 AM";
    const std::string evening = "30-06-2004 09 00 PM";
    const std::string may = "31-05-2004 09 00 PM";
    const std::tuple<Names, std::size_t, Names> cases[] = {
        {{noon, midnight, morning, evening, may}, 5, {}},
        {{noon, midnight, morning, evening, may}, 2, {midnight, morning, may}},
        {{may, evening}, 0, {evening, may}},
        // The ages belong to the names one place before: the foreign folder passes for the oldest.
        {{"old", may, morning, evening}, 2, {"old"}},
        {{may, "old", evening}, 1, {may}}};
    for (const auto& [folders, kept, pruned] : cases)
        EXPECT_EQ(FoldersToPrune(folders, kNow, kept), pruned) << kept;
}

TEST_F(Backup, ATimedBackupRunsAsTheServersFileSays) {
    const std::tuple<const char*, bool, bool> cases[] = {
        {"", false, false}, {"3", false, false}, {"0", true, false}, {"1", false, true}, {"2", true, true}};
    // Only what is in Kerno.ini counts.
    Set({{kBackupOption, "2"}});
    const auto before = Sums(root);
    for (const auto& [option, files, toRemote] : cases) {
        kerno.INIProperty(kBackupOption, option);
        remote.Execute("DROP DATABASE IF EXISTS bk_glogin");
        std::filesystem::remove_all(BackupFolder());
        BackUpByTheClock();
        const bool fails = files && !filesWork;
        EXPECT_EQ(Folders().size(), files && !fails ? 1u : 0u)
            << option << ": " << page.lblBackupResult.Caption();
        EXPECT_EQ(Rows(remote, "SHOW DATABASES LIKE 'bk_glogin'").size(), toRemote && !fails ? 1u : 0u)
            << option;
        EXPECT_EQ(page.txtTimeLeft.Text(), fails ? "0" : "");
        EXPECT_EQ(page.lblBackupStatus.Caption(), fails ? "Backup failed" : "Backup is disabled");
    }
    if (!filesWork) {
        kerno.INIProperty(kBackupOption, "1");
        BackUpByTheClock();
    }
    EXPECT_EQ(Sums(remote, "bk_"), before);
    EXPECT_EQ(
        Rows(remote, "SELECT DISTINCT engine FROM information_schema.tables WHERE table_schema LIKE 'bk%'"),
        std::vector<std::string>{"MyISAM"});

    // The way back, with what was lost since.
    for (const std::string& table : tables)
        root.Execute("DELETE FROM " + table);
    support::Run(page.RestoreDatabase());
    EXPECT_EQ(Sums(root), before);
    EXPECT_FALSE(page.SQLCopyTable.SourceConnected() || page.SQLCopyTable.DestinationConnected());

    // And that of the table files.
    if (!filesWork)
        return;
    for (const std::string& table : tables)
        root.Execute("DROP TABLE " + table);
    {
        const support::ServerDown down;
        for (const auto& database : suite::Databases()) {
            const std::string name(database.name);
            std::filesystem::copy(
                BackupFolder() + "\\" + Folders()[0] + "\\" + name, support::DataFolder() + "\\" + name,
                std::filesystem::copy_options::overwrite_existing | std::filesystem::copy_options::recursive);
        }
    }
    root.Open(support::RootConnection());
    EXPECT_EQ(Sums(root), before);
}

TEST_F(Backup, FailuresAreShownOnceAndTheNextBackupWorks) {
    kerno.INIProperty(kBackupOption, filesWork ? "2" : "1");
    const auto expectOneBox = [&](const std::string& text) {
        BackUpByTheClock();
        page.tmrBackup.Tick();
        EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
        ASSERT_EQ(boxes.Seen().size(), 1u) << text;
        EXPECT_TRUE(boxes.Texts()[0].starts_with("Kerno Tools Error :: [" + text)) << boxes.Texts()[0];
        EXPECT_EQ(page.clock.BackupSeconds(), 3601);
        boxes.Clear();
    };
    Set({{kBackupPassword, "wrong"}});
    expectOneBox("1045] ");
    Set({{kBackupPassword, "pass;word"}});
    kerno.INIProperty(kBackupOption, "2");
    root.Execute("DROP TABLE amcharacter.flaginfo");
    std::filesystem::remove_all(BackupFolder());
    expectOneBox(kNoLayout);
    EXPECT_TRUE(Folders().empty());
    EXPECT_FALSE(BackupWork::IsLeft());
    EXPECT_NE(page.lblBackupResult.Caption().find("FAILED: File not found (2: "), std::string::npos);
    EXPECT_NE(Log("Backup.log").find("No remote copy was made, and no older"), std::string::npos);
    root.Execute("CREATE TABLE amcharacter.flaginfo LIKE amcharacter.iteminfo");
    // A copy that cannot be made anew stays as it was. By then it may be the next minute.
    std::vector<std::string> copies;
    {
        std::vector<common::FileHandle> locked;
        SYSTEMTIME time{};
        GetLocalTime(&time);
        for (const int minute : {time.wMinute + 0, time.wMinute + 1}) {
            time.wHour = static_cast<WORD>((time.wHour + minute / 60) % 24);
            time.wMinute = static_cast<WORD>(minute % 60);
            copies.push_back(BackupFolder() + "\\" + BackupName(time) + "\\glogin\\account.frm");
            support::WriteFile(copies.back(), "old");
            locked.emplace_back(CreateFileA(copies.back().c_str(), GENERIC_READ,
                                            FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0,
                                            nullptr));
        }
        expectOneBox(filesWork ? "70] Permission denied (" : kNoLayout);
    }
    for (const std::string& copy : copies)
        EXPECT_TRUE(common::FileExists(copy));
    kerno.INIProperty(kBackupOption, "");
    for (const auto& [kept, number] : {std::pair("many", "13] "), {"-1", "9] "}, {"99999999999", "6] "}}) {
        page.txtNumOfBackup.Text(kept);
        expectOneBox(number);
    }
    EXPECT_FALSE(Folders().empty());
    page.txtNumOfBackup.Text("0");
    kerno.INIProperty(kBackupOption, "1");
    BackUpByTheClock();
    EXPECT_TRUE(Folders().empty());
    EXPECT_EQ(Sums(remote, "bk_"), Sums(root));
}

TEST_F(Backup, ByHandTheSuiteGoesDownAndComesUp) {
    std::vector<HWND> before;
    for (const Server server : kServers)
        before.push_back(servers.Launch(server));
    page.chkShutdownServers.Value(1);
    page.chkBackupMessage.Value(1);
    bool downMeanwhile = false;
    bool failed = false;
    page.SQLCopyTable.CopyProgress = [&](const std::string&, std::size_t) {
        downMeanwhile = std::ranges::none_of(before, IsWindow);
        // The clock waits and the other button is refused; what goes wrong elsewhere is told, and holds up
        // nothing.
        TickWhenDue();
        if (!std::exchange(failed, true)) {
            panel.mnuBackupFiles.Choose();
            support::WriteFile(kTools.INIPath(), "");
            panel.connections.tmrMonitorIP.Tick();
        }
    };
    panel.mnuBackupDatabase.Choose();
    EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
    EXPECT_TRUE(downMeanwhile);
    EXPECT_TRUE(panel.state.BackupInProgress);
    ASSERT_EQ(boxes.Seen().size(), 2u);
    EXPECT_EQ(boxes.Texts()[0], "This is still under way. Please wait until it is done.");
    EXPECT_TRUE(Folders().empty());
    for (const Server server : kServers)
        EXPECT_TRUE(WaitUntil([&] { return servers.MainWindow(server) != nullptr; }));
    EXPECT_EQ(Sums(remote, "bk_"), Sums(root));
}

} // namespace
