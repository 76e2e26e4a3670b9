#include "database/Recordset.h"

#include "support/Database.h"

#include <thread>

namespace {

using namespace database;
using support::ErrorNumber;
using support::Rows;
using Lines = std::vector<std::string>;

constexpr const char* kAll = "SELECT * FROM glogin.account";

class RecordsetTest : public support::DatabaseTest {
protected:
    RecordsetTest() {
        root.Execute("CREATE DATABASE glogin");
        root.Execute(
            "CREATE TABLE glogin.account (AID int unsigned NOT NULL auto_increment PRIMARY KEY, Name "
            "varchar(24) NOT NULL default 'nobody', Note blob, Points int) ENGINE=MyISAM");
        root.Execute(
            "INSERT INTO glogin.account VALUES (1,'ann','n',10),(2,'bob',NULL,20),(3,'cid','',NULL)");
        support::Run(own.Open(support::RootConnection()));
        support::Run(set.Open(own, kAll));
    }

    /// What another client sees.
    Lines Stored(const std::string& what, const std::string& table = "account") {
        return Rows(root, "SELECT " + what + " FROM glogin." + table + " ORDER BY 1");
    }

    /// Makes the row whose first field is `key` current.
    void Find(std::int64_t key) {
        for (set.MoveFirst(); !set.Eof() && !(set.Field(0) == Value(key));)
            set.MoveNext();
        ASSERT_FALSE(set.Eof()) << "no row " << key;
    }
    void Rename(std::int64_t key, const char* name) {
        Find(key);
        set.Field("Name", name);
    }
    void Add(std::int64_t key, const char* name) {
        set.AddNew();
        set.Field("AID", key);
        set.Field("Name", name);
    }
    /// With a trigger that sleeps at one of the rows.
    void UpdateUntilTheServerIsKilled() {
        std::unique_ptr<support::ServerDown> down;
        // Not every driver manager lets a second thread use a connection that is busy.
        support::Client watching;
        watching.Open(support::RootConnection());
        std::thread killer([&] {
            support::WaitUntil([&] {
                return Rows(watching,
                            "SELECT COUNT(*) FROM information_schema.processlist WHERE State = 'User "
                            "sleep'")[0] == "1";
            });
            down = std::make_unique<support::ServerDown>();
        });
        EXPECT_NE(ErrorNumber([&] { support::Run(set.UpdateBatch()); }), 0);
        killer.join();
        const std::size_t pending = set.PendingChanges();
        EXPECT_EQ(ErrorNumber([&] { support::Run(set.UpdateBatch()); }), 2002);
        EXPECT_EQ(set.PendingChanges(), pending);
        down.reset();
        root.Revive();
    }

    Connection own;
    Recordset set;
};

TEST_F(RecordsetTest, MovesBetweenItsEndsAndBackToBookmarks) {
    EXPECT_EQ(set.RecordCount(), 3u);
    EXPECT_EQ(set.Field("name"), Value("ann"));
    const auto first = set.Bookmark();
    set.MovePrevious();
    EXPECT_TRUE(set.Bof());
    EXPECT_EQ(ErrorNumber([&] { set.Field(0); }), kNoCurrentRecord);
    set.MoveLast();
    set.MoveNext();
    EXPECT_TRUE(set.Eof() && !set.Bof());
    EXPECT_EQ(ErrorNumber([&] { set.MoveNext(); }), kNoCurrentRecord);
    set.Bookmark(first);
    EXPECT_EQ(set.Field(0), Value(1));
    EXPECT_EQ(ErrorNumber([&] { set.Field("Nix"); }), kItemNotFound);

    root.Execute("DELETE FROM glogin.account");
    support::Run(set.Requery());
    EXPECT_TRUE(set.Bof() && set.Eof() && set.RecordCount() == 0);
    set.Close();
    EXPECT_EQ(ErrorNumber([&] { set.RecordCount(); }), kObjectClosed);
}

TEST_F(RecordsetTest, ChangesAreKeptUntilTheBatchAndLostWithoutIt) {
    constexpr const char* kColumns = "AID, Name, HEX(Note), Points";
    const Lines before = Stored(kColumns);
    const auto change = [this] {
        Rename(2, "b'o\\b\"%");
        set.Field("Note", Bytes{std::string("\0'\\\xFF", 4)});
        set.Update();
        Find(1);
        set.Delete();
        EXPECT_EQ(ErrorNumber([&] { set.Field(0); }), kNoCurrentRecord);
        Add(4294967295, "max");
        // A move takes an edit over as Update does.
        set.MoveFirst();
        EXPECT_EQ(set.Field("Name"), Value("b'o\\b\"%"));
        set.MoveLast();
        EXPECT_EQ(set.Field("AID"), Value(std::int64_t{4294967295}));
        set.Field("Points", 7);
        set.CancelUpdate();
        EXPECT_EQ(set.RecordCount(), 3u);
        EXPECT_EQ(set.PendingChanges(), 3u);
    };
    change();
    EXPECT_EQ(Stored(kColumns), before);
    support::Run(set.Requery());
    EXPECT_EQ(set.Field("Name"), Value("ann"));

    change();
    support::Run(set.UpdateBatch());
    EXPECT_EQ(Stored(kColumns),
              (Lines{"2|b'o\\b\"%|00275CFF|20", "3|cid||NULL", "4294967295|max|NULL|NULL"}));
}

TEST_F(RecordsetTest, ChangesAreSentInTheOrderTheyWereMade) {
    // Two rows swap their keys by way of a third number; a row takes the key of one that was deleted.
    for (const auto& [from, to] : {std::pair{1, 99}, {2, 1}, {99, 2}}) {
        Find(from);
        set.Field(0, to);
        set.Update();
    }
    Find(3);
    set.Delete();
    for (const int key : {3, 4, 5}) {
        Add(key, "new");
        set.Update();
    }
    set.Delete();
    set.AddNew();
    set.Field("Name", "numbered");
    support::Run(set.UpdateBatch());
    EXPECT_EQ(set.Field("AID"), Value(100));
    // The default that the server filled in does not stand against a change of the new row.
    set.Field("Points", 5);
    set.Field("Name", "renamed");
    set.Delete();
    set.AddNew();
    support::Run(set.UpdateBatch());
    set.Field("Name", "late");
    support::Run(set.UpdateBatch());
    EXPECT_EQ(Stored("AID, Name"), (Lines{"1|bob", "2|ann", "3|new", "4|new", "101|late"}));
}

TEST_F(RecordsetTest, ARefusedDeletionSparesTheRowThatTookThePlace) {
    root.Execute("DELETE FROM glogin.account WHERE AID=1");
    Find(1);
    set.Delete();
    set.AddNew();
    set.Field("AID", 1);
    set.Field("Name", "new");
    set.Update();
    for (int attempt = 0; attempt < 2; ++attempt)
        EXPECT_EQ(ErrorNumber([&] { support::Run(set.UpdateBatch()); }), kRowChanged);
    EXPECT_EQ(Stored("AID, Name")[0], "1|new");
}

TEST_F(RecordsetTest, WhatSomebodyElseDidIsReportedAndNotOverwritten) {
    root.Execute("DELETE FROM glogin.account WHERE AID=1");
    root.Execute("UPDATE glogin.account SET Name='theirs' WHERE AID=2");
    root.Execute("UPDATE glogin.account SET Points=1 WHERE AID=3");

    set.Field("Name", "gone");
    Rename(2, "mine");
    Rename(3, "kept");
    set.AddNew();
    set.Field("AID", 3);
    set.Update();
    EXPECT_EQ(ErrorNumber([&] { support::Run(set.UpdateBatch()); }), kRowChanged);
    EXPECT_EQ(Stored("AID, Name, Points"), (Lines{"2|theirs|20", "3|kept|1"}));
    EXPECT_EQ(set.PendingChanges(), 3u);
    // Once the obstacles are gone, the same batch goes through.
    root.Execute("UPDATE glogin.account SET Name='bob' WHERE AID=2");
    root.Execute("DELETE FROM glogin.account WHERE AID=3");
    root.Execute("INSERT INTO glogin.account VALUES (1,'ann','n',10)");
    support::Run(set.UpdateBatch());
    EXPECT_EQ(Stored("AID, Name"), (Lines{"1|gone", "2|mine", "3|nobody"}));
}

TEST_F(RecordsetTest, AKeyThatWasGivenToAnotherRowIsLeftAlone) {
    root.Execute("ALTER TABLE glogin.account MODIFY Name varchar(24) CHARACTER SET utf8mb4");
    root.Execute("INSERT INTO glogin.account (AID, Name) VALUES (4, _utf8mb4 x'E4B8ADE69687'), (5, 'eve ')");
    support::Run(set.Open(own, kAll));
    set.Identity({1});
    for (const char* theirs : {"'Ann'", "'bob '", "_utf8mb4 x'E4B8AD'"})
        root.Execute("UPDATE glogin.account SET Name=" + std::string(theirs) + " WHERE Name=" +
                     (theirs[1] == 'A'   ? "'ann'"
                      : theirs[1] == 'b' ? "'bob'"
                                         : "'cid'"));
    for (const int key : {1, 3}) {
        Find(key);
        set.Field("Points", 77);
        set.Update();
    }
    Find(2);
    set.Delete();
    // A name that cannot be shown is still that of the row.
    Find(4);
    EXPECT_TRUE(set.IsLossy(set.Bookmark(), 1));
    set.Field("Points", 4);
    Find(5);
    set.Delete();
    EXPECT_EQ(ErrorNumber([&] { support::Run(set.UpdateBatch()); }), kRowChanged);
    ASSERT_EQ(set.Refusals().size(), 3u);
    EXPECT_EQ(set.Refusals()[2].row, 1u);
    EXPECT_EQ(Stored("AID, Points"), (Lines{"1|10", "2|20", "3|NULL", "4|4"}));
}

TEST_F(RecordsetTest, ChangesAreTakenBackOneByOne) {
    Rename(1, "changed");
    set.Field("Points", 11);
    Find(2);
    set.Delete();
    Add(9, "new");
    set.Update();
    Find(1);
    set.Field("Name", "again");
    set.Update();
    using State = Recordset::State;
    EXPECT_EQ(set.PendingRows(), (std::vector<std::size_t>{0, 1, 3}));
    EXPECT_EQ(set.StateOf(0), State::Changed);
    EXPECT_EQ(set.StateOf(1), State::Deleted);
    EXPECT_EQ(set.StateOf(3), State::Added);
    EXPECT_EQ(set.At(0, 1), Value("again"));
    EXPECT_EQ(set.ServerValue(0, 1), Value("ann"));
    EXPECT_EQ(set.ServerValue(3, 1), std::nullopt);
    EXPECT_TRUE(set.TakeBack(0, 1));
    EXPECT_EQ(set.At(0, 1), Value("ann"));
    EXPECT_TRUE(set.TakeBack(1) && set.TakeBack(3));
    EXPECT_EQ(set.RecordCount(), 3u);
    EXPECT_EQ(set.PendingChanges(), 1u);
    // A value that the server turned out to have by now is what a change is made against.
    root.Execute("UPDATE glogin.account SET Points=12 WHERE AID=1");
    EXPECT_EQ(ErrorNumber([&] { support::Run(set.UpdateBatch()); }), kRowChanged);
    set.ServerHas(0, {{}, {}, {}, Value(12)});
    EXPECT_EQ(set.At(0, 3), Value(11));
    support::Run(set.UpdateBatch());
    EXPECT_EQ(Stored("AID, Name, Points"), (Lines{"1|ann|11", "2|bob|20", "3|cid|NULL"}));
}

TEST_F(RecordsetTest, RowsWithoutAKeyAreAddressedByAllTheyHeld) {
    root.Execute("CREATE TABLE glogin.free (a int, r float, d datetime, t varchar(9), b blob)");
    root.Execute("INSERT INTO glogin.free VALUES (1,0.1,'2004-01-02 03:04:05','x',''),(1,0.1,'2004-01-02 "
                 "03:04:05','x',''),(1,NULL,NULL,NULL,NULL)");
    Recordset free;
    support::Run(free.Open(own, "SELECT * FROM glogin.free"));
    free.Field("a", 2);
    free.MoveLast();
    free.Field("r", 0.5);
    free.MoveFirst();
    free.MoveNext();
    free.Delete();
    support::Run(free.UpdateBatch());
    EXPECT_EQ(Stored("a, r, t", "free"), (Lines{"1|0.5|NULL", "2|0.10000000149011612|x"}));

    support::Run(free.Open(own, "SELECT a, COUNT(*) FROM glogin.free GROUP BY a"));
    free.Field("a", 3);
    EXPECT_EQ(ErrorNumber([&] { support::Run(free.UpdateBatch()); }), kReadOnly);
}

TEST_F(RecordsetTest, RowsThatTheServerRefusesStayAndTheOthersArrive) {
    for (int key = 1; key <= 2500; ++key) {
        Add(key + 2, key == 1234 ? "a name that is longer than 24" : "row");
        set.Field("Note", Bytes{std::string(static_cast<std::size_t>(key), 'x')});
        set.Update();
    }
    // Key 3 is taken.
    EXPECT_EQ(ErrorNumber([&] { support::Run(set.UpdateBatch()); }), 1062);
    EXPECT_EQ(set.PendingChanges(), 2u);
    EXPECT_EQ(Stored("COUNT(*), SUM(AID), SUM(LENGTH(Note))"), (Lines{"2501|3130017|3125016"}));
}

TEST_F(RecordsetTest, AServerKilledInTheMiddleOfABatchLosesNothing) {
    // The trigger holds the batch up at row 50 until the server is dead.
    root.Execute("CREATE TRIGGER glogin.hold BEFORE INSERT ON glogin.account FOR EACH ROW "
                 "IF NEW.AID = 50 THEN SET NEW.Points = SLEEP(60); END IF");
    Find(2);
    set.Delete();
    for (int key = 10; key <= 100; ++key) {
        Add(key, "row");
        set.Update();
    }
    Rename(1, "last");
    set.Update();
    UpdateUntilTheServerIsKilled();
    EXPECT_EQ(set.PendingChanges(), 92u);
    root.Execute("DROP TRIGGER glogin.hold");
    support::Run(set.UpdateBatch());
    EXPECT_EQ(Stored("COUNT(*), SUM(AID), MIN(Name), MAX(AID = 50), MAX(Name = 'last')"),
              (Lines{"93|5009|cid|1|1"}));
}

TEST_F(RecordsetTest, ChangesThatShareACallEndEachForItself) {
    for (int key = 10; key < 70; ++key)
        root.Execute("INSERT INTO glogin.account (AID, Name) VALUES (" + std::to_string(key) + ",'row')");
    support::Run(set.Open(own, kAll));
    for (int key = 10; key < 70; ++key) {
        Find(key);
        set.Field("Name", "new");
        set.Update();
    }
    root.Execute("UPDATE glogin.account SET Name='theirs' WHERE AID=32");
    root.Execute("CREATE TRIGGER glogin.hold BEFORE UPDATE ON glogin.account FOR EACH ROW "
                 "IF NEW.AID = 45 THEN SET NEW.Points = SLEEP(60); END IF");
    UpdateUntilTheServerIsKilled();
    // Those from 45 on, and the one that is refused.
    EXPECT_EQ(set.PendingChanges(), 26u);
    root.Execute("DROP TRIGGER glogin.hold");
    EXPECT_EQ(ErrorNumber([&] { support::Run(set.UpdateBatch()); }), kRowChanged);
    EXPECT_EQ(set.PendingChanges(), 1u);
    EXPECT_EQ(Stored("SUM(Name = 'new'), SUM(Name = 'theirs'), SUM(Name = 'row')"), (Lines{"59|1|0"}));
}

} // namespace
