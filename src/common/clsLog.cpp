#include "common/clsLog.h"

#include "common/Files.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

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

bool clsLog::WriteLog(const std::string& message, bool plain) const {
    if (common::Trim(LogFilename()).empty())
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
