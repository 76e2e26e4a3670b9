#include "servers/Journal.h"

#include "common/clsLog.h"
#include "common/Files.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>

namespace journal {

namespace {

constexpr ULONGLONG kLargest = 256 * 1024;
constexpr int kOldOnes = 3;
constexpr const char* kAskers[] = {"tray", "restarter", "detector", "address", "backup", "configurator"};

constexpr std::string_view kEnding = ".log";

std::string Numbered(const std::string& path, int number) {
    return path.substr(0, path.size() - kEnding.size()) + "." + std::to_string(number) + std::string(kEnding);
}

ULONGLONG SizeOf(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data))
        return 0;
    return ULONGLONG{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
}

/// Where a step fails, because somebody reads the file, the next line tries again.
void Rotate(const std::string& path) {
    if (SizeOf(path) < kLargest)
        return;
    for (int number = kOldOnes; number > 1; --number)
        MoveFileExA(Numbered(path, number - 1).c_str(), Numbered(path, number).c_str(),
                    MOVEFILE_REPLACE_EXISTING);
    MoveFileExA(path.c_str(), Numbered(path, 1).c_str(), MOVEFILE_REPLACE_EXISTING);
}

std::string Stamp() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    char stamp[32];
    std::snprintf(stamp, sizeof stamp, "[%02u/%02u/%02u %02u:%02u:%02u] ", now.wDay, now.wMonth,
                  now.wYear % 100u, now.wHour, now.wMinute, now.wSecond);
    return stamp;
}

} // namespace

std::string Path() {
    return common::LogFolder() + "Supervision.log";
}

void WriteTo(const std::string& path, Asker asker, std::string_view what) {
    Rotate(path);
    const std::size_t name = path.rfind('\\') + 1;
    clsLog log;
    log.LogPath(path.substr(0, name));
    log.LogFilename(path.substr(name));
    std::string line = Stamp() + kAskers[static_cast<int>(asker)] + ": ";
    // A dialog's text may have several lines.
    std::ranges::transform(what, std::back_inserter(line),
                           [](char c) { return c == '\r' || c == '\n' ? ' ' : c; });
    log.WriteLog(line, true);
}

void Write(Asker asker, std::string_view what) {
    WriteTo(Path(), asker, what);
}

std::string LastLines(int count) {
    std::string text;
    try {
        text = common::ReadFileText(Path());
    } catch (const RuntimeError&) {
        return {};
    }
    const std::string_view all = text;
    std::size_t start = all.size();
    for (int lines = 0; start > 0 && lines <= count; ++lines)
        start = all.rfind('\n', start - 1) == all.npos ? 0 : all.rfind('\n', start - 1);
    return text.substr(start == 0 ? 0 : start + 1);
}

} // namespace journal
