#pragma once

#include <windows.h>

namespace gui {

/// Makes a window no higher than the work area of its screen. One whose controls do not move with its size
/// gets a bar, by which the wheel and whatever gets the keyboard focus scroll it as well.
void FitHeight(HWND window);

/// Scrolls the window of the control, where it has such a bar, until the control is in sight.
void ScrollIntoView(HWND control);

} // namespace gui
