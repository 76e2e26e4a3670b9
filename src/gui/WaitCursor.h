#pragma once

#include <windows.h>

namespace gui {

/// Shows the busy cursor as long as it lives; for waits that do not yield.
class WaitCursor {
public:
    WaitCursor() : before_(SetCursor(LoadCursorA(nullptr, IDC_WAIT))) {}
    ~WaitCursor() { SetCursor(before_); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    HCURSOR before_;
};

} // namespace gui
