#include "gui/TaskWaits.h"

#include <windows.h>

namespace gui {

Task<bool> detail::UntilHolds(std::function<bool()> holds, std::optional<std::chrono::milliseconds> limit) {
    // At first it is looked at as often as may be, because most of what is waited for takes a few
    // milliseconds.
    constexpr ULONGLONG kOften = 50;
    const ULONGLONG start = GetTickCount64();
    for (;;) {
        if (holds())
            co_return true;
        const ULONGLONG waited = GetTickCount64() - start;
        if (limit && static_cast<long long>(waited) >= limit->count())
            co_return false;
        if (waited < kOften) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT);
            co_await NextTurn();
        } else {
            co_await Delay(std::chrono::milliseconds(USER_TIMER_MINIMUM));
        }
    }
}

void Event::Set() {
    if (set_)
        return;
    set_ = true;
    for (const WaitId id : std::exchange(waiting_, {}))
        Wake(id);
}

} // namespace gui
