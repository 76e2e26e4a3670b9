#include "Accounts.h"
#include "accounts/clsAccountSQL.h"

namespace {

class StoreTest : public AccountsTest {
protected:
    StoreTest() {
        store.SQLHostname("localhost");
        EXPECT_EQ(support::Run(store.ConnectSQL()), 0);
        EXPECT_EQ(store.MoveToFirstRecord(), 0);
        store.SQLUsername("root");
    }
    clsAccountSQL store;
};

} // namespace

TEST_F(StoreTest, AnEmptyTableConnects) {
    root.Execute("DELETE FROM glogin.account");
    ASSERT_EQ(support::Run(store.ConnectSQL()), 1);
    EXPECT_EQ(store.AccountName(), "");
    EXPECT_TRUE(store.CheckAccountID(1));
    EXPECT_EQ(store.GetUniqueAccountID(), 100001);
    // The server numbers it, and only then is the number known here.
    EXPECT_EQ(store.AddNewAccount("first", "p", "m", 1), 1);
    EXPECT_EQ(support::Run(store.UpdateAccountSQL()), 1);
    ASSERT_EQ(Table().size(), 1u);
    EXPECT_FALSE(store.CheckAccountID(std::stoi(Table()[0])));
}

TEST_F(StoreTest, WhatTheServerRefusedCanBeCorrectedOrTakenBack) {
    ASSERT_EQ(support::Run(store.ConnectSQL()), 1);
    root.Execute("INSERT INTO glogin.account (AID, Name) VALUES (5, 'theirs'), (6, 'theirs too')");
    EXPECT_EQ(store.AddNewAccount("five", "p", "m", 1, 5), 1);
    EXPECT_EQ(store.AddNewAccount("six", "p", "m", 1, 6), 1);
    const auto renumber = [this](const char* name, std::int32_t id) {
        EXPECT_EQ(store.MoveToAccount(name), 1);
        store.AccountID(id);
        EXPECT_EQ(store.SaveCurrentRecord(), 1);
    };
    renumber("alpha", 6);
    renumber("bravo", 5);
    EXPECT_EQ(support::Run(store.UpdateAccountSQL()), 0);
    renumber("five", 7);
    renumber("alpha", 8);
    for (const char* name : {"six", "bravo"}) {
        EXPECT_EQ(store.DeleteRecord(name), 1);
        EXPECT_EQ(store.DeleteRecord(name), 0);
    }
    EXPECT_EQ(store.GetUniqueAccountID(), 100001);
    EXPECT_EQ(support::Run(store.UpdateAccountSQL()), 1);
    EXPECT_EQ(Table(), (std::vector<std::string>{"5|theirs||0|", "6|theirs too||0|", "7|five|p|1|m",
                                                 "8|alpha|a|0|a@x", before[2]}));
}

TEST_F(StoreTest, AFailureLeavesNothingHalfDone) {
    root.Execute("UPDATE glogin.account SET AID = 4294967295 WHERE Name = 'alpha'");
    EXPECT_EQ(support::Run(store.ConnectSQL()), 0);
    EXPECT_FALSE(store.Connected());
    root.Execute("UPDATE glogin.account SET AID = 1 WHERE Name = 'alpha'");
    ASSERT_EQ(support::Run(store.ConnectSQL()), 1);
    EXPECT_EQ(store.AddNewAccount("waits", "p", "m", 1), 1);
    root.Execute("ALTER TABLE glogin.account MODIFY AID varchar(9)");
    root.Execute("UPDATE glogin.account SET AID = 'odd' WHERE Name = 'bravo'");
    EXPECT_EQ(support::Run(store.RefreshAccountSQL()), 0);
    EXPECT_FALSE(store.CheckAccountName("bravo"));
    EXPECT_EQ(store.PendingChanges(), 1u);
    EXPECT_EQ(store.DisconnectSQL(), 1);
    EXPECT_EQ(support::Run(store.UpdateAccountSQL()), 0);
}
