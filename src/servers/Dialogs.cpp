#include "servers/Dialogs.h"

#include "common/Text.h"
#include "gui/Application.h"
#include "servers/Detection.h"
#include "servers/ForeignWindows.h"

#include <algorithm>

namespace modServerControl {

namespace {

constexpr ULONGLONG kMillisecondsToGo = 50;

/// Waits until the dialog is gone, the user does something, or it has had its time.
void LetGo(HWND dialog) {
    const ULONGLONG start = GetTickCount64();
    while (IsWindow(dialog) && GetTickCount64() - start < kMillisecondsToGo)
        if (MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_INPUT) == WAIT_OBJECT_0)
            return;
}

/// One yield and one close after the other until nothing is closed any more; true when something was.
bool CloseAll(const DialogTest& test) {
    bool closed = false;
    for (;;) {
        gui::DoEvents();
        if (CloseDialog(test).empty())
            return closed;
        closed = true;
    }
}

} // namespace

bool NamesServer(std::string_view title) {
    constexpr std::string_view kNames[] = {"kCharacter", "kLogin", "kZone"};
    return std::ranges::any_of(kNames, [&](auto name) { return common::ContainsIgnoreCase(title, name); });
}

bool IsServerProcessWindow(HWND window) {
    return std::ranges::any_of(
        kServers, [&](Server server) { return IsServerModule(server, GetWindowModuleName(window)); });
}

bool IsServerPathWindow(HWND window) {
    const std::string path = GetWindowModulePath(window);
    return std::ranges::any_of(kServers, [&](Server server) {
        return common::ContainsIgnoreCase(path, ComponentOf(server).executable);
    });
}

bool ServerPathWindows::Contains(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const auto [known, isNew] = known_.try_emplace(process, false);
    if (isNew)
        known->second = IsServerPathWindow(window);
    return known->second;
}

bool IsServerDialogTitle(HWND window) {
    return NamesServer(ReadTitle(window));
}

bool HasDialog(const DialogTest& test) {
    return FindWindowWhere(nullptr, kDialogClass, test) != nullptr;
}

ClosedDialog CloseFirstDialog(const DialogTest& test) {
    ClosedDialog closed;
    closed.window = FindWindowWhere(nullptr, kDialogClass, [&](HWND dialog) {
        if (!test(dialog))
            return false;
        // The icon of a message box is a text without characters. A failed post leaves the next text a try.
        return FindWindowWhere(dialog, kDialogTextClass, [&](HWND label) {
                   closed.text = ReadTitle(label);
                   return !closed.text.empty() && PostMessageA(dialog, WM_CLOSE, 0, 0);
               }) != nullptr;
    });
    if (!closed.window)
        return {};
    LetGo(closed.window);
    return closed;
}

std::string CloseDialog(const DialogTest& test) {
    return CloseFirstDialog(test).text;
}

std::int16_t HasDialogByProcess() {
    return HasDialog(IsServerProcessWindow) ? 1 : 0;
}
std::int16_t HasDialogByTitle() {
    return HasDialog(IsServerDialogTitle) ? 1 : 0;
}

std::string CloseDialogByProcess() {
    return CloseDialog(IsServerProcessWindow);
}
std::string CloseDialogByTitle() {
    return CloseDialog(IsServerDialogTitle);
}

std::int16_t CloseServerDialogs() {
    while (HasDialog(IsServerDialogTitle) || HasDialog(IsServerProcessWindow)) {
        const bool byProcess = CloseAll(IsServerProcessWindow);
        const bool byTitle = CloseAll(IsServerDialogTitle);
        // A dialog that shows no text is not closed but keeps us here; it must not cost a whole processor.
        if (!byProcess && !byTitle)
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    return 1;
}

} // namespace modServerControl
