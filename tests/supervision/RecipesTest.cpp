#include "Backup.h"

#include "support/HostProgram.h"

namespace {

/// The page about backups tells how to bring one back. Its blocks are run here as they stand there, save for
/// the values in their first lines.
class Recipes : public Backup {
protected:
    Recipes() {
        support::MakeHostPrograms(folder.Path());
        // Bytes of every kind, and more accounts than one block.
        for (const char* table : {"cartinfo", "flaginfo", "iteminfo", "skillinfo"})
            root.Execute("INSERT INTO amcharacter." + std::string(table) +
                         " SELECT seq + 100, UNHEX(SHA2(seq, 512)) FROM " + support::Numbers(1, 300));
        root.Execute("INSERT INTO glogin.account (Name) SELECT CONCAT('account', seq) FROM " +
                     support::Numbers(1, 1204));
        root.Execute("FLUSH TABLES");
        before = Sums(root);
    }
    /// A recipe that fails leaves the server down.
    ~Recipes() override { support::LetServerStart(); }

    /// Wine 10's xcopy takes no path with a blank: there its short name.
    std::string ForXcopy(const std::string& path) {
        support::WriteFile(folder / "a b\\file", "");
        support::WriteFile(folder / "probe.bat", "@xcopy /i /q /y \"a b\" \"c d\" <nul >nul 2>&1\r\n");
        support::RunBatch(folder.Path(), "probe.bat");
        char name[MAX_PATH] = {};
        if (!common::FileExists(folder / "c d\\file"))
            GetShortPathNameA(path.c_str(), name, MAX_PATH);
        return *name ? name : path;
    }

    /// Runs the block of the page that is to be saved under `name`, with these values; returns its exit
    /// status.
    int RunBlock(const std::string& name, const std::vector<std::pair<std::string, std::string>>& values) {
        const std::string document = common::ReadFileText(KTOOLS_DOCS "\\backups.md");
        const auto start = document.find("```bat\n", document.find("`" + name + "`")) + 7;
        std::string text = document.substr(start, document.find("```", start) - start);
        for (const auto& [variable, value] : values) {
            const auto at = text.find("set " + variable + "=");
            EXPECT_NE(at, std::string::npos) << variable;
            text.replace(at, text.find('\n', at) - at, "set " + variable + "=" + value);
        }
        support::WriteFile(folder / name, common::ReplaceAll(text, "\n", "\r\n"));
        return support::RunBatch(folder.Path(), name);
    }
    int RestoreFiles(const std::string& aside) {
        const std::string backup = Folders().empty() ? "none" : Folders()[0];
        const int status =
            RunBlock("restore-files.bat", {{"BACKUP", ForXcopy(supervision::BackupFolder() + "\\" + backup)},
                                           {"DATA", support::DataFolder()},
                                           {"ASIDE", folder / aside},
                                           {"LOGIN", "-u root"}});
        root.Open(support::RootConnection());
        return status;
    }
    int RestoreDatabase(const std::string& host) {
        return RunBlock("restore-database.bat",
                        {{"REMOTE", "-h " + host + " -u root"}, {"LOGIN", "-u root"}});
    }
    void MakeEmptyTables() {
        for (const auto& database : suite::Databases()) {
            root.Execute("DROP DATABASE IF EXISTS " + std::string(database.name));
            root.Execute(dbsetup::CreateStatement(database));
            for (const auto& table : database.tables)
                root.Execute(dbsetup::EngineForm(dbsetup::CreateStatement(table)));
        }
    }

    const support::TempFolder folder;
    std::vector<std::string> before;
};

TEST_F(Recipes, FilesComeBackOverADamagedServerAndIntoAFreshOne) {
    page.cmdBackupFiles.Press();
    EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
    ASSERT_EQ(Folders().size(), filesWork ? 1u : 0u);
    if (!filesWork) {
        EXPECT_EQ(RestoreFiles("aside"), 1);
        EXPECT_EQ(Sums(root), before);
        return;
    }
    root.Execute("DELETE FROM glogin.account");
    root.Execute("FLUSH TABLES");
    std::filesystem::resize_file(support::DataFolder() + "\\amcharacter\\iteminfo.MYD", 100);
    EXPECT_EQ(RestoreFiles("aside"), 0);
    EXPECT_EQ(Sums(root), before);
    EXPECT_EQ(std::filesystem::file_size(folder / "aside\\amcharacter\\iteminfo.MYD"), 100u);
    for (const auto& database : suite::Databases())
        root.Execute("DROP DATABASE " + std::string(database.name));
    EXPECT_EQ(RestoreFiles("fresh"), 0);
    EXPECT_EQ(Sums(root), before);
    // A backup that is not whole changes nothing.
    root.Execute("DELETE FROM glogin.account");
    const auto now = Sums(root);
    std::filesystem::remove(supervision::BackupFolder() + "\\" + Folders()[0] + "\\amglobal\\party.MYI");
    EXPECT_EQ(RestoreFiles("third"), 1);
    EXPECT_EQ(Sums(root), now);
}

TEST_F(Recipes, RowsComeBackFromTheBackupServer) {
    page.cmdBackupDatabase.Press();
    EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{});
    root.Execute("DELETE FROM glogin.account WHERE AID > 100");
    root.Execute("UPDATE amcharacter.iteminfo SET IDATA = 'gone'");
    root.Execute("FLUSH TABLES");
    std::filesystem::resize_file(support::DataFolder() + "\\amcharacter\\flaginfo.MYD", 100);
    EXPECT_EQ(RestoreDatabase(support::kRemoteServer), 0);
    EXPECT_EQ(Sums(root), before);
    EXPECT_TRUE(common::FileExists(folder / "before-glogin.sql"));
    MakeEmptyTables();
    EXPECT_EQ(RestoreDatabase(support::kRemoteServer), 0);
    EXPECT_EQ(Sums(root), before);
    // What cannot be read to its end changes nothing.
    remote.Execute("DROP TABLE bk_glogin.account");
    EXPECT_EQ(RestoreDatabase(support::kRemoteServer), 1);
    EXPECT_EQ(Sums(root), before);
}

} // namespace
