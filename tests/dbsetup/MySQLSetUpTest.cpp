#include "dbsetup/frmMySQLSetUp.h"

#include "gui/frmWaiting.ids.h"
#include "servers/modServerControl.h"
#include "support/Database.h"
#include "support/MessageBoxes.h"
#include "support/Network.h"

#include <commctrl.h>

#include <optional>

namespace {

using support::SeenBox;

constexpr unsigned kInformation = MB_OK | MB_ICONINFORMATION;
constexpr const char* kKerno = "[Database]\r\ngloginname=kl\r\ngloginpass=pl\r\namcharactername=kc\r\n"
                               "amcharacterpass=pc\r\namglobalname=kg\r\namglobalpass=pg\r\n";

const std::vector<std::string> kNothing{"Not Existed",        "All tables missing", "Not Existed",
                                        "All tables missing", "Not Existed",        "All tables mising"};

constexpr const char* kHowToMakeLogins[] = {"Error Number [1064] You have an error",
                                            "Servers of today make logins by CREATE USER and ALTER USER",
                                            "This server has no mysql_native_password any more."};

/// The wizard on a server without any of the databases, and a server folder with a Kerno.ini.
class MySQLSetUp : public support::DatabaseTest {
protected:
    MySQLSetUp() {
        support::WriteFile(kernoIni, kKerno);
        modServerControl::KernoPath(kerno.Path() + "\\");
        wizard.Load();
    }

    /// The labels of the check, from top to bottom.
    std::vector<std::string> Labels() {
        auto& page = wizard.databaseCheck;
        return {page.lblGlogin.Caption(),      page.lblGloginTables.Caption(),
                page.lblAMCharacter.Caption(), page.lblAMCharacterTables.Caption(),
                page.lblAMGlobal.Caption(),    page.lblAMGlobalTables.Caption()};
    }
    static void Press(gui::CommandButton& button) {
        button.Press();
        EXPECT_TRUE(support::Settle());
    }
    std::vector<std::string> Check() {
        Press(wizard.databaseCheck.cmdCheckDB);
        return Labels();
    }
    /// Where the old way of making logins is gone, the server's error and a question come first: `answer` is
    /// for that question. After a Yes a third box tells of the old way of checking passwords, which is gone
    /// too.
    void AnswerHowToMakeLogins(int answer = IDYES) {
        if (mySQL)
            boxes.Answer(answer);
    }
    /// Takes those boxes from what was seen since; returns the others.
    std::vector<SeenBox> BoxesBesideThat(std::size_t ofThat = 3) {
        std::vector<SeenBox> seen = boxes.Seen();
        const auto taken = std::begin(kHowToMakeLogins);
        for (std::size_t i = 0; mySQL && i < ofThat; ++i) {
            if (seen.empty() || !seen.front().text.starts_with(taken[i])) {
                ADD_FAILURE() << "missing: " << taken[i];
                break;
            }
            seen.erase(seen.begin());
        }
        return seen;
    }

    support::TempFolder kerno;
    const std::string kernoIni = kerno / "Kerno.ini";
    const bool mySQL = support::IsMySQL(root);
    support::MessageBoxes boxes;
    frmMySQLSetUp wizard;
};

TEST_F(MySQLSetUp, GoesFromNothingToThreeLoginsOnTenTablesAndBack) {
    Press(wizard.serverTest.cmdTestMySQL);
    EXPECT_EQ(wizard.serverTest.lblConnectionTest.Caption(), "Successful");
    EXPECT_EQ(wizard.serverTest.lblRunningMySQL.Caption(), support::Rows(root, "SELECT VERSION()")[0]);
    EXPECT_EQ(Check(), kNothing);

    // This server rejects the old form. After No the databases that were made stay, without tables.
    boxes.Answer(IDNO);
    Press(wizard.repair.cmdRepairDatabase);
    ASSERT_EQ(boxes.Seen().size(), 1u);
    EXPECT_EQ(boxes.Seen()[0].style, static_cast<unsigned>(MB_YESNO | MB_ICONQUESTION));
    EXPECT_TRUE(boxes.Seen()[0].text.starts_with("Error Number [1064] You have an error"));
    const std::vector<std::string> empty{
        "Existed", "Missing table(s) [Account Storageinfo ]",
        "Existed", "Missing table(s) [CartInfo CharInfo ItemInfo FlagInfo SkillInfo ]",
        "Existed", "Missing table(s) [GCastle Guild Party ]"};
    EXPECT_EQ(Check(), empty);

    boxes.Clear();
    boxes.Answer(IDYES);
    Press(wizard.repair.cmdRepairDatabase);
    const SeenBox repaired{"Kerno Tools :: MySQL Setup", "Database Repaired", kInformation};
    ASSERT_EQ(boxes.Seen().size(), 2u) << "the question comes once for all tables";
    EXPECT_EQ(boxes.Seen()[1], repaired);
    EXPECT_EQ(Check(), (std::vector<std::string>{"Existed", "All tables existed", "Existed",
                                                 "All tables existed", "Existed", "All tables existed"}));
    EXPECT_EQ(support::Rows(root, "SELECT ENGINE, COUNT(DISTINCT table_schema, table_name), COUNT(*), "
                                  "SUM(column_key = 'PRI'), SUM(extra = 'auto_increment') "
                                  "FROM information_schema.tables JOIN information_schema.columns "
                                  "USING (table_schema, table_name) WHERE table_schema IN "
                                  "('glogin', 'amcharacter', 'amglobal') GROUP BY ENGINE"),
              std::vector<std::string>{"MyISAM|10|110|10|2"});

    // Nothing is missing any more, so there is nothing to ask, and rows stay.
    root.Execute("INSERT INTO glogin.account (Name) VALUES ('kept')");
    Press(wizard.repair.cmdRepairDatabase);
    EXPECT_EQ(boxes.Seen().size(), 3u);
    EXPECT_EQ(support::Rows(root, "SELECT Name FROM glogin.account"), std::vector<std::string>{"kept"});

    boxes.Clear();
    wizard.accounts.txtAMGlobalPassword.Text("a;b} c");
    const struct {
        const char *user, *password, *table;
    } logins[] = {{"kl", "pl", "glogin.account"},
                  {"kc", "pc", "amcharacter.charinfo"},
                  {"kg", "a;b} c", "amglobal.guild"}};
    Press(wizard.accounts.cmdCheckAccounts);
    EXPECT_TRUE(
        wizard.accounts.txtAccountCheck.Text().starts_with("glogin: The login \"kl\" for glogin does not"));
    AnswerHowToMakeLogins();
    Press(wizard.accounts.cmdSetupAccounts);
    EXPECT_EQ(BoxesBesideThat(),
              (std::vector<SeenBox>{
                  {"Kerno Tools :: MySQL Setup", "Kerno SQL accounts setup successful", kInformation}}));
    Press(wizard.accounts.cmdCheckAccounts);
    EXPECT_EQ(wizard.accounts.txtAccountCheck.Text(),
              "glogin: logs in\r\namcharacter: logs in\r\namglobal: logs in\r\n");
    for (const auto& login : logins) {
        support::Client own;
        own.Open(database::MySQLConnectionString("localhost", login.user, login.password));
        for (const auto& other : logins) {
            const auto use = [&] { own.Execute("DELETE FROM " + std::string(other.table)); };
            if (&other == &login)
                EXPECT_NO_THROW(use()) << login.user;
            else
                EXPECT_THROW(use(), database::Error) << login.user << " on " << other.table;
        }
    }
    EXPECT_TRUE(common::ReadFileText(kernoIni).ends_with("amglobalname=kg\r\namglobalpass=a;b} c\r\n"));

    Check();
    EXPECT_EQ(wizard.repair.lblLosses.Caption(), "There are 0 accounts, 0 characters.");
    EXPECT_TRUE(wizard.databaseCheck.txtServerCard.Text().starts_with(mySQL ? "MySQL " : "MariaDB 1"));
    boxes.Clear();
    boxes.Answer(IDNO).Answer(IDYES);
    Press(wizard.repair.cmdDeleteDatabase);
    EXPECT_EQ(Check()[5], "All tables existed");
    Press(wizard.repair.cmdDeleteDatabase);
    EXPECT_EQ(boxes.Seen()[1],
              (SeenBox{"Kerno Tools :: MySQL Setup",
                       "This action will destroy all data currently in your Kerno database. Continue ?",
                       MB_YESNO | MB_ICONEXCLAMATION}));
    EXPECT_EQ(boxes.Seen().size(), 2u);
    EXPECT_EQ(Check(), kNothing);
}

TEST_F(MySQLSetUp, ChecksPartialInstallationsAndForeignTables) {
    const std::tuple<const char*, std::size_t, const char*> steps[] = {
        {"CREATE DATABASE glogin2", 0, "Not Existed"},
        {"CREATE DATABASE glogin", 0, "Existed"},
        {"CREATE TABLE glogin.account (a int)", 1, "Missing table(s) [Storageinfo ]"},
        {"CREATE TABLE glogin.party (a int)", 5, "All tables mising"},
        {"CREATE TABLE glogin.storageinfo (a int)", 1, "All tables existed"},
        {"CREATE DATABASE amcharacter", 2, "Existed"},
        {"CREATE TABLE amcharacter.charinfo (a int)", 3,
         "Missing table(s) [CartInfo ItemInfo FlagInfo SkillInfo ]"},
        {"CREATE DATABASE amglobal", 4, "Existed"},
        {"CREATE TABLE amglobal.guild (a int)", 5, "Missing table(s) [GCastle Party ]"},
        {"DROP DATABASE glogin", 1, "All tables missing"}};
    for (const auto& [change, label, text] : steps) {
        root.Execute(change);
        EXPECT_EQ(Check()[label], text) << change;
    }
    EXPECT_TRUE(boxes.Seen().empty());
    // What is already gone does not keep the others from being deleted.
    boxes.Answer(IDYES);
    Press(wizard.repair.cmdDeleteDatabase);
    ASSERT_EQ(boxes.Seen().size(), 2u);
    EXPECT_TRUE(boxes.Seen()[1].text.starts_with("Error Number [1008] "));
    EXPECT_EQ(Check(), kNothing);
}

TEST_F(MySQLSetUp, ShowsTheErrorOfEveryStep) {
    const auto expectError = [&](const std::function<void()>& step, const std::string& number) {
        boxes.Clear();
        step();
        ASSERT_FALSE(boxes.Seen().empty()) << number;
        const SeenBox& last = boxes.Seen().back();
        EXPECT_EQ(last.title + std::to_string(last.style), "Kerno Tools :: MySQL Setup Error16");
        EXPECT_TRUE(last.text.starts_with("Error Number [" + number)) << last.text;
    };
    const auto expectErrors = [&](const std::string& number) {
        expectError([&] { Check(); }, number);
        expectError([&] { Press(wizard.repair.cmdRepairDatabase); }, number);
        boxes.Answer(IDYES);
        expectError([&] { Press(wizard.repair.cmdDeleteDatabase); }, number);
        expectError([&] { Press(wizard.accounts.cmdSetupAccounts); }, number);
        EXPECT_EQ(common::ReadFileText(kernoIni), kKerno);
    };
    wizard.databaseCheck.txtRootPassword.Text("wr;ong");
    expectErrors("1045] ");
    wizard.databaseCheck.txtRootPassword.Text("");

    // An account that fails ends the step before Kerno.ini is written. MySQL refuses the first one already.
    wizard.accounts.txtGloginPassword.Text(mySQL ? "o'clock" : "pl");
    wizard.accounts.txtAMCharacterUsername.Text("k c");
    wizard.accounts.txtAMCharacterPassword.Text("o'clock");
    boxes.Clear();
    AnswerHowToMakeLogins(IDNO);
    Press(wizard.accounts.cmdSetupAccounts);
    ASSERT_EQ(boxes.Seen().size(), mySQL ? 2u : 1u);
    EXPECT_EQ(boxes.Seen()[0].title, "Kerno Tools :: MySQL Setup Error");
    for (const char* part : {"Error Number [1064] ", "IDENTIFIED BY '***'"})
        EXPECT_NE(boxes.Seen()[0].text.find(part), std::string::npos) << boxes.Seen()[0].text;
    EXPECT_EQ(boxes.Seen()[0].text.find("clock"), std::string::npos) << boxes.Seen()[0].text;
    EXPECT_EQ(BoxesBesideThat(2).size(), mySQL ? 0u : 1u);
    EXPECT_EQ(support::Rows(root, "SELECT User FROM mysql.user WHERE User LIKE 'k_'"),
              mySQL ? std::vector<std::string>{} : std::vector<std::string>{"kl"})
        << "the rest is not sent";
    EXPECT_EQ(common::ReadFileText(kernoIni), kKerno);
    wizard.accounts.txtAMCharacterUsername.Text("kc");
    SetFileAttributesA(kernoIni.c_str(), FILE_ATTRIBUTE_READONLY);
    expectError([&] { Press(wizard.accounts.cmdSetupAccounts); }, "70] ");
    SetFileAttributesA(kernoIni.c_str(), FILE_ATTRIBUTE_NORMAL);

    // The server goes away while the wizard asks: nothing of it hangs, and it goes on when it is back.
    const auto before = Check();
    {
        std::optional<support::ServerDown> down;
        boxes.Answer(IDYES, [&] { down.emplace(); });
        expectError([&] { Press(wizard.repair.cmdRepairDatabase); }, "20");
        expectErrors("2002] ");
        EXPECT_EQ(Labels(), before) << "labels stay as they were";
        Press(wizard.serverTest.cmdTestMySQL);
        EXPECT_EQ(wizard.serverTest.lblConnectionTest.Caption(), "Failed");
    }
    EXPECT_EQ(Check()[0], "Existed");
}

TEST_F(MySQLSetUp, EnterInAPasswordPressesThePagesOwnButton) {
    wizard.Show();
    const auto enterIn = [&](int tab, gui::TextBox& password) {
        wizard.mstMySQL.Tab(tab);
        password.SetFocus();
        PostMessageA(password.Window(), WM_KEYDOWN, VK_RETURN, 0);
    };
    enterIn(2, wizard.databaseCheck.txtRootPassword);
    EXPECT_TRUE(support::WaitUntil([&] { return Labels() == kNothing; }) && support::Settle());
    AnswerHowToMakeLogins(IDNO);
    enterIn(4, wizard.accounts.txtAMGlobalPassword);
    EXPECT_TRUE(support::WaitUntil([&] { return !boxes.Seen().empty(); }) && support::Settle());
    EXPECT_EQ(wizard.mstMySQL.Tab(), 4);
}

/// The window that says what is waited for; null when there is none in sight.
HWND WaitingWindow() {
    const HWND window = FindWindowA(nullptr, "Kerno Tools :: Please Wait");
    return window && IsWindowVisible(window) ? window : nullptr;
}

TEST_F(MySQLSetUp, AServerThatIsSilentHoldsNothingUpAndCanBeCancelled) {
    const support::SilentPort silent("127.0.0.7");
    wizard.Show();
    wizard.databaseCheck.txtRootHostname.Text("127.0.0.7");
    int ticks = 0;
    const support::Meanwhile others([&] { ++ticks; });
    for (const bool cancel : {true, false}) {
        ticks = 0;
        wizard.databaseCheck.cmdCheckDB.Press();
        EXPECT_FALSE(IsWindowEnabled(wizard.Window()));
        ASSERT_TRUE(support::WaitUntil([] { return WaitingWindow() != nullptr; }));
        EXPECT_GT(ticks, 5);
        char text[200] = {};
        GetDlgItemTextA(WaitingWindow(), IDC_frmWaiting_lblWhat, text, sizeof text);
        EXPECT_STREQ(text, "Waiting for an answer from MySQL on 127.0.0.7.");
        EXPECT_TRUE(support::WaitUntil([&] {
            GetDlgItemTextA(WaitingWindow(), IDC_frmWaiting_lblTime, text, sizeof text);
            return std::string(text).starts_with("For 2 seconds");
        }));
        if (!cancel)
            break;
        PostMessageA(GetDlgItem(WaitingWindow(), IDC_frmWaiting_cmdCancel), BM_CLICK, 0, 0);
        EXPECT_TRUE(support::Settle());
        EXPECT_TRUE(IsWindowEnabled(wizard.Window()) && !WaitingWindow());
        wizard.databaseCheck.txtRootHostname.Text("localhost");
        EXPECT_EQ(Check(), kNothing);
        wizard.databaseCheck.txtRootHostname.Text("127.0.0.7");
    }
    wizard.Unload();
    EXPECT_TRUE(support::WaitUntil([&] { return !wizard.Loaded() && !WaitingWindow(); }));
    EXPECT_TRUE(boxes.Seen().empty());
}

TEST_F(MySQLSetUp, NoPasswordIsChangedThatTheServersCannotBeTold) {
    auto& page = wizard.accounts;
    const auto users = [this] {
        return support::Rows(root, "SELECT User FROM mysql.user WHERE User LIKE 'k_'");
    };
    // Asked first, and a No changes nothing.
    page.txtGloginUsername.Text("root");
    page.txtAMGlobalPassword.Text("");
    boxes.Answer(IDNO);
    Press(page.cmdSetupAccounts);
    ASSERT_EQ(boxes.Seen().size(), 1u);
    EXPECT_EQ(boxes.Seen()[0].style, static_cast<unsigned>(MB_YESNO | MB_ICONEXCLAMATION));
    for (const char* doubt : {"\"root\" is the administrator's own", "The password of \"kg\" is empty"})
        EXPECT_NE(boxes.Seen()[0].text.find(doubt), std::string::npos) << boxes.Seen()[0].text;
    // One name with two passwords: the second one is in force.
    page.txtGloginUsername.Text("kc");
    page.txtAMGlobalPassword.Text("pg");
    boxes.Clear();
    AnswerHowToMakeLogins();
    Press(page.cmdSetupAccounts);
    const std::vector<SeenBox> refused = BoxesBesideThat();
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_TRUE(
        refused[0].text.starts_with("Error Number [1045] The login \"kc\" for glogin does not work: "))
        << refused[0].text;
    EXPECT_EQ(common::ReadFileText(kernoIni), kKerno);
    modServerControl::KernoPath("");
    support::Clean(root);
    Press(page.cmdSetupAccounts);
    EXPECT_TRUE(boxes.Seen().back().text.starts_with("The folder of the servers is not set"));
    EXPECT_TRUE(users().empty());
    EXPECT_FALSE(common::FileExists("Kerno.ini"));
}

TEST_F(MySQLSetUp, OpensBesideAKernoIniThatCannotBeRead) {
    wizard.Unload();
    support::WriteFile(kernoIni, "");
    wizard.Show();
    EXPECT_TRUE(support::WaitUntil([&] { return !boxes.Seen().empty(); }) && support::Settle());
    EXPECT_TRUE(wizard.Loaded());
    EXPECT_TRUE(boxes.Seen()[0].text.starts_with("Error Number [62] "));
    EXPECT_EQ(wizard.accounts.txtGloginUsername.Text(), "");
    Press(wizard.accounts.cmdSuggestPasswords);
    EXPECT_EQ(wizard.accounts.txtGloginPassword.Text().size(), 16u);
    EXPECT_NE(wizard.accounts.txtGloginPassword.Text(), wizard.accounts.txtAMGlobalPassword.Text());
}

TEST_F(MySQLSetUp, NextAndPreviousFollowTheTabs) {
    wizard.Show();
    const auto buttons = [&] {
        return std::to_string(wizard.mstMySQL.Tab()) + (wizard.cmdPrevious.Enabled() ? "< " : "  ") +
               wizard.cmdNext.Caption();
    };
    for (const char* expected : {"1< Next", "2< Next", "3< Next", "4< Next", "5< Finish"}) {
        wizard.cmdNext.Press();
        EXPECT_EQ(buttons(), expected);
    }
    // As a click on the tab itself does it.
    SendMessageA(wizard.mstMySQL.Window(), TCM_SETCURFOCUS, 1, 0);
    wizard.cmdPrevious.SetFocus();
    wizard.cmdPrevious.Press();
    EXPECT_EQ(buttons(), "0  Next");
    EXPECT_EQ(GetFocus(), wizard.cmdNext.Window()) << "the keyboard would be dead";
    wizard.mstMySQL.Tab(5);
    wizard.cmdNext.Press();
    EXPECT_FALSE(wizard.Loaded());
}

} // namespace
