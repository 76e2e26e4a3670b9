#include "common/clsLog.h"

#include "common/Files.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

#include <algorithm>
#include <cstdio>

namespace common {

std::string LogFolder() {
    const std::string data = ProgramFolder() + "\\kTools";
    try {
        RequireFolder(data);
        RequireFolder(data + "\\Logs");
    } catch (const RuntimeError&) {
        // What is written there is lost then, as it is when a file cannot be written.
    }
    return data + "\\Logs\\";
}

std::string LogStamp(const SYSTEMTIME& time) {
    char stamp[48];
    std::snprintf(stamp, sizeof stamp, "[%02u/%02u/%02u %u:%u:%u]", time.wDay, time.wMonth, time.wYear % 100u,
                  time.wHour, time.wMinute, time.wSecond);
    return stamp;
}

} // namespace common

namespace {

/// Is it one of the names that the system takes for a device in any folder, in any letter case and with any
/// ending? What is written there goes to a printer, a wire or nowhere.
bool NamesDevice(std::string_view fileName) {
    constexpr std::string_view kDevices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    constexpr std::string_view kPorts[] = {"COM", "LPT"};
    constexpr std::string_view kNumbers = "123456789\xB9\xB2\xB3";
    const std::string name = common::UpperCase(common::Trim(fileName.substr(0, fileName.find('.'))));
    return std::ranges::count(kDevices, name) > 0 ||
           (name.size() == 4 && std::ranges::count(kPorts, std::string_view(name).substr(0, 3)) > 0 &&
            kNumbers.find(name[3]) != std::string_view::npos);
}

/// A colon leads to a device too, or into a file's second content that no folder shows.
bool LeadsElsewhere(const std::string& fileName) {
    const auto names = common::Split(common::ReplaceAll(fileName, "/", "\\"), '\\');
    return fileName.find(':') != std::string::npos || std::ranges::any_of(names, NamesDevice);
}

} // namespace

bool clsLog::WriteLog(const std::string& message, bool plain) const {
    if (common::Trim(LogFilename()).empty() || LeadsElsewhere(LogFilename()))
        return false;
    std::string entry;
    if (!plain) {
        SYSTEMTIME now;
        GetLocalTime(&now);
        entry.append(common::LogStamp(now)).append(common::kLineEnd);
    }
    entry.append(message).append(common::kLineEnd);
    try {
        // One write for the whole entry: what another program appends cannot fall between stamp and message.
        common::AppendFileText(LogPath() + LogFilename(), entry);
    } catch (const RuntimeError&) {
        return false;
    }
    return true;
}
