#include "gui/Scrolling.h"

#include "gui/Placement.h"

#include <commctrl.h>

#include <algorithm>

namespace gui {

namespace {

constexpr UINT_PTR kId = 0x5C01;
constexpr const char* kScrolls = "kTools.scrolls";
/// A turn of the wheel, or a press on an arrow, in pixels.
constexpr int kStep = 48;

SCROLLINFO StateOf(HWND window) {
    SCROLLINFO state{};
    state.cbSize = sizeof state;
    state.fMask = SIF_ALL;
    GetScrollInfo(window, SB_VERT, &state);
    return state;
}

void ScrollTo(HWND window, int place) {
    const int before = StateOf(window).nPos;
    SCROLLINFO state{};
    state.cbSize = sizeof state;
    state.fMask = SIF_POS;
    state.nPos = place;
    const int now = SetScrollInfo(window, SB_VERT, &state, TRUE);
    if (now != before)
        ScrollWindowEx(window, 0, before - now, nullptr, nullptr, nullptr, nullptr,
                       SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
}

void Scroll(HWND window, int code) {
    const SCROLLINFO state = StateOf(window);
    const int page = static_cast<int>(state.nPage);
    switch (code) {
    case SB_LINEUP:
        return ScrollTo(window, state.nPos - kStep);
    case SB_LINEDOWN:
        return ScrollTo(window, state.nPos + kStep);
    case SB_PAGEUP:
        return ScrollTo(window, state.nPos - page);
    case SB_PAGEDOWN:
        return ScrollTo(window, state.nPos + page);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        return ScrollTo(window, state.nTrackPos);
    case SB_TOP:
        return ScrollTo(window, state.nMin);
    case SB_BOTTOM:
        return ScrollTo(window, state.nMax);
    default:
        return;
    }
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                           DWORD_PTR /*data*/) {
    if (message == WM_VSCROLL && lParam == 0) {
        Scroll(window, LOWORD(wParam));
        return 0;
    }
    if (message == WM_MOUSEWHEEL) {
        ScrollTo(window, StateOf(window).nPos - GET_WHEEL_DELTA_WPARAM(wParam) * kStep / WHEEL_DELTA);
        return 0;
    }
    if (message == WM_NCDESTROY)
        RemovePropA(window, kScrolls);
    return DefSubclassProc(window, message, wParam, lParam);
}

} // namespace

void FitHeight(HWND window) {
    const RECT work = WorkAreaAround(window);
    const int height = static_cast<int>(work.bottom - work.top);
    RECT whole{};
    RECT content{};
    GetWindowRect(window, &whole);
    GetClientRect(window, &content);
    if (whole.bottom - whole.top <= height)
        return;
    const bool sizes = (GetWindowLongPtrA(window, GWL_STYLE) & WS_THICKFRAME) != 0;
    const int barWidth = sizes ? 0 : GetSystemMetrics(SM_CXVSCROLL);
    const int width = static_cast<int>(whole.right - whole.left) + barWidth;
    const int left = std::max(static_cast<int>(work.left),
                              std::min(static_cast<int>(whole.left), static_cast<int>(work.right) - width));
    SetWindowPos(window, nullptr, left, work.top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    if (sizes)
        return;
    SCROLLINFO state{};
    state.cbSize = sizeof state;
    state.fMask = SIF_RANGE | SIF_PAGE;
    state.nMax = static_cast<int>(content.bottom) - 1;
    RECT seen{};
    GetClientRect(window, &seen);
    state.nPage = static_cast<UINT>(seen.bottom);
    SetScrollInfo(window, SB_VERT, &state, FALSE);
    ShowScrollBar(window, SB_VERT, TRUE);
    SetWindowSubclass(window, Procedure, kId, 0);
    SetPropA(window, kScrolls, window);
}

void ScrollIntoView(HWND control) {
    const HWND window = GetAncestor(control, GA_ROOT);
    if (!window || window == control || !GetPropA(window, kScrolls))
        return;
    RECT place{};
    RECT seen{};
    GetWindowRect(control, &place);
    GetClientRect(window, &seen);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    const LONG down = std::max(0L, place.bottom - seen.bottom);
    const LONG up = std::max(0L, seen.top - (place.top - down));
    if (down != 0 || up != 0)
        ScrollTo(window, StateOf(window).nPos + static_cast<int>(down - up));
}

} // namespace gui
