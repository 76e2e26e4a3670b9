#include "servers/Detection.h"

#include "common/Files.h"
#include "common/FileTime.h"
#include "common/Handle.h"
#include "common/Text.h"
#include "servers/ForeignWindows.h"

#include <tlhelp32.h>

#include <algorithm>
#include <array>
#include <optional>

namespace modServerControl {

namespace {

using Handle = common::Handle<HANDLE, CloseHandle>;

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

/// Started less than a minute ago, and still alive.
bool IsYoung(HANDLE process) {
    FILETIME start, end, kernel, user, now;
    if (WaitForSingleObject(process, 0) != WAIT_TIMEOUT ||
        !GetProcessTimes(process, &start, &end, &kernel, &user))
        return false;
    GetSystemTimeAsFileTime(&now);
    constexpr ULONGLONG kMinute = 600'000'000;
    return common::FileTimeUnits(now) - common::FileTimeUnits(start) < kMinute;
}

/// What tells a file from every other, however its path is written; nothing when it cannot be opened.
std::optional<std::array<DWORD, 3>> FileIdentity(const std::string& path) {
    const common::FileHandle file = common::TryOpenFile(path, 0, OPEN_EXISTING);
    BY_HANDLE_FILE_INFORMATION information;
    if (!file || !GetFileInformationByHandle(file.get(), &information))
        return {};
    return std::array{information.dwVolumeSerialNumber, information.nFileIndexHigh,
                      information.nFileIndexLow};
}

/// By the file itself: the servers of another suite on this computer have the same names.
bool Runs(HANDLE process, const std::string& executable) {
    const auto running = FileIdentity(GetProcessPath(process));
    // Two files that cannot be opened are not the same file.
    return running && running == FileIdentity(executable);
}

bool HasWindow(DWORD process, const char* windowClass) {
    return FindWindowWhere(nullptr, windowClass, [&](HWND window) {
               DWORD owner = 0;
               GetWindowThreadProcessId(window, &owner);
               return owner == process;
           }) != nullptr;
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
    const Component& component = ComponentOf(server);
    const auto processes = common::Own<Handle>(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32 entry;
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(processes.get(), &entry); more;
         more = Process32Next(processes.get(), &entry)) {
        if (!common::EqualsIgnoreCase(entry.szExeFile, component.executable))
            continue;
        const Handle process(
            OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, entry.th32ProcessID));
        if (process && IsYoung(process.get()) && !HasWindow(entry.th32ProcessID, component.mainWindowClass) &&
            Runs(process.get(), ExecutablePath(server)))
            return true;
    }
    return false;
}

std::string ServerStatusText() {
    return std::string("Kerno Tools :: [Login(") + StateText(Server::Login) + ") Character(" +
           StateText(Server::Character) + ") Zone(" + StateText(Server::Zone) + ")]";
}

std::string TrayStatusText() {
    return std::ranges::any_of(kServers, IsRunning) ? ServerStatusText() : kKernoInactive;
}

} // namespace modServerControl
