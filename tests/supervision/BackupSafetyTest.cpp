#include "Backup.h"

#include "supervision/BackupCheck.h"

namespace {

/// What must not be lost, and what must not end in silence.
using BackupSafety = Backup;

/// The panel goes by itself, or after the end of the Windows session, which asks nothing.
struct EndOfThePanel : Backup, testing::WithParamInterface<bool> {};

TEST_P(EndOfThePanel, DuringARemoteCopyIsAskedAndWrittenDownOnce) {
    root.Execute("INSERT INTO amcharacter.flaginfo SELECT seq, 'flags' FROM " + support::Numbers(100, 5000));
    kerno.INIProperty(kBackupOption, "1");
    bool looked = false, sessionEnds = false;
    std::string beforeItGoes;
    page.SQLCopyTable.CopyProgress = [&](const std::string& table, std::size_t rows) {
        if (table == "flaginfo" && rows == 0) {
            looked = !page.LeavingQuestion().empty();
            const auto asked = boxes.Seen().size();
            if (sessionEnds)
                SendMessageA(panel.Window(), WM_ENDSESSION, TRUE, 0);
            beforeItGoes = Log("Backup.log");
            panel.Unload();
            WaitUntil([&] { return boxes.Seen().size() > asked; });
        }
    };
    boxes.Answer(IDNO);
    BackUpByTheClock();
    EXPECT_TRUE(looked && panel.Loaded());
    EXPECT_EQ(page.LeavingQuestion(), "");
    EXPECT_EQ(Sums(remote, "bk_"), Sums(root));
    boxes.Answer(IDYES);
    sessionEnds = GetParam();
    BackUpByTheClock();
    EXPECT_FALSE(panel.Loaded());
    const std::string log = Log("Backup.log"), left = "the copy on the remote server is INCOMPLETE";
    EXPECT_EQ(beforeItGoes.find(left) != std::string::npos, sessionEnds);
    EXPECT_NE(log.find(left), std::string::npos);
    EXPECT_EQ(log.find(left), log.rfind(left)) << log;
}
INSTANTIATE_TEST_SUITE_P(, EndOfThePanel, testing::Bool());

TEST_F(BackupSafety, WhatNobodyWouldNoticeIsTold) {
    const auto told = [&](const std::string& text) {
        EXPECT_NE(page.lblBackupResult.Caption().find(text), std::string::npos)
            << page.lblBackupResult.Caption();
        EXPECT_NE(Log("Backup.log").find(text), std::string::npos) << text;
    };
    const std::string whole = filesWork ? "10 of 10 tables proven, 1 accounts" : "remote copy equal";
    page.txtNumOfBackup.Text("0");
    BackUpByTheClock();
    told("NO BACKUP was made. Kerno.ini has no BackupOption");
    kerno.INIProperty(kBackupOption, "0");
    BackUpByTheClock();
    told(filesWork ? "has deleted the backup that was just made" : kWhyNoLayout);
    page.txtNumOfBackup.Text("1");
    kerno.INIProperty(kBackupOption, filesWork ? "0" : "1");
    BackUpByTheClock();
    told(whole);
    panel.tmrTonight.Tick();
    EXPECT_TRUE(panel.lblTonight.Caption().ends_with("Last backup: " + page.lblBackupResult.Caption()));
    servers.Launch(Server::Login);
    page.chkShutdownServers.Value(1);
    BackUpByTheClock();
    boxes.Answer(IDNO);
    page.cmdResetTimer.Press();
    EXPECT_TRUE(support::Settle());
    told("stay down until somebody starts them");
    // Files that are not those of the server that answers; and a lock that nobody gives.
    kerno.INIProperty(kBackupOption, "0");
    Set({{kBackupLockTables, "1"}});
    BackUpByTheClock();
    told(filesWork ? whole : kWhyNoLayout);
    root.Execute("LOCK TABLES amglobal.party WRITE");
    BackUpByTheClock();
    told(filesWork ? "WARNING: amglobal was not locked while it was copied: " : kWhyNoLayout);
    root.Execute("UNLOCK TABLES");
}

TEST_F(BackupSafety, SecondsInWhichABackupHoldsTheClockUpCount) {
    kerno.INIProperty(kBackupOption, "1");
    page.SQLCopyTable.CopyProgress = [&](const std::string& table, std::size_t rows) {
        if (table == "cartinfo" && rows == 0) {
            page.tmrBackup.Tick();
            Sleep(2600);
            page.tmrBackup.Tick();
        }
    };
    BackUpByTheClock();
    EXPECT_GE(page.clock.BackupSeconds(), 3604);
    EXPECT_LT(page.clock.BackupSeconds(), 3700);
}

TEST_F(BackupSafety, ADamagedTableCostsNoEarlierBackup) {
    kerno.INIProperty(kBackupOption, filesWork ? "2" : "1");
    BackUpByTheClock();
    const auto folders = Folders();
    const auto copies = Sums(remote, "bk_");
    ASSERT_EQ(folders.size(), filesWork ? 1u : 0u);
    root.Execute("INSERT INTO amglobal.party SELECT seq + 100, REPEAT('x', 1000) FROM " +
                 support::Numbers(1, 100));
    root.Execute("FLUSH TABLES");
    std::filesystem::resize_file(support::DataFolder() + "\\amglobal\\party.MYD", 5000);
    for (const char* option : {"0", "1"}) {
        kerno.INIProperty(kBackupOption, option);
        boxes.Clear();
        BackUpByTheClock();
        ASSERT_EQ(boxes.Seen().size(), 1u) << option;
        const bool looked = filesWork || *option == '1';
        EXPECT_TRUE(boxes.Texts()[0].starts_with(std::string("Kerno Tools Error :: [") +
                                                 (looked ? "1194] amglobal.party is damaged: " : kNoLayout)))
            << boxes.Texts()[0];
    }
    EXPECT_EQ(Folders(), folders);
    EXPECT_EQ(Sums(remote, "bk_"), copies);
}

TEST_F(BackupSafety, AnEmptyDatabaseReplacesACopyOnlyWhenTheOperatorSaysSo) {
    kerno.INIProperty(kBackupOption, "1");
    BackUpByTheClock();
    const auto copies = Sums(remote, "bk_");
    for (const char* table : {"gcastle", "guild", "party"})
        root.Execute("DELETE FROM amglobal." + std::string(table));
    BackUpByTheClock();
    ASSERT_EQ(boxes.Seen().size(), 1u);
    EXPECT_TRUE(boxes.Texts()[0].starts_with("Kerno Tools Error :: [12347] amglobal has no rows"));
    EXPECT_EQ(Sums(remote, "bk_"), copies);
    for (const int answer : {IDNO, IDYES}) {
        boxes.Answer(answer);
        page.cmdBackupDatabase.Press();
        EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
        EXPECT_EQ(Sums(remote, "bk_") == Sums(root), answer == IDYES);
    }
}

TEST_F(BackupSafety, TheSecondGenerationIsReplacedByWholeCopiesOnly) {
    kerno.INIProperty(kBackupOption, "1");
    Set({{kBackupSecondGeneration, "1"}});
    BackUpByTheClock();
    EXPECT_EQ(Sums(remote, "bk2_"), Sums(root));
    const auto first = Sums(root);
    root.Execute("DELETE FROM glogin.account");
    page.SQLCopyTable.CopyProgress = [](const std::string& table, std::size_t) {
        if (table == "guild")
            throw RuntimeError(common::kDiskFull);
    };
    BackUpByTheClock();
    EXPECT_EQ(Sums(remote, "bk2_"), first);
    // As a kill leaves it in the middle of an exchange: one table here, the others still there.
    for (const char* database : {"glogin", "amcharacter", "amglobal"})
        for (const char* generation : {"bk2next_", "bk2former_"})
            remote.Execute("CREATE DATABASE " + std::string(generation) + database);
    remote.Execute("RENAME TABLE bk2_glogin.account TO bk2former_glogin.account, "
                   "bk2_glogin.storageinfo TO bk2next_glogin.storageinfo");
    remote.Execute("CREATE TABLE bk2next_glogin.account LIKE bk2former_glogin.account");
    page.SQLCopyTable.CopyProgress = [](const std::string&, std::size_t) {
        throw RuntimeError(common::kDiskFull);
    };
    BackUpByTheClock();
    EXPECT_EQ(Rows(remote, "SHOW TABLES FROM bk2_glogin"),
              (std::vector<std::string>{"account", "storageinfo"}));
    EXPECT_EQ(Rows(remote, "SELECT COUNT(*) FROM bk2_glogin.account")[0], "0");
    page.SQLCopyTable.CopyProgress = {};
    BackUpByTheClock();
    EXPECT_EQ(Sums(remote, "bk2_"), Sums(root));
    EXPECT_EQ(Rows(remote, "SHOW DATABASES LIKE 'bk2%'").size(), 3u);
}

TEST_F(BackupSafety, ACheckTellsWhatStandsInTheWay) {
    using Findings = std::vector<std::string>;
    const auto findings = [&] {
        return support::Run(FindingsOnBackup(kTools, kerno, page.Settings(), page.txtNumOfBackup.Text()));
    };
    const std::string option = filesWork ? "2" : "1";
    kerno.INIProperty(kBackupOption, option);
    page.txtNumOfBackup.Text("10");
    EXPECT_EQ(findings(), Findings{});
    EXPECT_EQ(RetentionText(page.Settings(), "10"), "10 folders are kept: those of the last 3.1 hours");
    const std::tuple<std::string, std::function<void()>, std::function<void()>> cases[] = {
        {"deletes each backup", [&] { page.txtNumOfBackup.Text("0"); },
         [&] { page.txtNumOfBackup.Text("10"); }},
        {"up to 3 folders", [&] { page.txtNumOfBackup.Text("2"); }, [&] { page.txtNumOfBackup.Text("10"); }},
        {"duration of 0", [&] { page.txtBackupDuration.Text(""); },
         [&] { page.txtBackupDuration.Text("2"); }},
        {"which is not 0, 1 or 2", [&] { kerno.INIProperty(kBackupOption, "3"); },
         [&] { kerno.INIProperty(kBackupOption, option); }},
        {"does not answer to the login", [&] { kerno.INIProperty("gloginpass", "x"); },
         [&] { kerno.INIProperty("gloginpass", "se{}cret"); }},
        {"does not answer to its login",
         [&] {
             Set({{kBackupPassword, "x"}});
         },
         [&] {
             Set({{kBackupPassword, "pass;word"}});
         }},
        {"is this computer's own",
         [&] {
             Set({{kBackupHostname, "localhost"}, {kBackupUsername, "suite"}, {kBackupPassword, "se{}cret"}});
         },
         [] {}}};
    for (const auto& [text, spoil, mend] : cases) {
        spoil();
        const Findings found = findings();
        ASSERT_EQ(found.size(), 1u) << text;
        EXPECT_NE(found[0].find(text), std::string::npos) << found[0];
        mend();
    }
    // Files that are not those of the server that answers.
    kerno.INIProperty(kBackupOption, "2");
    const std::string other = program / "other";
    std::filesystem::create_directories(other + "\\data\\glogin");
    std::filesystem::copy(support::DataFolder() + "\\glogin", other + "\\data\\glogin");
    modServerControl::MySQLPath(other + "\\");
    page.cmdCheckBackup.Press();
    EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
    ASSERT_EQ(boxes.Seen().size(), 1u);
    const std::string missing = filesWork ? "amcharacter\\charinfo.frm is missing"
                                          : std::string("glogin\\account.frm is missing. ") + kWhyNoLayout;
    for (const std::string& text : {missing, std::string("and MySQL keeps its own in ")})
        EXPECT_NE(boxes.Texts()[0].find(text), std::string::npos) << boxes.Texts()[0];
}

} // namespace
