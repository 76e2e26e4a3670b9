#include "support/Wait.h"

#include "gui/Application.h"

#include <windows.h>

namespace support {

bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        gui::DoEvents();
    }
    return true;
}

} // namespace support
