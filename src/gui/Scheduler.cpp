#include "gui/Scheduler.h"

#include <windows.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace gui {

namespace {

constexpr UINT kWake = WM_APP;
constexpr UINT kWakeAfterOthers = WM_APP + 1;

std::unordered_map<WaitId, std::function<void()>>& Waits() {
    static std::unordered_map<WaitId, std::function<void()>> waits;
    return waits;
}

void Resume(WaitId id) {
    if (auto wait = Waits().extract(id))
        wait.mapped()();
}

/// True when there is something that the system hands out after posted messages only.
bool OthersAreDue() {
    return HIWORD(GetQueueStatus(QS_INPUT | QS_PAINT | QS_TIMER)) != 0;
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto id = static_cast<WaitId>(wParam);
    switch (message) {
    case kWakeAfterOthers:
        // A timer's message comes after all others. Without anything due it would only cost its interval.
        if (OthersAreDue())
            SetTimer(window, id, USER_TIMER_MINIMUM, nullptr);
        else
            Resume(id);
        return 0;
    case WM_TIMER:
        KillTimer(window, id);
        Resume(id);
        return 0;
    case kWake:
        Resume(id);
        return 0;
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}

/// A window of our own and not the thread's queue: the loops of menus, boxes and dragged windows throw away
/// messages that belong to no window.
HWND Window() {
    static const HWND window = [] {
        WNDCLASSA windowClass{};
        windowClass.lpfnWndProc = Procedure;
        windowClass.hInstance = GetModuleHandleA(nullptr);
        windowClass.lpszClassName = "kToolsScheduler";
        RegisterClassA(&windowClass);
        return CreateWindowExA(0, windowClass.lpszClassName, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                               windowClass.hInstance, nullptr);
    }();
    return window;
}

void Post(UINT message, WaitId id) {
    // A full queue (10,000 messages) takes no more until the loop has had its turn.
    const DWORD ownThread = GetWindowThreadProcessId(Window(), nullptr);
    while (!PostMessageA(Window(), message, id, 0)) {
        if (GetCurrentThreadId() == ownThread) {
            SetTimer(Window(), id, USER_TIMER_MINIMUM, nullptr);
            return;
        }
        Sleep(1);
    }
}

} // namespace

WaitId BeginWait(std::function<void()> resume) {
    static WaitId last = 0;
    // The window belongs to the thread that waits, whoever wakes it.
    Window();
    while (++last == 0 || Waits().contains(last)) {
    }
    Waits().emplace(last, std::move(resume));
    return last;
}

void ForgetWait(WaitId id) {
    if (Waits().erase(id))
        KillTimer(Window(), id);
}

void Wake(WaitId id) {
    Post(kWake, id);
}

void WakeAfterOthers(WaitId id) {
    Post(kWakeAfterOthers, id);
}

void WakeAfter(WaitId id, std::chrono::milliseconds time) {
    const auto longest = static_cast<long long>(USER_TIMER_MAXIMUM);
    const auto shortest = static_cast<long long>(USER_TIMER_MINIMUM);
    SetTimer(Window(), id, static_cast<UINT>(std::clamp<long long>(time.count(), shortest, longest)),
             nullptr);
}

} // namespace gui
