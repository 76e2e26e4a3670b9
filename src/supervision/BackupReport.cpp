#include "supervision/BackupReport.h"

#include "common/clsLog.h"
#include "common/Numbers.h"
#include "servers/Databases.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace supervision {

namespace {

std::uint64_t TablesOfTheSuite() {
    const auto databases = suite::Databases();
    return std::accumulate(
        databases.begin(), databases.end(), std::uint64_t{0},
        [](std::uint64_t sum, const suite::Database& each) { return sum + each.tables.size(); });
}

} // namespace

std::string FileBackupText(const FileBackup& backup) {
    const auto proven = static_cast<std::uint64_t>(std::ranges::count_if(
        backup.tables, [](const CopiedTable& table) { return table.verdict.verdict == Verdict::Proven; }));
    std::string text =
        common::CountText(proven) + " of " + common::CountText(backup.tables.size()) + " tables proven";
    std::vector<std::string> warnings = backup.warnings;
    for (const CopiedTable& table : backup.tables) {
        if (table.name == "glogin.account")
            text += ", " + common::CountText(table.verdict.rows) + " accounts";
        if (table.verdict.verdict != Verdict::Proven)
            warnings.push_back(table.name + " not proven, " + table.verdict.reason);
    }
    for (std::size_t i = 0; i < warnings.size(); ++i)
        text += (i == 0 ? ". WARNING: " : "; ") + warnings[i];
    return text;
}

std::string RemoteBackupText(const RemoteBackup& backup) {
    const std::uint64_t all = TablesOfTheSuite();
    const std::string text = "remote copy equal, " + common::CountText(backup.accounts) + " accounts";
    if (backup.tables == all)
        return text;
    return text + ". WARNING: " + common::CountText(backup.tables) + " of " + common::CountText(all) +
           " tables, as this computer has no more";
}

std::string AtTime(const SYSTEMTIME& time, const std::string& text) {
    char clock[100] = "";
    GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &time, nullptr, clock, sizeof clock);
    return std::string(clock) + ": " + text;
}

void LogBackup(const std::string& text) {
    clsLog log;
    log.LogPath(common::LogFolder());
    log.LogFilename("Backup.log");
    log.WriteLog(text, false);
}

} // namespace supervision
