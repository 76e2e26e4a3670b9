#include "settings/clsINI.h"

#include "settings/IniText.h"
#include "settings/kToolsSettings.h"
#include "support/Test.h"

namespace {

using namespace std::string_literals;

TEST(Settings, FindsTheFirstLineOfAKey) {
    const std::string text = "; note\r\n[Path]\r\nKernoPath=C:\\k\\\r\nA = 1\r\nE=\r\nF=a=b\r\n=none\r\n"
                             "[Other]\r\nKernoPath=second\r\nunix=1\nmac=2\rN\0L=\0\r\nlast=9"s;
    const std::pair<std::string, std::string> cases[] = {{"KernoPath", "C:\\k\\"},
                                                         {"A ", " 1"},
                                                         {"E", ""},
                                                         {"F", "a=b"},
                                                         {"", "none"},
                                                         {"unix", "1"},
                                                         {"mac", "2"},
                                                         {"N\0L"s, "\0"s},
                                                         {"last", "9"}};
    for (const auto& [key, value] : cases)
        EXPECT_EQ(settings::FindValue(text, key), value) << key;
    for (const char* missing : {"kernopath", "A", "F=a", "[Path]", "; note"})
        EXPECT_EQ(settings::FindValue(text, missing), std::nullopt) << missing;
}

TEST(Settings, WritingAKeyChangesItsLinesAndNoOther) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "k=new\r\n"},
        {"a=1\r\nk=2\r\nb=3\r\n", "a=1\r\nk=new\r\nb=3\r\n"},
        {"k=1\r\n[s]\r\nk=2\r\n", "k=new\r\n[s]\r\nk=new\r\n"},
        {"[k]\r\na=1\r\n[z]\r\n", "[k]\r\na=1\r\n[z]\r\nk=new\r\n"},
        {"a=1", "a=1\r\nk=new\r\n"},
        {"K=1\r\n k=2\r\nk =3\r\n", "K=1\r\n k=2\r\nk =3\r\nk=new\r\n"},
        {"\r\n\r\na\r\n\r\n", "\r\n\r\na\r\n\r\nk=new\r\n"},
        {"k=1\r\n\r\n", "k=new\r\n\r\n"},
        {"a=1\nk=2\nb=3\rc\0=\x80\xff\n"s, "a=1\nk=new\r\nb=3\rc\0=\x80\xff\n"s}};
    for (const auto& [before, after] : cases)
        EXPECT_EQ(settings::TextWithValue(before, "k", "new"), after) << before;
    EXPECT_EQ(settings::TextWithValue("", "k", "a\r\n"), "k=a\r\n\r\n");
    EXPECT_EQ(settings::TextWithValue("b=1", "k", "a\r\n"), "b=1\r\nk=a\r\n");
}

TEST(Settings, SeveralKeysAtOnceGiveWhatOneAfterTheOtherGives) {
    const std::vector<settings::Entry> entries{{"b", "1"}, {"k", "="}, {"", "x"}, {"b", "2"}, {"new", ""}};
    for (const std::string& before :
         {""s, "a=1"s, "b=0\nk=0\r\n[s]\r\nb=9\r\n"s, "=none\r\n B=b\r\n\r\n"s, "new=1\rk=2"s}) {
        std::string after = before;
        for (const auto& [key, value] : entries)
            after = settings::TextWithValue(after, key, value);
        EXPECT_EQ(settings::TextWithValues(before, entries), after) << before;
    }
}

TEST(Settings, SectionsAreAppendedAlways) {
    const support::TempFolder folder;
    clsINI ini(folder / "new.ini");
    EXPECT_FALSE(ini.AddSection("Path"));
    ini.INIProperty("A", "1");
    EXPECT_FALSE(ini.AddSection("Path"));
    EXPECT_EQ(common::ReadFileText(ini.INIPath()), "[Path]\r\n\r\nA=1\r\n\r\n[Path]\r\n\r\n");
}

TEST(Settings, DefaultFileHoldsEveryKeyInItsPlace) {
    const support::TempFolder folder;
    common::ProgramFolder(folder.Path());
    settings::CreateDefaultSettings(settings::kToolsIniPath());
    const std::string text = common::ReadFileText(folder / "kTools.ini");
    EXPECT_TRUE(text.starts_with("[Path]\r\n\r\nKernoPath=\r\nMySQLPath=\r\n\r\n[ServerStatus]\r\n\r\n"
                                 "LogLogin=1\r\nLogCharacter=1\r\nLogZone=1\r\n\r\n[Priority]\r\n\r\n"
                                 "LoginPriority=3\r\nCharacterPriority=3\r\n\r\n[ServerControl]\r\n\r\n"
                                 "ServerDetectionMethod=0\r\n"))
        << text;
    EXPECT_TRUE(text.ends_with("HandleDialogs=0\r\nDialogsOptions=0\r\n")) << text;
    const clsINI ini(settings::kToolsIniPath());
    const std::pair<std::string_view, const char*> cases[] = {
        {settings::key::kBackupDuration, "2"},       {settings::key::kBackupPeriod, "60"},
        {settings::key::kMaxArchivedBackups, "10"},  {settings::key::kBackupMessageInterval, "2"},
        {settings::key::kBackupMessageRepeats, "5"}, {settings::key::kBackupHostname, "localhost"},
        {settings::key::kBackupOption, "2"},         {settings::key::kErrorCheckingInterval, "5"}};
    for (const auto& [key, value] : cases)
        EXPECT_EQ(ini.INIProperty(key), value) << key;
    // 39 keys, 4 headers, a blank line below each header and above all but the first.
    EXPECT_EQ(common::Lines(text).size(), 39u + 4 + 4 + 3);
}

TEST(Settings, FilesThatCannotServeRaiseTheirErrorAndStayAsTheyAre) {
    const support::TempFolder folder;
    const std::string line = "k=1\r\n";
    const std::tuple<const char*, std::string, DWORD, DWORD, long, long> cases[] = {
        {"empty", "", FILE_ATTRIBUTE_NORMAL, FILE_SHARE_READ | FILE_SHARE_DELETE, 62, 62},
        {"locked", line, FILE_ATTRIBUTE_NORMAL, 0, 70, 70},
        {"read", line, FILE_ATTRIBUTE_NORMAL, FILE_SHARE_READ, 0, 70},
        {"readonly", line, FILE_ATTRIBUTE_READONLY, FILE_SHARE_READ | FILE_SHARE_DELETE, 0, 70},
        {"hidden", line, FILE_ATTRIBUTE_HIDDEN, FILE_SHARE_READ | FILE_SHARE_DELETE, 0, 70}};
    for (const auto& [name, text, attributes, share, getError, letError] : cases) {
        clsINI ini(folder / name);
        support::WriteFile(ini.INIPath(), text);
        SetFileAttributesA(ini.INIPath().c_str(), attributes);
        {
            const common::FileHandle holder(
                CreateFileA(ini.INIPath().c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
            EXPECT_EQ(support::ErrorNumber([&] { ini.INIProperty("k"); }), getError) << name;
            EXPECT_EQ(support::ErrorNumber([&] { ini.INIProperty("k", "2"); }), letError) << name;
            EXPECT_EQ(support::ErrorNumber([&] { ini.AddSection("s"); }), letError) << name;
        }
        EXPECT_EQ(common::ReadFileText(ini.INIPath()), text) << name;
    }
    clsINI nowhere(folder / "missing\\x.ini");
    EXPECT_EQ(nowhere.INIProperty("k"), "");
    EXPECT_EQ(support::ErrorNumber([&] { nowhere.INIProperty("k", "1"); }), 76);
    EXPECT_NE(support::ErrorNumber([] { clsINI().INIProperty("k", "1"); }), 0);
}

TEST(Settings, AHugeBinaryFileIsReadAndKept) {
    const support::TempFolder folder;
    std::string noise(50u << 20, '\0');
    for (unsigned seed = 1; char& byte : noise)
        byte = static_cast<char>((seed = seed * 1664525u + 1013904223u) >> 24);
    noise += "\n\r\n";
    clsINI ini(folder / "huge.ini");
    support::WriteFile(ini.INIPath(), noise);
    EXPECT_EQ(ini.INIProperty("key"), "");
    ini.INIProperty("key", "1");
    EXPECT_TRUE(common::ReadFileText(ini.INIPath()) == noise + "key=1\r\n");
}

} // namespace
