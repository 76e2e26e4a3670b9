#include "common/Files.h"

#include "support/Test.h"
#include "support/Wait.h"

namespace {

using support::TempFolder;

std::vector<std::string> Names(const TempFolder& folder) {
    std::vector<std::string> names;
    const auto entries = common::EntriesOf(folder.Path());
    for (const common::FolderEntry& entry : entries.value())
        names.push_back(entry.name);
    std::ranges::sort(names);
    return names;
}

std::string Description(const std::function<void()>& action) {
    try {
        action();
    } catch (const RuntimeError& error) {
        return error.Description();
    }
    return {};
}

TEST(Files, AReplacementLeavesWhatIsNotItsOwn) {
    const TempFolder folder;
    const std::string path = folder / "Kerno.ini";
    support::WriteFile(path, "old");
    support::WriteFile(path + ".new", "the operator's");
    {
        // Two that save together, and one that fails between them.
        common::FileReplacement first(path);
        common::FileReplacement second(path);
        common::FileReplacement third(path);
        first.Write("first");
        second.Write("se");
        second.Write("cond");
        third.Write("half of th");
        first.Commit();
        EXPECT_EQ(common::ReadFileText(path), "first");
        second.Commit();
    }
    EXPECT_EQ(common::ReadFileText(path), "second");
    EXPECT_EQ(common::ReadFileText(path + ".new"), "the operator's");
    EXPECT_EQ(Names(folder), (std::vector<std::string>{"Kerno.ini", "Kerno.ini.new"}));
    // What a copy of the tool that is no more has left behind; no process has an id that is odd.
    support::WriteFile(path + ".kTools-4294967295-1.new", "killed");
    common::ReplaceFileText(path, "third");
    EXPECT_FALSE(common::FileExists(path + ".kTools-4294967295-1.new"));
}

TEST(Files, ErrorsSayTheSystemsWordsAndTheRealFile) {
    const TempFolder folder;
    const std::string path = folder / "a.ini";
    support::WriteFile(path, "old");
    const common::FileHandle lock = common::OpenFile(path, GENERIC_READ, OPEN_EXISTING, 0);
    const std::string missing = folder / "no\\a.ini";
    const std::tuple<std::string, std::string, std::function<void()>> cases[] = {
        {path, "Permission denied (32: ", [&] { common::ReadFileText(path); }},
        {path, "Permission denied (", [&] { common::ReplaceFileText(path, "x"); }},
        {missing, "Path not found (3: ", [&] { common::ReplaceFileText(missing, "x"); }}};
    for (const auto& [file, start, action] : cases) {
        const std::string said = Description(action);
        EXPECT_TRUE(said.starts_with(start) && said.ends_with("): " + file)) << said;
        EXPECT_GT(said.size(), start.size() + file.size() + 10) << "without the system's words: " << said;
    }
    EXPECT_FALSE(common::EntriesOf(folder / "no"));
}

TEST(Files, AReadWaitsForOneWhoHoldsTheFileForAMoment) {
    const TempFolder folder;
    const std::string path = folder / "a.ini";
    support::WriteFile(path, "text");
    EXPECT_TRUE(support::WorksInAMomentsLock(
        path, [&] { return Description([&] { EXPECT_EQ(common::ReadFileText(path), "text"); }).empty(); }));
}

} // namespace
