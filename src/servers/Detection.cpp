#include "servers/Detection.h"

#include "common/FileTime.h"
#include "servers/ForeignWindows.h"
#include "servers/Processes.h"

#include <algorithm>
#include <array>

namespace modServerControl {

namespace {

bool MatchesStart(std::string_view text, std::string_view pattern) {
    const auto matches = [](char wanted, char c) {
        return wanted == '#' ? c >= '0' && c <= '9' : c == wanted;
    };
    return text.size() >= pattern.size() && std::equal(pattern.begin(), pattern.end(), text.begin(), matches);
}

/// The current method's test; a window whose title or module cannot be read fails it.
bool Passes(Server server, HWND window, bool (*titleTest)(Server, std::string_view)) {
    switch (ServerDetectionMethod()) {
    case kDetectByTitle:
        return titleTest(server, ReadTitle(window));
    case kDetectByProcess:
        return IsServerModule(server, GetWindowModuleName(window));
    default:
        return false;
    }
}

/// One of the server's windows belongs to the process, and is recognised.
bool IsRecognised(Server server, const ProcessId& process) {
    return FindServerWindow(server, ComponentOf(server).mainWindowClass, [&](HWND window) {
               DWORD owner = 0;
               GetWindowThreadProcessId(window, &owner);
               return owner == process.id;
           }) != nullptr;
}

ULONGLONG SystemNow() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return common::FileTimeUnits(now);
}

const char* StateText(Server server) {
    return IsRunning(server) ? "Active" : "Inactive";
}

} // namespace

bool IsServerTitle(Server server, std::string_view title) {
    return MatchesStart(title, ComponentOf(server).titlePattern);
}

bool IsAppTitle(Server server, std::string_view title) {
    return title.starts_with(ComponentOf(server).appTitleStart);
}

bool IsServerModule(Server server, std::string_view module) {
    return module.find(ComponentOf(server).executable) != std::string_view::npos;
}

bool IsServerWindow(Server server, HWND window) {
    return Passes(server, window, IsServerTitle);
}

bool IsAppWindow(Server server, HWND window) {
    return Passes(server, window, IsAppTitle);
}

HWND FindServerWindow(Server server, const char* windowClass, const std::function<bool(HWND)>& visit) {
    return FindWindowWhere(nullptr, windowClass,
                           [&](HWND window) { return IsServerWindow(server, window) && visit(window); });
}

HWND MainWindow(Server server) {
    return FindServerWindow(server, ComponentOf(server).mainWindowClass, [](HWND) { return true; });
}

bool IsRunning(Server server) {
    return MainWindow(server) != nullptr;
}

bool IsStarting(Server server) {
    static std::array<ProcessAges, kServers.size()> agesOfServers;
    ProcessAges& ages = agesOfServers[static_cast<std::size_t>(server)];
    const std::vector<ProcessId> processes = ProcessesOf(server);
    ages.Keep(processes);
    const auto isStarting = [&](const ProcessId& process) {
        return ages.Age(process, SystemNow(), GetTickCount64()) < std::chrono::minutes(1) &&
               !IsRecognised(server, process);
    };
    return std::ranges::any_of(processes, isStarting);
}

std::string ServerStatusText() {
    return std::string("Kerno Tools :: [Login(") + StateText(Server::Login) + ") Character(" +
           StateText(Server::Character) + ") Zone(" + StateText(Server::Zone) + ")]";
}

std::string TrayStatusText() {
    return std::ranges::any_of(kServers, IsRunning) ? ServerStatusText() : kKernoInactive;
}

} // namespace modServerControl
