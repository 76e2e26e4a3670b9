#include "gui/Placement.h"

#include <algorithm>

namespace gui {

RECT WorkAreaAround(HWND window) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (window && GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor))
        return monitor.rcWork;
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    return work;
}

POINT PlaceOver(SIZE size, const RECT& over, const RECT& work) {
    return {std::clamp((over.left + over.right - size.cx) / 2, work.left,
                       std::max(work.left, work.right - size.cx)),
            std::clamp((over.top + over.bottom - size.cy) / 2, work.top,
                       std::max(work.top, work.bottom - size.cy))};
}

void PlaceWindow(HWND window, HWND over) {
    const RECT work = WorkAreaAround(over);
    RECT area = work;
    if (over && IsWindowVisible(over) && !IsIconic(over))
        GetWindowRect(over, &area);
    RECT own;
    GetWindowRect(window, &own);
    const POINT at = PlaceOver({own.right - own.left, own.bottom - own.top}, area, work);
    SetWindowPos(window, nullptr, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace gui
