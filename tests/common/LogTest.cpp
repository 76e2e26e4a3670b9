#include "common/clsLog.h"
#include "support/Test.h"

namespace {

TEST(Log, StampPadsTheDateAndNotTheTime) {
    EXPECT_EQ(common::LogStamp({2007, 3, 0, 5, 14, 3, 9, 0}), "[05/03/07 14:3:9]");
    EXPECT_EQ(common::LogStamp({2110, 12, 0, 31, 0, 0, 0, 999}), "[31/12/10 0:0:0]");
}

TEST(Log, AppendsEntriesAndNeverComplains) {
    const support::TempFolder folder;
    clsLog log;
    log.LogPath(folder.Path() + "\\");
    EXPECT_FALSE(log.WriteLog("lost", true));
    log.LogFilename("  ");
    EXPECT_FALSE(log.WriteLog("lost", true));
    EXPECT_FALSE(common::FileExists(folder / "*"));

    log.LogFilename("a.txt");
    EXPECT_TRUE(log.WriteLog("X", true));
    {
        // A reader that tails the log does not stop it.
        const common::FileHandle reader(CreateFileA((folder / "a.txt").c_str(), GENERIC_READ,
                                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                    OPEN_EXISTING, 0, nullptr));
        EXPECT_TRUE(log.WriteLog("two\r\nlines", false));
    }
    const std::string text = common::ReadFileText(folder / "a.txt");
    const auto stamp = text.substr(3, text.find("]\r\n") - 2);
    EXPECT_EQ(text, "X\r\n" + stamp + "\r\ntwo\r\nlines\r\n");
    EXPECT_EQ(stamp.front(), '[');

    log.LogPath(folder / "missing\\");
    EXPECT_FALSE(log.WriteLog("X", true));
}

TEST(Log, GoesIntoNoDevice) {
    const support::TempFolder folder;
    clsLog log;
    log.LogPath(folder.Path() + "\\");
    for (const char* name : {"NUL", "con", "Aux.log", "COM1", "lpt9 .txt", "com\xB2.log", "sub\\nul",
                             "prn.a.b/x", "C:errors.log", "a.txt:hidden", "CONOUT$"}) {
        log.LogFilename(name);
        EXPECT_FALSE(log.WriteLog("X", true)) << name;
    }
    EXPECT_FALSE(common::FileExists(folder / "*"));
    // Names like these, and what the operator means by "..", stay.
    for (const char* name : {"console.log", "com10", "nul2.txt", "..\\kTools-safe.log"}) {
        log.LogFilename(name);
        EXPECT_TRUE(log.WriteLog("X", true)) << name;
        EXPECT_TRUE(DeleteFileA((folder / name).c_str())) << name;
    }
}

} // namespace
