#include "Faults.h"

#include "accounts/frmAccountEditor.h"
#include "dbsetup/frmMySQLSetUp.h"
#include "supervision/frmServerControl.h"
#include "support/Database.h"

#include <optional>

namespace {

using support::Rows;
using support::WaitUntil;

/// Account editor and control panel, open over a server that goes and comes back.
class DatabaseDown : public Faults, protected support::Databases {
protected:
    DatabaseDown() {
        support::MakeLogin(remote, "keeper@'%'", "secret");
        using namespace settings::key;
        Set({{kBackupHostname, support::kRemoteServer},
             {kBackupUsername, "keeper"},
             {kBackupPassword, "secret"}});
        for (const char* key : {"gloginname", "amcharactername", "amglobalname"})
            kerno.INIProperty(key, key);
        for (const char* key : {"gloginpass", "amcharacterpass", "amglobalpass"})
            kerno.INIProperty(key, "pass");
    }

    std::string LastBox() {
        EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
        const auto texts = boxes.Texts();
        boxes.Clear();
        return texts.empty() ? "" : texts.back();
    }
    /// Presses the button and waits for the box that tells of the failure.
    std::string BackupByHand() {
        panel.backup.cmdBackupDatabase.Press();
        return LastBox();
    }

    support::MessageBoxes boxes;
    frmAccountEditor editor;
    frmServerControl panel;
};

TEST_F(DatabaseDown, EditorAndBackupTellOfItAndGoOnAfterwards) {
    frmMySQLSetUp wizard;
    wizard.Load();
    boxes.Answer(IDYES); // to the other form of the tables
    wizard.repair.cmdRepairDatabase.Press();
    EXPECT_EQ(LastBox(), "Database Repaired");
    if (support::IsMySQL(root))
        boxes.Answer(IDYES); // to logins by CREATE USER
    wizard.accounts.cmdSetupAccounts.Press();
    EXPECT_EQ(LastBox(), "Kerno SQL accounts setup successful");
    wizard.Unload();
    root.Execute("INSERT INTO glogin.account (AID, Name) VALUES (100001, 'alpha')");
    support::WriteFile(servers.Path() + "database\\id_table.txt", "header\r\n");
    editor.Load();
    support::Settle();
    panel.Load();
    EXPECT_EQ(LastBox(), "");

    const std::string failed = "Kerno Tools failed to save to SQL server.";
    const auto& copyProgress = panel.backup.SQLCopyTable.CopyProgress;
    for (int round = 0; round < Times(2, 20); ++round) {
        const std::string password = "round" + std::to_string(round);
        editor.txtAccountPassword.Text(password);
        {
            // In the middle of a backup: here the one server, there the other.
            std::optional<support::ServerDown> down;
            panel.backup.SQLCopyTable.CopyProgress = [&, shown = copyProgress](const std::string& table,
                                                                               std::size_t rows) {
                if (!down)
                    down.emplace(round % 2 ? support::kRemoteServer : support::kLocalServer);
                shown(table, rows);
            };
            EXPECT_TRUE(BackupByHand().starts_with("Kerno Tools Error :: [20")) << round;
            EXPECT_TRUE(down);
            panel.backup.SQLCopyTable.CopyProgress = [](const std::string&, std::size_t) {};
        }
        {
            const support::ServerDown down;
            editor.cmdSave.Press();
            support::Settle();
            EXPECT_TRUE(LastBox().starts_with(failed)) << round;
            EXPECT_TRUE(BackupByHand().starts_with("Kerno Tools Error :: [20")) << round;
        }
        editor.cmdSave.Press();
        support::Settle();
        EXPECT_EQ(LastBox(), "Account saved successfully") << round;
        EXPECT_EQ(BackupByHand(), "") << round;
        remote.Open(support::RootConnection(support::kRemoteServer));
        EXPECT_EQ(Rows(remote, "SELECT AID, Name, Pass FROM bk_glogin.account"),
                  std::vector<std::string>{"100001|alpha|" + password})
            << round;
    }
}

} // namespace
