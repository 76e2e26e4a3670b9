#include "accounts/Sending.h"
#include "Accounts.h"
#include "accounts/AccountKeeper.h"
#include "accounts/GMHistory.h"
#include "accounts/PrivilegeAudit.h"
#include "accounts/WaitingChanges.h"

namespace {

using namespace accounts;
using Texts = std::vector<std::string>;

constexpr Privileges kAll{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
constexpr Privileges kWarp{0, 0, 0, 0, 0, 0, 0, 1};
const std::string kAllOnes = ",1,1,1,1,1,1,1,1,1,1,1,1,1,1,1";
const std::string kSaved = "Account saved successfully";

/// The editor's work without its window, over the server and the privilege file.
class SendingTest : public AccountsTest {
protected:
    SendingTest() {
        store.SQLHostname("localhost");
        store.SQLUsername("root");
        store.KernoPath(folder.Path());
        EXPECT_EQ(support::Run(store.ConnectSQL()), 1);
        EXPECT_EQ(store.LoadGMData(), 1);
    }

    /// Selects the account, lets `change` edit what the fields show of it, and keeps that.
    void Change(const std::string& name, const std::function<void(AccountEdit&)>& change) {
        ASSERT_TRUE(keeper.Select(store.RowOfName(name).value_or(SIZE_MAX))) << name;
        AccountEdit edit = keeper.Current()->stored;
        change(edit);
        EXPECT_EQ(keeper.RefusalToKeep(edit), "");
        EXPECT_EQ(keeper.Keep(edit).message, "");
    }
    void Add(const std::string& name, const std::string& id,
             const std::optional<Privileges>& privileges = {}) {
        AccountEdit edit;
        edit.fields = {name, id, "p", "m"};
        edit.isGameMaster = privileges.has_value();
        edit.privileges = privileges.value_or(Privileges{});
        EXPECT_EQ(keeper.Add(edit).message, "Account Added");
    }
    void Delete(const std::string& name) {
        EXPECT_EQ(keeper.Delete(*store.RowOfName(name)).message, "Account deleted.");
    }
    /// Saves, and says what was told of it line by line, without the empty ones.
    Texts Save() {
        result = support::Run(accounts::Send(store));
        Texts told = result.notes;
        for (const std::string& line : common::Split(TextOf(result, store), '\n')) {
            if (!line.empty())
                told.push_back(line);
        }
        return told;
    }
    Texts Waiting() {
        Texts texts;
        for (const WaitingChange& change : WaitingChanges(store))
            texts.push_back(change.account + "|" + change.what + "|" + change.before + "|" + change.after);
        return texts;
    }
    void Reload() {
        EXPECT_EQ(support::Run(store.RefreshAccountSQL()), 1);
        EXPECT_EQ(store.LoadGMData(), 1);
    }

    const std::string notAll =
        "Kerno Tools did not save all changes. These wait under \"Changes...\", where you can "
        "take them back; all others are saved";
    clsAccountSQL store;
    AccountKeeper keeper{store};
    SendResult result;
};

} // namespace

TEST_F(SendingTest, NobodyElseGetsPrivilegesThatWait) {
    Add("helper", "100003", kAll);
    Change("bravo", [](AccountEdit& edit) { edit.fields.id = "100007"; });
    Change("Charlie", [](AccountEdit& edit) {
        edit.isGameMaster = true;
        edit.privileges = kWarp;
    });
    // Meanwhile the game gives both numbers away, and Charlie's too.
    root.Execute("INSERT INTO glogin.account (AID, Name) VALUES (100003, 'stranger'), (100007, 'other')");
    root.Execute("UPDATE glogin.account SET Name = 'third' WHERE AID = 100004");
    const std::string rows = PrivilegeRows();
    const Texts told = Save();
    ASSERT_EQ(told.size(), 4u);
    EXPECT_EQ(told[0], notAll);
    EXPECT_TRUE(told[1].starts_with("'helper' (100003): [1062] ")) << told[1];
    EXPECT_TRUE(told[2].starts_with("'bravo' (100002): [1062] ")) << told[2];
    EXPECT_EQ(told[3], "The privileges of 100004: the number belongs to 'third' now");
    EXPECT_EQ(PrivilegeRows(), rows);
    // What was put right goes with its privileges.
    Change("helper", [](AccountEdit& edit) { edit.fields.id = "100010"; });
    Save();
    EXPECT_EQ(PrivilegeRows(), rows + "100010" + kAllOnes + "\r\n");
    Reload();
    EXPECT_EQ(Save(), Texts{kSaved});
    EXPECT_EQ(PrivilegeRows(), rows + "100010" + kAllOnes + "\r\n");

    Delete("bravo");
    EXPECT_FALSE(store.AccountIsAGM(100002));
    EXPECT_EQ(Save(), Texts{kSaved});
    EXPECT_EQ(PrivilegeRows(), "100010" + kAllOnes + "\r\n");
}

TEST_F(SendingTest, ARowIsOnlyChangedWhereItIsStillThatAccounts) {
    Change("alpha", [](AccountEdit& edit) { edit.fields.password = "mine"; });
    Delete("bravo");
    Delete("Charlie");
    root.Execute("UPDATE glogin.account SET Name = 'Alpha' WHERE AID = 100001");
    root.Execute("UPDATE glogin.account SET Name = 'stranger' WHERE AID = 100002");
    root.Execute("DELETE FROM glogin.account WHERE AID = 100004");
    EXPECT_EQ(
        Save(),
        (Texts{"Account 'Charlie' (100004) had been removed from the server already.", notAll,
               "'alpha' (100001): its number belongs to 'Alpha' now, whose account was left as it is",
               "'bravo' (100002): its number belongs to 'stranger' now, whose account was left as it is"}));
    EXPECT_EQ(Table(), (Texts{"100001|Alpha|a|0|a@x", "100002|stranger|b|1|b@x"}));
    EXPECT_EQ(PrivilegeRows(), std::string("100002") + kBroadcast + "\r\n");
}

TEST_F(SendingTest, AnAccountThatTakesAGonePlaceIsNotTakenForTheOldOne) {
    // Somebody else removes both; here the one is deleted, the other renamed, and both places are given anew.
    Delete("Charlie");
    Change("bravo", [](AccountEdit& edit) { edit.fields = {"moved", "100012", "p", "m"}; });
    Add("Charlie", "100004");
    Add("bravo", "100002");
    root.Execute("DELETE FROM glogin.account WHERE AID IN (100002, 100004)");
    const Texts told{"Account 'Charlie' (100004) had been removed from the server already.", notAll,
                     "'bravo' (100002): somebody else has removed it from the server. Nothing was sent"};
    EXPECT_EQ(Save(), told);
    // Nor when it is tried again.
    EXPECT_EQ(Save(), (Texts{told[1], told[2]}));
    EXPECT_EQ(
        support::Rows(root, "SELECT AID, Name FROM glogin.account WHERE AID IN (100002, 100004, 100012)"),
        (Texts{"100002|bravo", "100004|Charlie"}));
}

TEST_F(SendingTest, ANameIsTakenOnceAlsoWhenPlayersRegisterMeanwhile) {
    Change("alpha", [](AccountEdit& edit) { edit.fields.name = "bravo2"; });
    Change("bravo", [](AccountEdit& edit) { edit.fields.name = "alpha"; });
    Change("bravo2", [](AccountEdit& edit) { edit.fields.name = "bravo"; });
    Add("new", "100010");
    Add("fresh", "100011");
    root.Execute("INSERT INTO glogin.account (AID, Name) VALUES (100005, 'new'), (100006, 'FRESH')");
    EXPECT_EQ(Save(), (Texts{notAll, "'new' (100010): [1062] The name belongs to account 100005 by now."}));
    EXPECT_EQ(support::Rows(root, "SELECT AID, Name FROM glogin.account ORDER BY AID"),
              (Texts{"100001|bravo", "100002|alpha", "100004|Charlie", "100005|new", "100006|FRESH",
                     "100011|fresh"}));
}

TEST_F(SendingTest, WhatIsEmptyOnTheServerIsNotChangedByLooking) {
    root.Execute("ALTER TABLE glogin.account MODIFY Pass varchar(32) NULL, MODIFY Mail text NULL");
    root.Execute("UPDATE glogin.account SET Pass = NULL, Mail = NULL WHERE AID = 100001");
    Reload();
    Change("alpha", [](AccountEdit&) {});
    EXPECT_EQ(Waiting(), Texts());
    EXPECT_EQ(store.PendingChanges(), 0u);
    // The columns have room for more than usual.
    Change("alpha", [](AccountEdit& edit) { edit.fields.password = std::string(32, 'p'); });
    AccountEdit edit = keeper.Current()->stored;
    edit.fields.password += "p";
    edit.fields.email = std::string(99, 'm');
    EXPECT_EQ(keeper.RefusalToKeep(edit), "The password has 33 characters. Please shorten it to 32");
    EXPECT_EQ(Save(), Texts{kSaved});
    EXPECT_EQ(Table()[0], "100001|alpha|" + std::string(32, 'p') + "|0|NULL");
}

TEST_F(SendingTest, AConflictIsDecidedFieldByField) {
    Change("alpha", [](AccountEdit& edit) {
        edit.fields.password = "mine";
        edit.fields.email = "mine@x";
        edit.sex = 1;
    });
    root.Execute("UPDATE glogin.account SET Pass = 'theirs', Mail = 'theirs@x' WHERE AID = 100001");
    Save();
    EXPECT_EQ(Table()[0], "100001|alpha|theirs|0|theirs@x");
    ASSERT_EQ(result.conflicts.size(), 1u);
    const Conflict& conflict = result.conflicts[0];
    const std::size_t password = Index(Field::Password);
    EXPECT_EQ(conflict.read[password], "a");
    EXPECT_EQ(conflict.theirs[password], "theirs");
    EXPECT_EQ(conflict.mine[password], "mine");
    Decide(store, conflict, {false, false, true, true, false});
    EXPECT_EQ(Waiting(), (Texts{"alpha (100001)|Password|theirs|mine", "alpha (100001)|Sex|Female|Male"}));
    EXPECT_EQ(Save(), Texts{kSaved});
    EXPECT_EQ(Table()[0], "100001|alpha|mine|1|theirs@x");
}

TEST_F(SendingTest, WaitingChangesAreListedAndTakenBackOneByOne) {
    Add("new", "100003", kAll);
    Change("alpha", [](AccountEdit& edit) {
        edit.fields.name = "alpha2";
        edit.fields.password = "secret";
    });
    Change("bravo", [](AccountEdit& edit) {
        edit.fields.id = "100009";
        edit.privileges = kWarp;
    });
    Delete("Charlie");
    EXPECT_EQ(WaitingAccounts(store), 4u);
    EXPECT_EQ(WaitingAccounts(store, store.RowOfName("bravo")), 4u);
    const Texts all{"new (100003)|new account||m",
                    "alpha2 (100001)|Account name|alpha|alpha2",
                    "alpha2 (100001)|Password|a|secret",
                    "bravo (100009)|ID|100002|100009",
                    "Charlie (100004)|deleted|c@x|",
                    "no account (100002)|Privileges|BROADCAST|no game master",
                    "new (100003)|Privileges|no game master|all",
                    "bravo (100009)|Privileges|no game master|WARP"};
    EXPECT_EQ(Waiting(), all);
    // A name that somebody got here meanwhile cannot come back before that is taken back too.
    Add("alpha", "100020");
    const auto back = [&](std::size_t index) { return TakeBack(store, WaitingChanges(store)[index]); };
    EXPECT_TRUE(back(1).starts_with("Account alpha (100020) has got its name or number here."));
    EXPECT_EQ(back(5), "");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(back(1), "");
    // The number and the privileges that went with it, the deletion, the addition with its privileges.
    EXPECT_EQ(back(1), "");
    EXPECT_EQ(Waiting(), (Texts{all[0], all[4], all[6]}));
    EXPECT_EQ(back(1), "");
    EXPECT_EQ(back(0), "");
    EXPECT_EQ(Waiting(), Texts());
    EXPECT_EQ(store.GetUniqueAccountID(), 100003);
    EXPECT_EQ(Save(), Texts{kSaved});
    EXPECT_EQ(Table(), before);
    EXPECT_EQ(PrivilegeRows(), std::string("100002") + kBroadcast + "\r\n");
}

TEST_F(SendingTest, AChangeThatIsTypedBackWaitsOnlyWhereItMayHaveArrived) {
    const auto type = [this](const char* password) {
        Change("alpha", [password](AccountEdit& edit) { edit.fields.password = password; });
    };
    type("typed");
    type("a");
    EXPECT_EQ(Waiting(), Texts());
    EXPECT_EQ(WaitingAccounts(store), 0u);
    type("typed");
    root.Execute("LOCK TABLES glogin.account WRITE");
    support::Client killer;
    killer.Open(support::RootConnection());
    const support::Meanwhile kill([&] {
        for (const auto& id : support::Rows(killer, "SELECT ID FROM information_schema.processlist WHERE "
                                                    "DB = 'glogin' AND State LIKE 'Waiting for table%'"))
            killer.Execute("KILL " + id);
    });
    EXPECT_TRUE(Save()[0].starts_with("Kerno Tools failed to save to SQL server."));
    root.Execute("UNLOCK TABLES");
    type("a");
    EXPECT_EQ(Waiting(), Texts{"alpha (100001)|Password|not known|a"});
    EXPECT_EQ(Save(), Texts{kSaved});
    EXPECT_EQ(Table(), before);
}

TEST_F(SendingTest, ThePrivilegeFileIsLookedAfter) {
    const std::string rows = "100002" + kAllOnes + "\r\n100003" + kAllOnes + "\r\n7" + kNone +
                             "\r\n// note\r\n100002" + kNone + "\r\n";
    support::WriteFile(privilegeFile, "header\r\n" + rows);
    Reload();
    const auto audit = AuditPrivileges(store);
    using Finding = AuditRow::Finding;
    ASSERT_EQ(audit.size(), 4u);
    EXPECT_TRUE(audit[0].id == 100003 && audit[0].finding == Finding::NextFree);
    EXPECT_TRUE(audit[1].id == 7 && audit[1].finding == Finding::NoAccount);
    EXPECT_TRUE(audit[2].id == 100002 && audit[2].finding == Finding::Double);
    EXPECT_TRUE(audit[3].account == "bravo" && audit[3].finding == Finding::None);
    ClearFindings(store, audit);
    EXPECT_EQ(Waiting().size(), 3u);
    EXPECT_EQ(Save(), Texts{kSaved});
    EXPECT_EQ(PrivilegeRows(), "100002" + kAllOnes + "\r\n// note\r\n");

    // The earlier file gives back what belongs to an account.
    Change("bravo", [](AccountEdit& edit) { edit.isGameMaster = false; });
    Save();
    const auto generations = Generations(store.GMPath());
    ASSERT_EQ(generations.size(), 2u);
    GMTable earlier;
    earlier.Load(generations[1]);
    EXPECT_EQ(BringBack(store, DifferencesTo(store, earlier)), 1);
    EXPECT_EQ(Waiting(), Texts{"bravo (100002)|Privileges|no game master|all"});
    Save();
    EXPECT_EQ(PrivilegeRows(), "// note\r\n100002" + kAllOnes + "\r\n");
}
