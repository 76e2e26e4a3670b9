#include "servers/ServerWatch.h"

#include "servers/Detection.h"
#include "servers/ForeignWindows.h"
#include "servers/Ownership.h"

#include <algorithm>
#include <cstdio>

namespace modServerControl {

namespace {

constexpr ULONGLONG kTenMinutes = 10 * 60 * 1000;

std::size_t Index(Server server) {
    return static_cast<std::size_t>(server);
}

DWORD ProcessOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

std::string ClockText(const SYSTEMTIME& time) {
    char text[16];
    std::snprintf(text, sizeof text, "%02u:%02u:%02u", time.wHour, time.wMinute, time.wSecond);
    return text;
}

SYSTEMTIME LocalNow() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return now;
}

SYSTEMTIME LocalTime(ULONGLONG systemTime) {
    const FILETIME file{static_cast<DWORD>(systemTime), static_cast<DWORD>(systemTime >> 32)};
    SYSTEMTIME universal{};
    SYSTEMTIME local{};
    FileTimeToSystemTime(&file, &universal);
    SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
    return local;
}

HWND DialogOf(const std::vector<ProcessId>& processes) {
    return FindWindowWhere(nullptr, kDialogClass, [&](HWND window) {
        return IsWindowVisible(window) &&
               std::ranges::count(processes, ProcessOf(window), &ProcessId::id) > 0;
    });
}

const char* Words(Condition condition) {
    switch (condition) {
    case Condition::Gone:
        return "gone since ";
    case Condition::Starting:
        return "starting since ";
    case Condition::Running:
        return "running since ";
    case Condition::Hung:
        return "hung since ";
    case Condition::Dialog:
        return "dialog open since ";
    case Condition::Restarting:
        return "being restarted since ";
    }
    return "";
}

} // namespace

Sight LookAt(Server server) {
    Sight sight;
    const HWND window = MainWindow(server);
    const std::vector<ProcessId> processes = ProcessesOf(server);
    const auto shown = std::ranges::find(processes, ProcessOf(window), &ProcessId::id);
    const auto process = window ? shown : processes.begin();
    if (process != processes.end())
        sight.created = process->created;
    sight.hasMoreRights = window && HasMoreRights(window);
    if (window && process == processes.end())
        sight.stranger = GetWindowModuleName(window);
    const HWND dialog = DialogOf(processes);
    if (IsOwned(server))
        sight.condition = Condition::Restarting;
    else if (dialog)
        sight.condition = Condition::Dialog;
    else if (window)
        sight.condition = IsHungAppWindow(window) ? Condition::Hung : Condition::Running;
    else if (IsStarting(server))
        sight.condition = Condition::Starting;
    if (dialog)
        sight.dialog = ReadFullTitle(dialog);
    return sight;
}

std::string LiveLine(Server server, const Sight& sight, const SYSTEMTIME& since, const SYSTEMTIME& checked,
                     int launches) {
    std::string line =
        std::string(ComponentOf(server).name) + " server: " + Words(sight.condition) + ClockText(since);
    // The line has room for two rows.
    constexpr std::size_t kLongestTitle = 40;
    if (sight.dialog.size() > kLongestTitle)
        line += " (\"" + sight.dialog.substr(0, kLongestTitle) + "...\")";
    else if (!sight.dialog.empty())
        line += " (\"" + sight.dialog + "\")";
    if (!sight.stranger.empty())
        line += "; the window is that of " + sight.stranger + " from elsewhere";
    if (sight.hasMoreRights)
        line += "; runs as administrator, kTools cannot close it";
    if (launches >= LaunchHistory::kMany)
        line += "; started " + std::to_string(launches) + " times within ten minutes";
    return line + "; checked " + ClockText(checked);
}

std::string ServerWatch::Line(Server server) {
    const Sight sight = LookAt(server);
    const SYSTEMTIME now = LocalNow();
    Known& known = known_[Index(server)];
    if (!known.seen || known.condition != sight.condition)
        known = {sight.condition, now, true};
    const bool lives = sight.condition == Condition::Running || sight.condition == Condition::Starting;
    return LiveLine(server, sight, lives && sight.created ? LocalTime(sight.created) : known.since, now,
                    Launches().Recent(server, GetTickCount64()));
}

void LaunchHistory::Note(Server server, ULONGLONG now) {
    auto& launches = launches_[ExecutablePath(server)];
    launches.push_back(now);
    while (now - launches.front() >= kTenMinutes)
        launches.pop_front();
}

int LaunchHistory::Recent(Server server, ULONGLONG now) const {
    const auto launches = launches_.find(ExecutablePath(server));
    if (launches == launches_.end())
        return 0;
    return static_cast<int>(std::ranges::count_if(
        launches->second, [&](ULONGLONG launch) { return now - launch < kTenMinutes; }));
}

LaunchHistory& Launches() {
    static LaunchHistory history;
    return history;
}

} // namespace modServerControl
