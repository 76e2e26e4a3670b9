#include "settings/kToolsSettings.h"

#include "common/Files.h"
#include "settings/IniText.h"

#include <span>
#include <utility>

namespace settings {

namespace {

struct Default {
    std::string_view key;
    std::string_view value;
};

constexpr Default kPath[] = {
    {key::kKernoPath, ""},
    {key::kMySQLPath, ""},
};
constexpr Default kServerStatus[] = {
    {key::kLogLogin, "1"},
    {key::kLogCharacter, "1"},
    {key::kLogZone, "1"},
};
constexpr Default kPriority[] = {
    {key::kLoginPriority, "3"},
    {key::kCharacterPriority, "3"},
};
constexpr Default kServerControl[] = {
    {key::kServerDetectionMethod, "0"},
    {key::kIPDetectionMethod, "0"},
    {key::kDynamicHostname, ""},
    {key::kCheckIPChanges, "0"},
    {key::kModifyINIonIPChange, "0"},
    {key::kRestartOnIPChange, "0"},
    {key::kSendMessageOnIPChange, "0"},
    {key::kMessageOnIPChange, ""},
    {key::kBackupDuration, "2"},
    {key::kBackupPeriod, "60"},
    {key::kMaxArchivedBackups, "10"},
    {key::kBackupMessage, ""},
    {key::kBackupMessageInterval, "2"},
    {key::kBackupMessageRepeats, "5"},
    {key::kBackupHostname, "localhost"},
    {key::kBackupUsername, ""},
    {key::kBackupPassword, ""},
    {key::kBackupOption, "2"},
    {key::kShutdownOnBackup, "0"},
    {key::kSendMessageBeforeBackup, "0"},
    {key::kEnableErrorDetector, "0"},
    {key::kErrorCheckingInterval, "5"},
    {key::kSendErrorMessagetoPlayers, "0"},
    {key::kErrorMessage, ""},
    {key::kLogErrorPopups, "0"},
    {key::kLogFilename, ""},
    {key::kMaintainServer, "0"},
    {key::kMaintainLoginServer, "0"},
    {key::kMaintainCharacterServer, "0"},
    {key::kMaintainZoneServer, "0"},
    {key::kHandleDialogs, "0"},
    {key::kDialogsOptions, "0"},
};

constexpr struct {
    std::string_view name;
    std::span<const Default> keys;
} kSections[] = {{"Path", kPath},
                 {"ServerStatus", kServerStatus},
                 {"Priority", kPriority},
                 {"ServerControl", kServerControl}};

} // namespace

std::string kToolsIniPath() {
    return common::ProgramFolder() + "\\kTools.ini";
}

std::string KernoIniPath(const std::string& kernoPath) {
    return kernoPath + "Kerno.ini";
}

void CreateDefaultSettings(const std::string& path) {
    std::string text;
    for (const auto& section : kSections) {
        text = TextWithSection(text, section.name);
        for (const auto& entry : section.keys)
            text = TextWithValue(std::move(text), entry.key, entry.value);
    }
    common::ReplaceFileText(path, text);
}

} // namespace settings
