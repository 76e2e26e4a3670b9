#include "accounts/GMTable.h"
#include "accounts/GMHistory.h"
#include "support/Test.h"

using accounts::GMTable;
using accounts::Privileges;

namespace {

constexpr Privileges kAll{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
constexpr Privileges kNone{};
constexpr Privileges kAsTheyAre{2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2};
const std::string kHeader =
    "ID,BROADCAST,ITEMSUMMON,MONSTERSUMMON,CHANGESTATSKILL,CHANGEOPTION,SAVERETURN,CHANGELEVEL,WARP,WHOIS,"
    "GOTOSUMMONBANISH,KILLDIEALIVE,CHANGEJOB,CHANGECOLORSTYLE,AUTORAWUNIT,REFINE\r\n";
const std::string kAllOnes = ",1,1,1,1,1,1,1,1,1,1,1,1,1,1,1";

class GMTableTest : public testing::Test {
protected:
    void Load(const std::string& rows) {
        support::WriteFile(path, "whatever\r\n" + rows);
        table.Load(path);
    }
    /// The file after Save, without its header.
    std::string Saved() {
        table.Save(path);
        const std::string text = common::ReadFileText(path);
        EXPECT_EQ(text.substr(0, kHeader.size()), kHeader);
        return text.substr(kHeader.size());
    }
    long ErrorOfLoad() {
        return support::ErrorNumber([&] { table.Load(path); });
    }
    long ErrorOfSave() {
        return support::ErrorNumber([&] { table.Save(path); });
    }

    support::TempFolder folder;
    std::string path = folder / "id_table.txt";
    std::string backup = folder / "id_table.bak";
    GMTable table;
};

} // namespace

TEST_F(GMTableTest, RowsAreAddedChangedAndRemoved) {
    Load("100001" + kAllOnes + "\r\n100002" + kAllOnes + "\r\n");
    EXPECT_EQ(table.Add(100002, kNone), 0);
    EXPECT_EQ(table.Retrieve(100002), kAll);
    EXPECT_EQ(table.Retrieve(7)[0], accounts::kLeaveAsItIs);

    Privileges withoutWarp = kAsTheyAre;
    withoutWarp[7] = 0;
    EXPECT_EQ(table.Modify(100002, kAsTheyAre), 1);
    EXPECT_EQ(table.Modify(100002, withoutWarp), 1);
    EXPECT_EQ(table.Modify(7, kNone), 1);
    EXPECT_EQ(table.Remove(100001), 1);
    EXPECT_EQ(table.Remove(100001), 0);
    EXPECT_EQ(table.Add(100001, kAll), 1);
    EXPECT_EQ(Saved(), "100002,1,1,1,1,1,1,1,0,1,1,1,1,1,1,1\r\n"
                       "7,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0\r\n"
                       "100001" +
                           kAllOnes + "\r\n");
}

TEST_F(GMTableTest, WhatIsNoProperRowIsCarriedAlong) {
    const std::string odd =
        "// trusted people\r\n\r\n5,1,1\r\n6,yes,1,99999,0\r\n4294967296,1\r\n8" + kAllOnes + ",a friend\r\n";
    Load(odd);
    EXPECT_EQ(table.Retrieve(6), (Privileges{0, 1}));
    EXPECT_FALSE(table.Contains(0));
    EXPECT_EQ(Saved(), odd);

    Privileges refine = kAsTheyAre;
    refine[14] = 0;
    table.Modify(8, refine);
    refine[14] = 1;
    table.Modify(5, refine);
    EXPECT_EQ(Saved(), "// trusted people\r\n\r\n5,1,1,0,0,0,0,0,0,0,0,0,0,0,0,1\r\n6,yes,1,99999,0\r\n"
                       "4294967296,1\r\n8,1,1,1,1,1,1,1,1,1,1,1,1,1,1,0,a friend\r\n");
}

TEST_F(GMTableTest, AFileThatWasNotLoadedIsNotReplaced) {
    std::string tooMany = kHeader;
    for (int id = 1; id <= 40000; ++id)
        tooMany += std::to_string(id) + kAllOnes + "\r\n";
    support::WriteFile(path, tooMany);
    table.Add(0, kAll);
    EXPECT_EQ(ErrorOfLoad(), common::kOverflow);
    EXPECT_FALSE(table.Contains(1));
    EXPECT_EQ(ErrorOfSave(), common::kPathFileAccess);
    EXPECT_EQ(common::ReadFileText(path), tooMany);
    // Nor one that was put there after the load had found none; without one there is nothing to lose.
    DeleteFileA(path.c_str());
    EXPECT_EQ(ErrorOfLoad(), common::kFileNotFound);
    support::WriteFile(path, kHeader);
    EXPECT_EQ(ErrorOfSave(), common::kPathFileAccess);
    DeleteFileA(path.c_str());
    EXPECT_EQ(Saved(), "0" + kAllOnes + "\r\n");
}

TEST_F(GMTableTest, ASaveKeepsOneGenerationAndARefusedOneBoth) {
    Load("1" + kAllOnes + "\r\n");
    const std::string original = common::ReadFileText(path);
    table.Remove(1);
    EXPECT_EQ(Saved(), "");
    EXPECT_EQ(common::ReadFileText(backup), original);
    table.Add(2, kAll);
    {
        const common::FileHandle lock(
            CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_EQ(ErrorOfSave(), common::kPermissionDenied);
    }
    EXPECT_EQ(common::ReadFileText(path), kHeader);
    EXPECT_EQ(common::ReadFileText(backup), original);
    Saved();
    EXPECT_EQ(common::ReadFileText(backup), kHeader);
}

TEST_F(GMTableTest, BothHandsChangesSurvive) {
    const std::string ones = "100001" + kAllOnes + "\r\n";
    Load(ones + "2" + kAllOnes + "\r\n3" + kAllOnes + "\r\n4" + kAllOnes + "\r\n5" + kAllOnes + "\r\n7" +
         kAllOnes + "\r\n");
    Privileges withoutWarp = kAsTheyAre;
    withoutWarp[7] = 0;
    table.Modify(2, withoutWarp);
    table.Remove(3);
    table.Remove(7);
    table.Add(6, kNone);
    table.Modify(5, withoutWarp);
    // Looked at only, which brings a row to the end.
    table.Remove(100001);
    table.Add(100001, kAll);
    EXPECT_EQ(table.ChangedIds(), (std::set<std::int32_t>{2, 3, 5, 6, 7}));
    // Another hand takes 100001's, 5's and 7's away, gives 9 some, and changes 2 and 3.
    const std::string theirs = "whatever\r\n9" + kAllOnes + "\r\n2,0,1,1,1,1,1,1,1,1,1,1,1,1,1,1\r\n3" +
                               ",1,1,1,1,1,1,1,1,1,1,1,1,1,1,0\r\n4" + kAllOnes + "\r\n";
    support::WriteFile(path, theirs);
    const GMTable::Met met = table.Save(path, [](std::int32_t id, bool) {
        EXPECT_NE(id, 7) << "there is nothing left to decide";
        return id == 6 ? GMTable::Verdict::Hold : GMTable::Verdict::Write;
    });
    EXPECT_TRUE(met.changed);
    EXPECT_FALSE(met.withoutHeader);
    EXPECT_EQ(met.both, (std::vector<std::int32_t>{2, 3, 5}));
    EXPECT_EQ(common::ReadFileText(path), kHeader + "9" + kAllOnes +
                                              "\r\n2,0,1,1,1,1,1,1,0,1,1,1,1,1,1,1\r\n4" + kAllOnes +
                                              "\r\n5,1,1,1,1,1,1,1,0,1,1,1,1,1,1,1\r\n");
    EXPECT_EQ(table.ChangedIds(), std::set<std::int32_t>{6});
    EXPECT_TRUE(table.Contains(6));
    table.TakeBack(6);
    EXPECT_FALSE(table.Contains(6));
    EXPECT_FALSE(table.Save(path).changed);
    EXPECT_EQ(common::ReadFileText(accounts::Generations(path).back()), theirs);
}
