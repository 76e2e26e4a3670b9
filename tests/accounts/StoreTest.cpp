#include "Accounts.h"
#include "accounts/clsAccountSQL.h"

namespace {

class StoreTest : public AccountsTest {
protected:
    StoreTest() {
        store.SQLHostname("localhost");
        EXPECT_EQ(store.ConnectSQL(), 0);
        EXPECT_EQ(store.MoveToFirstRecord(), 0);
        store.SQLUsername("root");
    }
    clsAccountSQL store;
};

} // namespace

TEST_F(StoreTest, AnEmptyTableConnects) {
    root.Execute("DELETE FROM glogin.account");
    ASSERT_EQ(store.ConnectSQL(), 1);
    EXPECT_EQ(store.AccountName(), "");
    EXPECT_TRUE(store.CheckAccountID(1));
    EXPECT_EQ(store.GetUniqueAccountID(), 100001);
    // The server numbers it, and only then is the number known here.
    EXPECT_EQ(store.AddNewAccount("first", "p", "m", 1), 1);
    EXPECT_EQ(store.UpdateAccountSQL(), 1);
    ASSERT_EQ(Table().size(), 1u);
    EXPECT_FALSE(store.CheckAccountID(std::stoi(Table()[0])));
}

TEST_F(StoreTest, ChangesOfAnyTextWaitForTheBatch) {
    const std::string odd = "o'b\\r%\"\xFC\xDF;--";
    ASSERT_EQ(store.ConnectSQL(), 1);
    store.AccountPassword(odd);
    EXPECT_EQ(store.SaveCurrentRecord(), 1);
    EXPECT_EQ(store.DeleteRecord("bravo"), 1);
    EXPECT_EQ(store.DeleteRecord("bravo"), 0);
    EXPECT_EQ(store.AddNewAccount(odd, "p", "m", 1, 100003), 1);
    EXPECT_EQ(store.GetUniqueAccountID(), 100002);
    EXPECT_EQ(store.MoveToAccount(odd), 1);
    EXPECT_EQ(Table(), before);
    EXPECT_EQ(store.UpdateAccountSQL(), 1);
    EXPECT_EQ(Table(), (std::vector<std::string>{"100001|alpha|" + odd + "|0|a@x", "100003|" + odd + "|p|1|m",
                                                 "100004|Charlie|c|0|c@x"}));
}
