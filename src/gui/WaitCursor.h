#pragma once

#include <windows.h>

namespace gui {

/// The hour-glass, until the object goes or the mouse is next told where it is.
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
