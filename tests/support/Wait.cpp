#include "support/Wait.h"

#include "gui/Application.h"

#include <windows.h>

#include <map>

namespace support {

namespace {

std::map<std::uintptr_t, std::function<void()>> actions;
bool left = false;

void CALLBACK RunAction(HWND /*window*/, UINT /*message*/, UINT_PTR timer, DWORD /*time*/) {
    // A tick may still be on its way when the timer is gone.
    if (const auto found = actions.find(timer); found != actions.end())
        found->second();
}

} // namespace

Meanwhile::Meanwhile(std::function<void()> action) {
    timer_ = SetTimer(nullptr, 0, 10, RunAction);
    actions[timer_] = std::move(action);
}

Meanwhile::~Meanwhile() {
    KillTimer(nullptr, timer_);
    actions.erase(timer_);
}

void DispatchPending() {
    MSG message;
    while (!left && PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT)
            left = true;
        else
            gui::Dispatch(message);
    }
}

bool ToolWasLeft() {
    return left;
}

bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (left || std::chrono::steady_clock::now() > end)
            return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        DispatchPending();
    }
    return true;
}

bool Settle(std::chrono::milliseconds limit) {
    return WaitUntil([] { return gui::TasksUnderWay() == 0; }, limit);
}

} // namespace support
