#include "BackedUp.h"

#include "accounts/frmAccountEditor.h"
#include "dbsetup/frmMySQLSetUp.h"
#include "gui/frmWaiting.ids.h"

namespace {

using modServerControl::Server;
using support::WaitUntil;

/// Account editor, wizard and backup while a database server stands still, or the way to it.
class Silence : public BackedUp {
protected:
    Silence() {
        support::WriteFile(servers.Path() + "database\\id_table.txt", "header\r\n");
        root.Execute("INSERT INTO glogin.account (AID, Name) VALUES (100001, 'alpha')");
        root.Execute("INSERT INTO amcharacter.flaginfo SELECT seq, 'flags' FROM " +
                     support::Numbers(1, 5000));
        Supervise();
        TurnOn({settings::key::kErrorCheckingInterval});
        panel.Load();
        editor->Load();
        wizard->Load();
        EXPECT_TRUE(support::Settle());
        EXPECT_TRUE(WaitUntil([this] { return servers.MainWindow(Server::Zone) != nullptr; }));
    }
    ~Silence() override { panel.errorDetector.tmrErrorDetector.Enabled(false); }

    /// A server that dies meanwhile comes back.
    void ExpectSupervision() {
        servers.Kill(Server::Login);
        EXPECT_TRUE(WaitUntil([this] { return servers.MainWindow(Server::Login) != nullptr; }));
        EXPECT_EQ(servers.Instances(Server::Login), 1);
    }
    std::string Told() {
        EXPECT_TRUE(support::Settle(std::chrono::minutes(2)));
        const auto texts = boxes.Texts();
        boxes.Clear();
        return texts.empty() ? "" : texts.back();
    }
    static HWND WaitingWindow() {
        const HWND window = FindWindowA(nullptr, "Kerno Tools :: Please Wait");
        return IsWindowVisible(window) ? window : nullptr;
    }
    void ExpectCancel(gui::CommandButton& button, HWND window, const std::string& told);
    bool PageSays(const std::string& text) {
        return panel.backup.lblBackupResult.Caption().find(text) != std::string::npos;
    }

    gui::Local<frmAccountEditor> editor;
    gui::Local<frmMySQLSetUp> wizard;
};

void Silence::ExpectCancel(gui::CommandButton& button, HWND window, const std::string& told) {
    SCOPED_TRACE(button.Caption());
    button.Press();
    ASSERT_TRUE(WaitUntil([] { return WaitingWindow() != nullptr; }));
    EXPECT_EQ(support::TextOf(GetDlgItem(WaitingWindow(), IDC_frmWaiting_lblWhat)),
              "Waiting for an answer from MySQL on localhost.");
    EXPECT_FALSE(IsWindowEnabled(window));
    EXPECT_TRUE(IsWindowEnabled(panel.Window()));
    ExpectSupervision();
    SendMessageA(GetDlgItem(WaitingWindow(), IDC_frmWaiting_cmdCancel), BM_CLICK, 0, 0);
    EXPECT_EQ(Told().substr(0, told.size()), told);
    EXPECT_TRUE(IsWindowEnabled(window) && !WaitingWindow());
}

TEST_F(Silence, OfAServerThatStandsStillHoldsNothingUp) {
    editor->txtAccountPassword.Text("typed");
    {
        const support::ServerPaused paused;
        ExpectCancel(editor->cmdSave, editor->Window(), "Kerno Tools failed to save to SQL server.");
        ExpectCancel(wizard->serverTest.cmdTestMySQL, wizard->Window(), "");
        EXPECT_EQ(wizard->serverTest.lblConnectionTest.Caption(), "Failed");
        panel.backup.cmdBackupDatabase.Press();
        EXPECT_TRUE(
            WaitUntil([this] { return PageSays("Waiting for an answer from MySQL on localhost, for "); }));
        ExpectSupervision();
        EXPECT_TRUE(panel.backup.cmdCancelBackup.Enabled());
        panel.backup.cmdCancelBackup.Press();
        EXPECT_EQ(Told(), "Kerno Tools Error :: [3712] Operation has been cancelled by the user.");
        EXPECT_TRUE(PageSays("FAILED: Operation has been cancelled by the user."));
        EXPECT_FALSE(panel.backup.cmdCancelBackup.Enabled());
    }
    editor->cmdSave.Press();
    EXPECT_EQ(Told(), "Account saved successfully");
    wizard->serverTest.cmdTestMySQL.Press();
    EXPECT_EQ(Told() + wizard->serverTest.lblConnectionTest.Caption(), "Successful");
    panel.backup.cmdBackupDatabase.Press();
    EXPECT_EQ(Told(), "");
    EXPECT_TRUE(PageSays("remote copy equal"));
}

TEST_F(Silence, OfTheNetworkInTheMiddleOfACopyHoldsNothingUp) {
    bool cut = false;
    panel.backup.SQLCopyTable.CopyProgress = [&](const std::string& table, std::size_t rows) {
        if (table == "flaginfo" && rows > 0)
            cut ? network.Cut() : network.Hold(true);
    };
    panel.backup.cmdBackupDatabase.Press();
    ASSERT_TRUE(
        WaitUntil([this] { return PageSays("Waiting for an answer from MySQL on 127.0.0.3, for "); }));
    ExpectSupervision();
    // The copy there is not whole at this moment.
    boxes.Answer(IDNO).Answer(IDYES);
    panel.backup.cmdCancelBackup.Press();
    EXPECT_TRUE(WaitUntil([this] { return boxes.Seen().size() == 1 && IsWindowEnabled(panel.Window()); }));
    EXPECT_TRUE(panel.backup.cmdCancelBackup.Enabled());
    panel.backup.cmdCancelBackup.Press();
    EXPECT_EQ(Told(), "Kerno Tools Error :: [3712] Operation has been cancelled by the user.");
    network.Hold(false);
    cut = true;
    panel.backup.cmdBackupDatabase.Press();
    EXPECT_TRUE(Told().starts_with("Kerno Tools Error :: [20"));
    ExpectSupervision();
    panel.backup.SQLCopyTable.CopyProgress = [](const std::string&, std::size_t) {};
    panel.backup.cmdBackupDatabase.Press();
    EXPECT_EQ(Told(), "");
    EXPECT_TRUE(PageSays("remote copy equal"));
}

} // namespace
