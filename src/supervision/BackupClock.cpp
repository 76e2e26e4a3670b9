#include "supervision/BackupClock.h"

#include "common/FileTime.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace supervision {

namespace {

/// Anything may have been typed; beyond 30 million years nothing changes any more.
double InSeconds(double minutes) {
    constexpr double kMost = 1e15;
    return std::clamp(minutes * 60, -kMost, kMost);
}

double SecondsLeft(long second, const BackupSettings& settings) {
    return InSeconds(settings.periodMinutes) - static_cast<double>(second);
}

std::string DateAndTimeText(const SYSTEMTIME& time) {
    char date[100] = "";
    char clock[100] = "";
    GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, date, sizeof date);
    GetTimeFormatA(LOCALE_USER_DEFAULT, 0, &time, nullptr, clock, sizeof clock);
    return std::string(date) + " " + clock;
}

std::string MinutesText(double minutes) {
    return common::NumberText(minutes) + " minutes";
}

} // namespace

SYSTEMTIME After(const SYSTEMTIME& now, double seconds) {
    constexpr double kTicks = 1e7;
    // The last time that the system has a text for, at the end of the year 30827.
    constexpr double kLast = 9.1e18;
    FILETIME file{};
    SystemTimeToFileTime(&now, &file);
    const std::uint64_t ticks = common::FileTimeUnits(file);
    const double moved =
        std::clamp(seconds * kTicks, -static_cast<double>(ticks), kLast - static_cast<double>(ticks));
    const std::uint64_t then = ticks + static_cast<std::uint64_t>(static_cast<std::int64_t>(moved));
    file = common::FileTimeOf(then);
    SYSTEMTIME time{};
    FileTimeToSystemTime(&file, &time);
    return time;
}

double MinutesLeft(long second, const BackupSettings& settings) {
    return std::floor(SecondsLeft(second, settings) / 60);
}

BackupAction ActionAt(long second, const BackupSettings& settings) {
    const double left = SecondsLeft(second, settings);
    if (-left >= InSeconds(settings.durationMinutes))
        return BackupAction::Restore;
    if (left <= 0)
        return BackupAction::Backup;
    if (!settings.announce)
        return BackupAction::Nothing;
    const double interval = InSeconds(settings.messageIntervalMinutes);
    if (std::nearbyint(interval) == 0)
        throw RuntimeError(common::kDivisionByZero);
    if (interval * settings.messageRepeats >= left &&
        std::fmod(std::nearbyint(left), std::nearbyint(interval)) == 0)
        return BackupAction::Announce;
    return BackupAction::Nothing;
}

std::string Announcement(long second, const BackupSettings& settings, const SYSTEMTIME& now) {
    const double untilRestore = SecondsLeft(second, settings) + InSeconds(settings.durationMinutes);
    const std::pair<const char*, std::string> placeholders[] = {
        {"$TimetoBackup", MinutesText(MinutesLeft(second, settings))},
        {"$BackupDuration", MinutesText(settings.durationMinutes)},
        {"$RestoreTime", DateAndTimeText(After(now, untilRestore))},
    };
    std::string text = settings.message;
    for (const auto& [placeholder, value] : placeholders)
        text = common::ReplaceAll(text, placeholder, value);
    return text;
}

} // namespace supervision
