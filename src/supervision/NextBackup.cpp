#include "supervision/NextBackup.h"

#include "common/RuntimeError.h"
#include "settings/kToolsSettings.h"

#include <optional>

namespace supervision {

namespace {

/// Nothing when the file cannot be read.
std::optional<std::string> OptionIn(const clsINI& kerno) {
    try {
        return kerno.INIProperty(settings::key::kBackupOption);
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

/// Why the option in Kerno.ini makes no backup; "" when it makes one.
std::string Obstacle(const std::optional<std::string>& option) {
    if (!option)
        return "Kerno.ini cannot be read: no backup will be made";
    if (option->empty())
        return "Kerno.ini has no BackupOption: no backup will be made";
    if (BackupCoverage(*option).empty())
        return "Kerno.ini has BackupOption=" + *option + ", which is not 0, 1 or 2: no backup will be made";
    return {};
}

std::string TimeText(const SYSTEMTIME& time) {
    char text[80] = "";
    GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &time, nullptr, text, sizeof text);
    return text;
}

} // namespace

std::string BackupCoverage(const std::string& option) {
    if (option == "0")
        return "files";
    if (option == "1")
        return "remote copy";
    return option == "2" ? "files and remote copy" : "";
}

std::string BackupOptionText(const clsINI& kerno) {
    const auto option = OptionIn(kerno);
    const std::string obstacle = Obstacle(option);
    return obstacle.empty() ? "Kerno.ini has BackupOption=" + *option + ": " + BackupCoverage(*option)
                            : obstacle;
}

std::string NextBackupText(const clsINI& kerno, bool enabled, long second, const BackupSettings& settings,
                           const SYSTEMTIME& now) {
    const auto option = OptionIn(kerno);
    if (const std::string obstacle = Obstacle(option); !obstacle.empty())
        return obstacle;
    if (!enabled)
        return "Next: none before \"Enable Backup\" is pressed";
    if (settings.durationMinutes <= 0)
        return "Next: none, as a backup is to last 0 minutes";
    const double left = settings.periodMinutes * 60 - static_cast<double>(second);
    return "Next: " + BackupCoverage(*option) + (left > 0 ? " at " + TimeText(After(now, left)) : " now");
}

std::string NightText(const Night& night) {
    std::string text = "Tonight: ";
    if (!night.watched)
        text += "nobody watches over the servers";
    else
        text += std::string("stopped servers ") + (night.restarts ? "are restarted" : "stay down") +
                ", error dialogs " + (night.closes ? "are closed" : "stay open");
    text += ". " + night.next + ".";
    return night.last.empty() ? text : text + " Last backup: " + night.last;
}

} // namespace supervision
