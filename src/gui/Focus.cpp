#include "gui/Focus.h"

namespace gui {

namespace {

bool Holds(HWND window, HWND focus) {
    return focus && (focus == window || IsChild(window, focus));
}

/// What the dialog manager does for Tab: selects a box's text and moves the default button's frame too.
void MoveFocus(HWND form, HWND to) {
    if (to)
        SendMessageA(form, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(to), TRUE);
    else
        SetFocus(form);
}

/// The control behind `window` in the tab order, or behind the one in `window` that has the focus; null when
/// there is none outside of `window`.
HWND NextOutside(HWND form, HWND window, HWND focus) {
    const bool isPage = GetWindowLongPtrA(window, GWL_EXSTYLE) & WS_EX_CONTROLPARENT;
    const HWND from = isPage ? focus : window;
    HWND next = from;
    do {
        next = GetNextDlgTabItem(form, next, FALSE);
        if (next && !Holds(window, next))
            return next;
    } while (next && next != from);
    return nullptr;
}

} // namespace

bool HasFocus(HWND window) {
    return window && Holds(window, GetFocus());
}

bool EnterFocus(HWND window) {
    const HWND first = GetNextDlgTabItem(window, nullptr, FALSE);
    if (!first || !IsWindowVisible(first) || !IsWindowEnabled(first))
        return false;
    MoveFocus(GetAncestor(window, GA_ROOT), first);
    return true;
}

void LeaveFocus(HWND window) {
    if (!HasFocus(window))
        return;
    const HWND focus = GetFocus();
    const HWND form = GetAncestor(window, GA_ROOT);
    MoveFocus(form, IsWindowVisible(focus) ? NextOutside(form, window, focus) : nullptr);
}

void RegainFocus(HWND form) {
    const HWND focus = GetFocus();
    if (focus == form || !HasFocus(form) || !IsWindowVisible(focus) || !IsWindowEnabled(focus))
        EnterFocus(form);
}

} // namespace gui
