#include "supervision/BackupArchive.h"
#include "supervision/BackupWork.h"
#include "supervision/TableProof.h"
#include "support/Surroundings.h"

namespace {

using namespace supervision;

/// A program folder without backups.
class BackupFiles : public testing::Test, protected support::Surroundings {
protected:
    const std::string name = "30-06-2004 01 00 AM";
    const std::string dated = BackupFolder() + "\\" + name;
    const std::string work = program / "kTools\\BackupWork";

    static void Gather(BackupWork& backup, const std::string& rows) {
        const std::string folder = backup.Gather();
        for (const char* file : {"\\glogin\\account.MYD", "\\glogin\\account.MYI"})
            support::WriteFile(folder + file, rows);
    }
    std::string Rows() const { return common::ReadFileText(dated + "\\glogin\\account.MYD"); }
};

TEST_F(BackupFiles, ADatedFolderAppearsWhenItIsWholeAndReplacesOneAsAWhole) {
    {
        BackupWork backup;
        EXPECT_EQ(support::ErrorNumber([] { BackupWork(); }), common::kPermissionDenied);
        Gather(backup, "first");
        EXPECT_FALSE(common::FolderExists(BackupFolder()));
        backup.Publish(name);
        EXPECT_EQ(Rows(), "first");
        Gather(backup, "unpublished");
    }
    EXPECT_FALSE(common::FolderExists(work));
    support::WriteFile(dated + "\\glogin\\notes.txt", "the operator's");
    {
        BackupWork backup;
        Gather(backup, "second");
        {
            const common::FileHandle reader = common::OpenFile(dated + "\\glogin\\account.MYI", GENERIC_READ,
                                                               OPEN_EXISTING, FILE_SHARE_READ);
            EXPECT_EQ(support::ErrorNumber([&] { backup.Publish(name); }), common::kPermissionDenied);
        }
        EXPECT_EQ(Rows(), "first");
        backup.Publish(name);
    }
    EXPECT_EQ(Rows(), "second");
    EXPECT_EQ(common::ReadFileText(dated + "\\glogin\\notes.txt"), "the operator's");
    EXPECT_FALSE(common::FolderExists(work));
}

TEST_F(BackupFiles, WhatAKillLeavesIsBroughtInOrder) {
    // Between the two steps of a replacement; and after them, with what the gathered one had not.
    support::WriteFile(work + "\\replaced " + name + "\\glogin\\account.MYD", "the only one");
    support::WriteFile(work + "\\new\\glogin\\account.MYD", "half");
    support::WriteFile(work + "\\removed 1\\glogin\\account.MYD", "half");
    EXPECT_TRUE(BackupWork::IsLeft());
    BackupWork();
    EXPECT_EQ(Rows(), "the only one");
    support::WriteFile(work + "\\replaced " + name + "\\glogin\\account.MYD", "older");
    support::WriteFile(work + "\\replaced " + name + "\\glogin\\notes.txt", "the operator's");
    BackupWork();
    EXPECT_EQ(Rows(), "the only one");
    EXPECT_EQ(common::ReadFileText(dated + "\\glogin\\notes.txt"), "the operator's");
    EXPECT_FALSE(BackupWork::IsLeft());
}

TEST_F(BackupFiles, APruneLeavesWhatLinksLeadToAndNoHalfFolder) {
    EXPECT_EQ(PruneBackups("-1"), 0);
    const std::string target = program / "elsewhere";
    support::WriteFile(target + "\\players.MYD", "rows");
    support::WriteFile(dated + "\\glogin\\a.MYD", "rows");
    support::WriteFile(dated + "\\glogin\\b.MYD", "rows");
    const std::string link = BackupFolder() + "\\30-06-2004 02 00 AM";
    support::LinkFolder(link, target);
    // Wine 8 removes no link to a folder.
    const std::string probe = program / "probe";
    support::LinkFolder(probe, target);
    const bool removable = RemoveDirectoryA(probe.c_str()) != 0;
    {
        const common::FileHandle reader =
            common::OpenFile(dated + "\\glogin\\a.MYD", GENERIC_READ, OPEN_EXISTING, FILE_SHARE_READ);
        EXPECT_EQ(support::ErrorNumber([] { PruneBackups("-1"); }), common::kSubscriptOutOfRange);
        EXPECT_EQ(PruneBackups("0"), 1);
    }
    EXPECT_EQ(common::FolderExists(link), !removable);
    EXPECT_EQ(common::ReadFileText(target + "\\players.MYD"), "rows");
    // It is whole or it is gone.
    EXPECT_EQ(common::FolderExists(dated), common::FileExists(dated + "\\glogin\\b.MYD"));
}

TEST(TableProof, VerdictsComeFromTheIndexFilesHeader) {
    // That of a table of one row, 60 bytes of data and an index of 2,048.
    std::string index(100, '\0');
    index.replace(0, 8, "\xFE\xFE\x07\x01\x00\x03\x01\xBD", 8);
    index[26] = 0x39;
    index[35] = 1;
    index[66] = 8;
    index[75] = 60;
    const auto with = [&](std::size_t at, char byte) {
        std::string changed = index;
        changed[at] = byte;
        return changed;
    };
    const std::string layout = "\xFE\x01\n";
    const std::tuple<const char*, TableEvidence, Verdict> cases[] = {
        {"as it is", {layout, index, 2048, 60, true}, Verdict::Proven},
        {"written to", {layout, index, 2048, 60, false}, Verdict::Changed},
        {"more rows than told", {layout, index, 2048, 80, true}, Verdict::Changed},
        {"a longer index", {layout, index, 3072, 60, true}, Verdict::Changed},
        {"cut data", {layout, index, 2048, 59, true}, Verdict::Unreadable},
        {"a cut index", {layout, index, 1024, 60, true}, Verdict::Unreadable},
        {"an index that is late", {layout, with(5, 0x43), 1024, 60, true}, Verdict::Changed},
        {"marked as crashed", {layout, with(26, 0x3B), 2048, 60, true}, Verdict::Unreadable},
        {"marked while repaired", {layout, with(26, 0x3D), 2048, 60, true}, Verdict::Unreadable},
        {"another file", {layout, with(1, 0), 2048, 60, true}, Verdict::Unreadable},
        {"a cut header", {layout, index.substr(0, 75), 75, 60, true}, Verdict::Unreadable},
        {"no layout", {"", index, 2048, 60, true}, Verdict::Unreadable}};
    for (const auto& [name, evidence, verdict] : cases) {
        const TableVerdict found = VerdictOn(evidence);
        EXPECT_EQ(found.verdict, verdict) << name;
        EXPECT_EQ(found.reason.empty(), verdict == Verdict::Proven) << name;
        EXPECT_EQ(found.rows, verdict == Verdict::Unreadable ? 0u : 1u) << name;
    }
}

} // namespace
