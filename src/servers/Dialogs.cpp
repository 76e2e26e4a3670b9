#include "servers/Dialogs.h"

#include "common/Text.h"
#include "gui/TaskWaits.h"
#include "servers/Detection.h"
#include "servers/ForeignWindows.h"
#include "servers/StubbornDialogs.h"

#include <algorithm>
#include <set>

namespace modServerControl {

namespace {

constexpr ULONGLONG kMillisecondsToGo = 50;
constexpr std::chrono::milliseconds kBetweenTries{50};

/// Waits until the dialog is gone, the user does something, or it has had its time.
void LetGo(HWND dialog) {
    const ULONGLONG start = GetTickCount64();
    while (IsWindow(dialog) && GetTickCount64() - start < kMillisecondsToGo)
        if (MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_INPUT) == WAIT_OBJECT_0)
            return;
}

/// One yield and one close after the other until nothing is left that was not told to close; true when one of
/// them went.
gui::Task<bool> CloseAll(DialogTest test) {
    bool anyWent = false;
    std::set<HWND> told;
    for (;;) {
        co_await gui::NextTurn();
        const ClosedDialog closed =
            CloseFirstDialog([&](HWND dialog) { return !told.contains(dialog) && test(dialog); });
        if (!closed.window)
            break;
        anyWent |= closed.HasGone();
        told.insert(closed.window);
    }
    // What is left does not close, or shows no text and is told nothing.
    FindWindowWhere(nullptr, kDialogClass, [&](HWND dialog) {
        if (test(dialog))
            Stubborn().Meet(dialog, GetTickCount64());
        return false;
    });
    co_return anyWent;
}

/// A dialog of either kind that is worth waiting for.
bool HoldsUp(HWND dialog) {
    return (IsServerDialogTitle(dialog) || IsServerProcessWindow(dialog)) &&
           !Stubborn().IsGivenUp(dialog, GetTickCount64());
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

bool IsServerDialogWholeTitle(HWND window) {
    return NamesServer(ReadFullTitle(window));
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

gui::Task<std::int16_t> CloseServerDialogs() {
    while (HasDialog(HoldsUp)) {
        const bool byProcess = co_await CloseAll(IsServerProcessWindow);
        const bool byTitle = co_await CloseAll(IsServerDialogTitle);
        // A dialog that does not close keeps us here; it must not cost a whole processor.
        if (!byProcess && !byTitle)
            co_await gui::Delay(kBetweenTries);
    }
    co_return 1;
}

} // namespace modServerControl
