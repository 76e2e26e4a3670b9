#pragma once

#include <windows.h>

namespace gui {

/// Where a window of the size goes that is centred on `over`: within `work`, and in its top left corner when
/// it is larger than that.
POINT PlaceOver(SIZE size, const RECT& over, const RECT& work);

/// The part of a window's monitor that the task bar leaves free; of the primary one for null.
RECT WorkAreaAround(HWND window);

/// Centres a window, which is hidden yet, on the window `over`; in the middle of the work area when `over` is
/// null or not to be seen. It lies on the monitor on which `over` is, or was before it was minimized.
void PlaceWindow(HWND window, HWND over);

} // namespace gui
