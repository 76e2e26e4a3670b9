#include "servers/ForeignWindows.h"

#include "common/Handle.h"
#include "common/Text.h"

#include <tlhelp32.h>

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace modServerControl {

namespace {

using Handle = common::Handle<HANDLE, CloseHandle>;

constexpr UINT kAnswerMilliseconds = 1000;

Handle ModulesOf(DWORD process) {
    // A process that is just loading or unloading a library asks for the snapshot to be taken again.
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (auto snapshot = common::Own<Handle>(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, process)))
            return snapshot;
        if (GetLastError() != ERROR_BAD_LENGTH)
            break;
    }
    return {};
}

struct Search {
    HWND parent;
    std::string_view windowClass;
    /// Windows that need no look any more, of every class: asking one for its class is a call of the system.
    std::unordered_set<HWND> seen;
    std::vector<HWND> found;
};

BOOL CALLBACK TakeFound(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<Search*>(data);
    if (!search.seen.insert(window).second)
        return TRUE;
    char name[256] = "";
    GetClassNameA(window, name, sizeof name);
    if (common::EqualsIgnoreCase(name, search.windowClass) &&
        (!search.parent || GetAncestor(window, GA_PARENT) == search.parent))
        search.found.push_back(window);
    return TRUE;
}

/// Those that were not seen yet, all at once: a walk from one to the next by FindWindowEx loses its way when
/// a window is raised, and Wine 10's server never comes back from behind one that is being destroyed.
std::vector<HWND> NewWindows(Search& search) {
    const auto data = reinterpret_cast<LPARAM>(&search);
    search.parent ? EnumChildWindows(search.parent, TakeFound, data) : EnumWindows(TakeFound, data);
    return std::exchange(search.found, {});
}

} // namespace

HWND FindWindowWhere(HWND parent, const char* windowClass, const std::function<bool(HWND)>& visit) {
    // Mostly there is none, or the topmost is the one that is sought: one call, however many windows there
    // are. Without any parent it would also find message-only windows, which EnumWindows does not show.
    const HWND topmost = FindWindowExA(parent ? parent : GetDesktopWindow(), nullptr, windowClass, nullptr);
    if (!topmost || visit(topmost))
        return topmost;
    // Windows come and go meanwhile, so it looks again until that brings up no new one of the class. The
    // system gives a session no more windows than this at a time.
    constexpr std::size_t kMostWindows = 65'536;
    Search search{parent, windowClass, {topmost}, {}};
    for (bool again = true; again && search.seen.size() < kMostWindows;) {
        const std::vector<HWND> windows = NewWindows(search);
        again = !windows.empty();
        for (const HWND window : windows)
            if (visit(window))
                return window;
    }
    return nullptr;
}

std::string ReadTitle(HWND window) {
    // The titles in the table of servers count on the missing character.
    std::string title = ReadFullTitle(window);
    if (!title.empty())
        title.pop_back();
    return title;
}

std::string ReadFullTitle(HWND window) {
    // The length cannot be had first: GetWindowTextLength asks the window itself on some systems, and a hung
    // one never answers. GetWindowText reads what the window manager keeps.
    constexpr std::size_t kLongest = 1u << 20;
    for (std::size_t room = 256;; room *= 4) {
        std::string text(room, '\0');
        const int read = GetWindowTextA(window, text.data(), static_cast<int>(room));
        text.resize(std::min(static_cast<std::size_t>(std::max(read, 0)), room - 1));
        if (text.size() + 1 < room || room >= kLongest)
            return text;
    }
}

std::string GetWindowModulePath(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == 0)
        return {};
    const Handle modules = ModulesOf(process);
    MODULEENTRY32 first;
    first.dwSize = sizeof first;
    if (modules && Module32First(modules.get(), &first))
        return common::Trim(first.szExePath);
    // A 32-bit program may not look into a 64-bit one, nor anybody into one that has more rights. Every
    // program may ask for the name of the executable.
    const Handle limited(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
    return limited ? GetProcessPath(limited.get()) : std::string();
}

std::string GetWindowModuleName(HWND window) {
    const std::string path = GetWindowModulePath(window);
    return path.substr(path.rfind('\\') + 1);
}

bool HasMoreRights(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const Handle changeable(OpenProcess(PROCESS_SET_INFORMATION, FALSE, process));
    return !changeable && GetLastError() == ERROR_ACCESS_DENIED;
}

std::string GetProcessPath(HANDLE process) {
    char path[MAX_PATH];
    DWORD size = MAX_PATH;
    return QueryFullProcessImageNameA(process, 0, path, &size) ? std::string(path, size) : std::string();
}

std::optional<LRESULT> Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    // Wine 8 looks up a text behind the 8-bit length question and waits for it without limit.
    const auto send = message == WM_GETTEXTLENGTH ? SendMessageTimeoutW : SendMessageTimeoutA;
    DWORD_PTR answer = 0;
    if (!send(window, message, wParam, lParam, SMTO_ABORTIFHUNG, kAnswerMilliseconds, &answer))
        return {};
    return static_cast<LRESULT>(answer);
}

} // namespace modServerControl
