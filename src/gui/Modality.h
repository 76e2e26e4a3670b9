#pragma once

#include <windows.h>

namespace gui {

/// A window takes no input while one of these lives for it: a box or a modal window of its own is open.
class Disabled {
public:
    /// Null is no window.
    explicit Disabled(HWND window);
    ~Disabled();
    Disabled(const Disabled&) = delete;
    Disabled& operator=(const Disabled&) = delete;

private:
    HWND window_;
};

} // namespace gui
