#include "supervision/BackupArchive.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "common/Text.h"
#include "supervision/BackupWork.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace supervision {

namespace {

constexpr std::int64_t kHour = 60;

std::int64_t Minute(std::chrono::year_month_day date, std::int64_t hour, std::int64_t minute) {
    return std::int64_t{std::chrono::sys_days(date).time_since_epoch().count()} * 24 * kHour + hour * kHour +
           minute;
}

/// The number that two or four digits make.
std::optional<int> Digits(std::string_view text, std::size_t count) {
    if (text.size() != count || text.find_first_not_of("0123456789") != std::string_view::npos)
        return std::nullopt;
    return static_cast<int>(common::CLng(text));
}

std::optional<std::chrono::year_month_day> Date(const std::string& text) {
    const auto pieces = common::Split(text, '-');
    if (pieces.size() != 3)
        return std::nullopt;
    const auto day = Digits(pieces[0], 2);
    const auto month = Digits(pieces[1], 2);
    const auto year = Digits(pieces[2], 4);
    if (!day || !month || !year)
        return std::nullopt;
    const std::chrono::year_month_day date(std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day)));
    return date.ok() ? std::optional(date) : std::nullopt;
}

std::string LocaleText(LCTYPE type) {
    char text[40] = "";
    GetLocaleInfoA(LOCALE_USER_DEFAULT, type, text, sizeof text);
    return text;
}

/// Pruning takes names apart at their blanks, and a file name cannot hold everything.
bool FitsIntoName(const std::string& sign) {
    return !sign.empty() && sign.find_first_of(" .\\/:*?\"<>|") == std::string::npos;
}

} // namespace

std::string BackupFolder() {
    return common::ProgramFolder() + "\\kTools\\Backup";
}

DaySigns LocaleDaySigns() {
    DaySigns signs{LocaleText(LOCALE_S1159), LocaleText(LOCALE_S2359)};
    const bool usable = FitsIntoName(signs.am) && FitsIntoName(signs.pm) && signs.am != signs.pm;
    return usable ? signs : DaySigns{};
}

std::string BackupName(const SYSTEMTIME& time, const DaySigns& signs) {
    char text[40];
    std::snprintf(text, sizeof text, "%02u-%02u-%04u %02u %02u ", time.wDay, time.wMonth, time.wYear,
                  (time.wHour + 11) % 12 + 1, time.wMinute);
    return text + (time.wHour < 12 ? signs.am : signs.pm);
}

std::optional<std::int64_t> BackupMinute(const std::string& name, const DaySigns& signs) {
    const auto pieces = common::Split(name, ' ');
    if (pieces.size() != 4)
        return std::nullopt;
    const auto date = Date(pieces[0]);
    const auto hour = Digits(pieces[1], 2);
    const auto minute = Digits(pieces[2], 2);
    // The locale may have been another one when the folder was made.
    const auto isSign = [&](const std::string& locale, const char* usual) {
        return common::EqualsIgnoreCase(pieces[3], locale) || common::EqualsIgnoreCase(pieces[3], usual);
    };
    const bool pm = isSign(signs.pm, "PM");
    if (!date || !hour || !minute || !(pm || isSign(signs.am, "AM")))
        return std::nullopt;
    return Minute(*date, *hour + (pm ? 12 : 0), *minute);
}

std::vector<std::string> FoldersToPrune(const std::vector<std::string>& folders, const SYSTEMTIME& now,
                                        std::size_t kept, const DaySigns& signs) {
    const std::int64_t present =
        Minute({std::chrono::year(now.wYear), std::chrono::month(now.wMonth), std::chrono::day(now.wDay)},
               now.wHour, now.wMinute);
    std::vector<std::string> names = folders;
    std::vector<std::int64_t> ages;
    for (const std::string& name : names) {
        if (const auto minute = BackupMinute(name, signs))
            ages.push_back((present - *minute) * 60 + now.wSecond);
    }
    for (std::size_t end = ages.size(); end > 0; --end) {
        const auto oldest = static_cast<std::size_t>(
            std::max_element(ages.begin(), ages.begin() + static_cast<std::ptrdiff_t>(end)) - ages.begin());
        std::swap(ages[oldest], ages[end - 1]);
        std::swap(names[oldest], names[end - 1]);
    }
    names.resize(ages.size());
    names.erase(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(std::min(kept, names.size())));
    return names;
}

std::int16_t PruneBackups(const std::string& kept) {
    const std::int32_t most = common::CLng(kept);
    std::vector<std::string> folders;
    for (const common::FolderEntry& entry :
         common::EntriesOf(BackupFolder()).value_or(std::vector<common::FolderEntry>{}))
        if (entry.IsFolder())
            folders.push_back(entry.name);
    if (folders.empty())
        return 0;
    if (most < 0)
        throw RuntimeError(common::kSubscriptOutOfRange);
    SYSTEMTIME now{};
    GetLocalTime(&now);
    const auto surplus = FoldersToPrune(folders, now, static_cast<std::size_t>(most));
    if (surplus.empty())
        return 0;
    BackupWork work;
    for (const std::string& name : surplus)
        work.Remove(name);
    return 1;
}

} // namespace supervision
