#include "database/Recordset.h"
#include "support/Database.h"
#include "support/Network.h"

namespace {

using namespace database;
using namespace std::chrono_literals;

constexpr const char* kThere = "127.0.0.7";

class SilenceTest : public support::DatabaseTest {
protected:
    SilenceTest() {
        root.Execute("CREATE DATABASE glogin");
        root.Execute(
            "CREATE TABLE glogin.account (AID int NOT NULL PRIMARY KEY, Name varchar(24)) ENGINE=MyISAM");
        root.Execute("INSERT INTO glogin.account SELECT seq, 'x' FROM " + support::Numbers(1, 3000));
        connection.Limit(1s);
    }

    /// The error by which the task ends, and that the message loop went on meanwhile.
    Error ErrorOf(gui::Task<> task) {
        int ticks = 0;
        const support::Meanwhile ticking([&] { ++ticks; });
        Error error(0, "");
        try {
            support::Run(std::move(task));
        } catch (const Error& raised) {
            error = raised;
        }
        EXPECT_GT(ticks, 3) << "nothing else went on";
        return error;
    }

    Connection connection;
};

gui::Task<> Insert(Connection& connection) {
    co_await connection.Execute("INSERT INTO glogin.account VALUES (0, 'mine')");
}

TEST_F(SilenceTest, AServerThatNeverAnswersEndsInAnErrorThatNamesIt) {
    const support::SilentPort silent(kThere);
    const Error error = ErrorOf(connection.Open(support::RootConnection(kThere)));
    EXPECT_EQ(error.Number(), kNoAnswer);
    EXPECT_EQ(error.Description(), "MySQL on 127.0.0.7 has not answered for 1 second.");
    EXPECT_TRUE(error.ConnectionLost());
    EXPECT_FALSE(connection.IsOpen());
    support::Run(connection.Open(support::RootConnection()));
    EXPECT_EQ(support::Run(connection.Scalar("SELECT 1")), Value(1));
}

TEST_F(SilenceTest, ALockOfSomebodyElseHoldsNothingUpAndIsOutlived) {
    support::Run(connection.Open(support::RootConnection()));
    root.Execute("LOCK TABLES glogin.account WRITE");
    EXPECT_EQ(ErrorOf(Insert(connection)).Number(), kNoAnswer);
    EXPECT_FALSE(connection.IsOpen()) << "its session is still in use";
    support::Run(connection.Revive());
    EXPECT_EQ(support::Run(connection.Scalar("SELECT 1")), Value(1));
    root.Execute("UNLOCK TABLES");
}

TEST_F(SilenceTest, AChangeWhoseAnswerIsMissingIsNotMadeTwice) {
    support::Proxy proxy(kThere);
    support::Run(connection.Open(support::RootConnection(kThere)));
    Recordset set;
    support::Run(set.Open(connection, "SELECT * FROM glogin.account"));
    set.AddNew();
    set.Field("AID", 5000);
    set.Field("Name", "new");
    root.Execute("LOCK TABLES glogin.account WRITE");
    EXPECT_EQ(ErrorOf(set.UpdateBatch()).Number(), kNoAnswer);
    EXPECT_EQ(set.PendingChanges(), 1u);
    // The server makes the change when it can, and nobody hears of it.
    root.Execute("UNLOCK TABLES");
    ASSERT_TRUE(support::WaitUntil(
        [&] { return support::Rows(root, "SELECT 1 FROM glogin.account WHERE AID = 5000").size() == 1; }));
    support::Run(set.UpdateBatch());
    EXPECT_EQ(set.PendingChanges(), 0u);
    for (const bool cut : {true, false}) {
        set.Field("Name", cut ? "cut" : "held");
        set.Update();
        if (cut) {
            proxy.Cut();
        } else {
            proxy.Hold(true);
            EXPECT_EQ(ErrorOf(set.UpdateBatch()).Number(), kNoAnswer);
            proxy.Hold(false);
        }
        support::Run(set.UpdateBatch());
        EXPECT_EQ(support::Rows(root, "SELECT Name FROM glogin.account WHERE AID = 5000")[0],
                  cut ? "cut" : "held");
    }
}

TEST_F(SilenceTest, ATaskThatEndsWhileItWaitsLeavesAConnectionThatCanBeUsedAgain) {
    support::Run(connection.Open(support::RootConnection()));
    root.Execute("LOCK TABLES glogin.account WRITE");
    {
        gui::Tasks tasks;
        tasks.Start(Insert(connection));
        EXPECT_TRUE(tasks.Any());
        EXPECT_EQ(support::ErrorNumber([&] { support::Run(Insert(connection)); }), kStillExecuting);
    }
    EXPECT_FALSE(connection.IsOpen());
    root.Execute("UNLOCK TABLES");
    support::Run(connection.Revive());
    EXPECT_EQ(support::Run(connection.Scalar("SELECT COUNT(*) > 2999 FROM glogin.account")), Value(1));
}

} // namespace
