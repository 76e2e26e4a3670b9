#include "supervision/NextBackup.h"
#include "support/Test.h"

namespace {

using supervision::BackupSettings;

TEST(NextBackup, TellsWhatTheClockWillMakeAndWhenOrWhyNothing) {
    const support::TempFolder folder;
    const clsINI kerno(folder / "Kerno.ini");
    const SYSTEMTIME now{2004, 6, 3, 30, 22, 58, 30, 0};
    const BackupSettings hourly{.periodMinutes = 60, .durationMinutes = 2, .message = {}};
    const BackupSettings none{.periodMinutes = 60, .durationMinutes = 0, .message = {}};
    const std::string noBackup = ": no backup will be made";
    const struct {
        std::string file;
        bool enabled;
        long second;
        const BackupSettings& settings;
        std::string text;
    } cases[] = {{"BackupOption=2\r\n", true, 0, hourly, "Next: files and remote copy at 11:58 PM"},
                 {"BackupOption=1\r\n", true, 3599, hourly, "Next: remote copy at 10:58 PM"},
                 {"BackupOption=0\r\n", true, 3600, hourly, "Next: files now"},
                 {"BackupOption=0\r\n", false, 9, hourly, "Next: none before \"Enable Backup\" is pressed"},
                 {"BackupOption=0\r\n", true, 9, none, "Next: none, as a backup is to last 0 minutes"},
                 {"BackupOption = 2\r\n", false, 0, hourly, "Kerno.ini has no BackupOption" + noBackup},
                 {"BackupOption= 2\r\n", true, 0, hourly,
                  "Kerno.ini has BackupOption= 2, which is not 0, 1 or 2" + noBackup},
                 {"", true, 0, hourly, "Kerno.ini cannot be read" + noBackup}};
    for (const auto& [file, enabled, second, settings, text] : cases) {
        support::WriteFile(kerno.INIPath(), file);
        EXPECT_EQ(supervision::NextBackupText(kerno, enabled, second, settings, now), text);
    }
    support::WriteFile(kerno.INIPath(), "BackupOption=2\r\n");
    EXPECT_EQ(supervision::BackupOptionText(kerno), "Kerno.ini has BackupOption=2: files and remote copy");
}

TEST(NextBackup, TheNightInOneLine) {
    const std::string next = "Next: files at 11:58 PM";
    const std::pair<supervision::Night, std::string> cases[] = {
        {{true, true, false, next, ""},
         "Tonight: stopped servers are restarted, error dialogs stay open. " + next + "."},
        {{true, false, true, next, "10 of 10 tables proven"},
         "Tonight: stopped servers stay down, error dialogs are closed. " + next +
             ". Last backup: 10 of 10 tables proven"},
        {{false, true, true, next, ""}, "Tonight: nobody watches over the servers. " + next + "."}};
    for (const auto& [night, text] : cases)
        EXPECT_EQ(supervision::NightText(night), text);
}

} // namespace
