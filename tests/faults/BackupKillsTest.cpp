#include "BackedUp.h"
#include "TableFiles.h"

#include "supervision/BackupArchive.h"
#include "supervision/BackupWork.h"
#include "supervision/FileBackup.h"
#include "supervision/RemoteBackup.h"
#include "support/ChildProcess.h"

#include <atomic>
#include <cstdio>
#include <optional>
#include <random>

namespace {

/// True when it has all files, whole and of one generation.
bool IsWhole(const std::string& backup) {
    const std::string first = backup + "\\glogin\\account.MYD";
    if (!common::FileExists(first))
        return false;
    const char generation = common::ReadFileText(first)[0];
    bool whole = true;
    ForEachFile([&](const std::string& path, std::string_view ending) {
        whole = whole && common::FileExists(backup + path) &&
                common::ReadFileText(backup + path) == FileOf(ending, generation);
    });
    return whole;
}

std::vector<common::FolderEntry> EntriesIn(const std::string& folder) {
    return common::EntriesOf(folder).value_or(std::vector<common::FolderEntry>{});
}

const auto ignoreProgress = [](const std::string&) {};

const support::ChildEntry fileBackups("back up files", [](const std::string& folder) {
    common::ProgramFolder(folder);
    modServerControl::MySQLPath(folder + "\\MySQL\\");
    for (char generation = 'a';; generation = generation == 'z' ? 'a' : static_cast<char>(generation + 1)) {
        WriteTables(folder + "\\MySQL", generation);
        support::Run(supervision::BackUpFiles(ignoreProgress, {}));
        supervision::PruneBackups("2");
    }
});

TEST(BackupFileKills, LeaveWholeFoldersOnly) {
    const int kills = Times(20, 200);
    std::atomic<int> found = 0;
    support::KillDuring(
        "back up files", kills, [](const std::string& folder) { WriteTables(folder + "\\MySQL", 'a'); },
        [&](const std::string& folder) {
            const auto dated = EntriesIn(folder + "\\kTools\\Backup");
            for (const common::FolderEntry& entry : dated)
                EXPECT_TRUE(IsWhole(folder + "\\kTools\\Backup\\" + entry.name)) << entry.name;
            // Between the two steps of a replacement the earlier one stands aside.
            for (const common::FolderEntry& entry : EntriesIn(folder + "\\kTools\\BackupWork")) {
                const std::string path = folder + "\\kTools\\BackupWork\\" + entry.name;
                EXPECT_TRUE(!entry.name.starts_with("replaced ") || !dated.empty() || IsWhole(path)) << path;
            }
            found += !dated.empty();
        },
        std::chrono::milliseconds(1500));
    EXPECT_GT(found, kills / 3) << "most kills fell before the first backup";
}

const support::ChildEntry writer("write rows", [](const std::string&) {
    support::Client root;
    root.Open(support::RootConnection());
    std::mt19937 random(11);
    for (;;) {
        const std::string id = std::to_string(random() % 2000);
        const std::string value = "REPEAT('x', " + std::to_string(random() % 900) + ")";
        for (const char* table : {"glogin.storageinfo", "amcharacter.iteminfo"}) {
            root.Execute("REPLACE INTO " + std::string(table) + " VALUES (" + id + ", " + value + ")");
            root.Execute("DELETE FROM " + std::string(table) + " WHERE " + id + " % 7 = 0 LIMIT 3");
        }
        Sleep(random() % 60);
    }
});

gui::Task<bool> Never() {
    co_return false;
}

/// Makes remote copies until it is killed, of whatever the tables hold then.
const support::ChildEntry remoteBackups("back up databases", [](const std::string& folder) {
    common::ProgramFolder(folder);
    const clsINI kTools(folder + "\\kTools.ini");
    const clsINI kerno(folder + "\\Kerno.ini");
    clsMySQLCopyDatabase copier;
    const supervision::MayReplaceByEmpty never = [](const std::string&, const std::string&) {
        return Never();
    };
    for (;;)
        support::Run(supervision::BackUpDatabases(copier, kTools, kerno, never, [] {}));
});

/// What is on the two servers while backups are made and ended.
class BackupKills : public BackedUp {
protected:
    BackupKills() { panel.Load(); }
    /// Every table that has rows then has this one's rows only.
    void Fill(int generation) {
        const std::string value = ", '" + std::to_string(generation) + "'";
        for (const char* table : {"glogin.storageinfo", "amcharacter.iteminfo", "amcharacter.flaginfo"}) {
            root.Execute("DELETE FROM " + std::string(table));
            root.Execute("INSERT INTO " + std::string(table) + " SELECT seq" + value + " FROM " +
                         support::Numbers(1, 3000));
        }
        root.Execute("REPLACE INTO amglobal.party VALUES ('p'" + value + ")");
    }
    static std::vector<std::string> Sums(support::Client& connection, const std::string& prefix = {}) {
        std::vector<std::string> sums;
        for (const auto& database : suite::Databases())
            try {
                std::ranges::copy(support::Checksums(connection, prefix + std::string(database.name)),
                                  std::back_inserter(sums));
            } catch (const database::Error&) {
                sums.push_back("no " + std::string(database.name));
            }
        return sums;
    }
    void BackUp() {
        panel.backup.cmdBackupDatabase.Press();
        EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
    }
    void LookAgain() {
        root.Open(support::RootConnection());
        remote.Open(support::RootConnection(support::kRemoteServer));
    }
    using Rows = std::vector<std::string>;
    /// One of the two generations holds the rows of now, or the second those of a backup since its last ones,
    /// with which `since` begins: what a kill has left of an exchange is finished by the next backup.
    void ExpectWhole(std::vector<Rows>& since, const std::string& what) {
        // The server carries out what it has, an exchange of the generations too, before it misses its
        // client.
        EXPECT_TRUE(support::WaitUntil([this] {
            return support::Rows(remote, "SELECT ID FROM information_schema.processlist WHERE USER = 'suite'")
                .empty();
        }));
        since.push_back(Sums(root));
        const auto second = std::ranges::find(since, Sums(remote, "bk2_"));
        EXPECT_TRUE(second != since.end() || Sums(remote, "bk_") == since.back()) << what;
        if (second != since.end())
            since.erase(since.begin(), second);
    }
};

TEST_F(BackupKills, NoCopyThatWasWrittenToIsCalledProven) {
    modServerControl::MySQLPath(support::DataFolder() + "\\..\\");
    if (support::IsMySQL(root)) {
        // It keeps no layout files, and nothing is called a backup.
        EXPECT_EQ(
            support::ErrorNumber([&] { support::Run(supervision::BackUpFiles(ignoreProgress, kerno)); }),
            common::kFileNotFound);
        EXPECT_TRUE(EntriesIn(supervision::BackupFolder()).empty());
        return;
    }
    root.Execute("CREATE DATABASE proof");
    int proven = 0;
    int flagged = 0;
    {
        const support::ChildProcess writing("write rows", program.Path());
        for (int round = 0; round < Times(6, 100); ++round) {
            const auto backup = support::Run(supervision::BackUpFiles(ignoreProgress, kerno));
            for (const auto& copied : backup.tables) {
                const auto dot = copied.name.find('.');
                const std::string table = copied.name.substr(dot + 1);
                if (table != "storageinfo" && table != "iteminfo")
                    continue;
                if (copied.verdict.verdict != supervision::Verdict::Proven) {
                    ++flagged;
                    continue;
                }
                ++proven;
                root.Execute("DROP TABLE IF EXISTS proof." + table);
                const std::string folder = supervision::BackupFolder() + "\\" + backup.folder + "\\" +
                                           copied.name.substr(0, dot) + "\\";
                for (const std::string_view ending : suite::kTableFileEndings) {
                    const std::string file = table + std::string(ending);
                    std::filesystem::copy_file(folder + file, support::DataFolder() + "\\proof\\" + file);
                }
                for (const std::string& row : support::Rows(root, "CHECK TABLE proof." + table + " EXTENDED"))
                    EXPECT_EQ(row.find("|error|"), std::string::npos) << row;
            }
        }
    }
    EXPECT_GT(proven, 0);
    std::printf("%d copies proven, %d flagged\n", proven, flagged);
    modServerControl::MySQLPath("");
}

TEST_F(BackupKills, AFileThatCannotBeReadCostsNoFolder) {
    WriteTables(program / "MySQL", 'a');
    modServerControl::MySQLPath(program / "MySQL\\");
    const std::string earlier = supervision::BackupFolder() + "\\30-06-2004 01 00 AM";
    support::WriteFile(earlier + "\\glogin\\account.MYD", "earlier");
    ForEachFile([&](const std::string& path, std::string_view) {
        const common::FileHandle locked =
            common::OpenFile(program / "MySQL\\data" + path, GENERIC_READ, OPEN_EXISTING, 0);
        EXPECT_EQ(support::ErrorNumber([] { support::Run(supervision::BackUpFiles(ignoreProgress, {})); }),
                  common::kPermissionDenied);
        EXPECT_EQ(EntriesIn(supervision::BackupFolder()).size(), 1u) << path;
        EXPECT_FALSE(supervision::BackupWork::IsLeft()) << path;
    });
    EXPECT_EQ(common::ReadFileText(earlier + "\\glogin\\account.MYD"), "earlier");
    modServerControl::MySQLPath("");
}

TEST_F(BackupKills, OfServersAndNetworkLeaveOneOfTheTwoGenerationsWhole) {
    Fill(0);
    BackUp();
    std::vector<Rows> good{Sums(root)};
    ASSERT_EQ(Sums(remote, "bk2_"), good[0]);
    std::mt19937 random(7);
    const auto shown = panel.backup.SQLCopyTable.CopyProgress;
    for (int round = 1; round <= Times(4, 130); ++round) {
        Fill(round);
        {
            std::optional<support::ServerDown> down;
            unsigned blocks = static_cast<unsigned>(random() % 20);
            panel.backup.SQLCopyTable.CopyProgress = [&](const std::string& table, std::size_t rows) {
                shown(table, rows);
                if (blocks-- != 0)
                    return;
                if (round % 3 == 0)
                    network.Cut();
                else
                    down.emplace(round % 3 == 1 ? support::kRemoteServer : support::kLocalServer);
            };
            BackUp();
        }
        LookAgain();
        ExpectWhole(good, std::to_string(round));
        boxes.Clear();
    }
    panel.backup.SQLCopyTable.CopyProgress = shown;
    BackUp();
    EXPECT_EQ(Sums(remote, "bk2_"), Sums(root));
}

TEST_F(BackupKills, OfTheToolLeaveOneOfTheTwoGenerationsWhole) {
    Fill(0);
    BackUp();
    std::vector<Rows> good{Sums(root)};
    support::WriteFile(program / "Kerno.ini", Kerno());
    std::mt19937 random(5);
    for (int round = 1; round <= Times(4, 70); ++round) {
        Fill(round);
        {
            support::ChildProcess backingUp("back up databases", program.Path());
            const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(random() % 1500);
            support::WaitUntil([&] { return std::chrono::steady_clock::now() > end; });
            EXPECT_TRUE(backingUp.Running());
            backingUp.Kill();
        }
        ExpectWhole(good, std::to_string(round));
    }
    BackUp();
    EXPECT_EQ(Sums(remote, "bk2_"), Sums(root));
}

} // namespace
