#include "supervision/BackupArchive.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace supervision {

namespace {

using FindHandle = common::Handle<HANDLE, FindClose>;

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

/// The locale's sign for the half of the day. Pruning takes names apart at their blanks and knows two signs,
/// so a locale that has none, or one with a blank, a dot or what a file name cannot hold, gets those.
std::string HalfOfDay(const SYSTEMTIME& time) {
    char text[40] = "";
    GetTimeFormatA(LOCALE_USER_DEFAULT, 0, &time, "tt", text, sizeof text);
    std::string sign = text;
    if (sign.empty() || sign.find_first_of(" .\\/:*?\"<>|") != std::string::npos)
        return time.wHour < 12 ? "AM" : "PM";
    return sign;
}

/// Calls `visit` for each entry of the folder but itself and the one above it.
void ForEachEntry(const std::string& folder, const auto& visit) {
    WIN32_FIND_DATAA found{};
    const HANDLE first = FindFirstFileA((folder + "\\*").c_str(), &found);
    if (first == INVALID_HANDLE_VALUE)
        return;
    const FindHandle search(first);
    do {
        const std::string name = found.cFileName;
        if (name != "." && name != "..")
            visit(name, found.dwFileAttributes);
    } while (FindNextFileA(search.get(), &found));
}

std::vector<std::string> FoldersIn(const std::string& folder) {
    std::vector<std::string> folders;
    ForEachEntry(folder, [&](const std::string& name, DWORD attributes) {
        if (attributes & FILE_ATTRIBUTE_DIRECTORY)
            folders.push_back(name);
    });
    return folders;
}

void DeleteFolder(const std::string& folder) {
    ForEachEntry(folder, [&](const std::string& name, DWORD attributes) {
        const std::string path = folder + "\\" + name;
        if (attributes & FILE_ATTRIBUTE_READONLY)
            SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (!(attributes & FILE_ATTRIBUTE_DIRECTORY))
            DeleteFileA(path.c_str());
        else if (attributes & FILE_ATTRIBUTE_REPARSE_POINT)
            // A link goes; what it leads to is not part of the backup.
            RemoveDirectoryA(path.c_str());
        else
            DeleteFolder(path);
    });
    RemoveDirectoryA(folder.c_str());
}

} // namespace

std::string BackupFolder() {
    return common::ProgramFolder() + "\\kTools\\Backup";
}

std::string BackupName(const SYSTEMTIME& time) {
    char text[40];
    std::snprintf(text, sizeof text, "%02u-%02u-%04u %02u %02u ", time.wDay, time.wMonth, time.wYear,
                  (time.wHour + 11) % 12 + 1, time.wMinute);
    return text + HalfOfDay(time);
}

std::optional<std::int64_t> BackupMinute(const std::string& name) {
    const auto pieces = common::Split(name, ' ');
    if (pieces.size() != 4)
        return std::nullopt;
    const auto date = Date(pieces[0]);
    const auto hour = Digits(pieces[1], 2);
    const auto minute = Digits(pieces[2], 2);
    if (!date || !hour || !minute)
        return std::nullopt;
    return Minute(*date, *hour + (common::EqualsIgnoreCase(pieces[3], "PM") ? 12 : 0), *minute);
}

std::vector<std::string> FoldersToPrune(const std::vector<std::string>& folders, const SYSTEMTIME& now,
                                        std::size_t kept) {
    const std::int64_t present =
        Minute({std::chrono::year(now.wYear), std::chrono::month(now.wMonth), std::chrono::day(now.wDay)},
               now.wHour, now.wMinute);
    std::vector<std::string> names = folders;
    std::vector<std::int64_t> ages;
    for (const std::string& name : names) {
        if (const auto minute = BackupMinute(name))
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
    if (most < 0)
        throw RuntimeError(common::kSubscriptOutOfRange);
    SYSTEMTIME now{};
    GetLocalTime(&now);
    const auto surplus = FoldersToPrune(FoldersIn(BackupFolder()), now, static_cast<std::size_t>(most));
    for (const std::string& name : surplus)
        DeleteFolder(BackupFolder() + "\\" + name);
    return surplus.empty() ? 0 : 1;
}

} // namespace supervision
