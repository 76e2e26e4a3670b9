#include "gui/Control.h"

#include "gui/Focus.h"
#include "gui/WindowText.h"

#include <algorithm>
#include <unordered_map>

namespace gui {

namespace {

/// A window that a control sees the messages of, and the procedure that it had before. Kept here, because the
/// system's own helper asks the window for a property twice for every message, which costs more than most
/// messages do.
struct Watched {
    Control* control;
    WNDPROC before;
};

/// Never destroyed: forms that are retired to the very end let go of their controls after that.
std::unordered_map<HWND, Watched>& WatchedWindows() {
    static auto& windows = *new std::unordered_map<HWND, Watched>;
    return windows;
}

} // namespace

Control::Control(Form& form, int id) : form_(form), id_(id) {
    form.controls_.push_back(this);
}

Control::~Control() {
    std::erase(form_.controls_, this);
    // The window may have been given yet another procedure since, which would go on to call ours.
    for (auto& [window, watched] : WatchedWindows())
        if (watched.control == this)
            watched.control = nullptr;
}

bool Control::Enabled() const {
    return window_ && IsWindowEnabled(window_);
}
void Control::Enabled(bool enabled) {
    if (!enabled)
        LeaveFocus(window_);
    EnableWindow(window_, enabled);
}

bool Control::Visible() const {
    // The control's own state: IsWindowVisible would ask its form too.
    return window_ && (GetWindowLongPtrA(window_, GWL_STYLE) & WS_VISIBLE);
}
void Control::Visible(bool visible) {
    if (!visible)
        LeaveFocus(window_);
    ShowWindow(window_, visible ? SW_SHOW : SW_HIDE);
}

void Control::SetFocus() {
    ::SetFocus(window_);
}

void Control::Marked(bool marked) {
    if (!mark_ && marked && window_) {
        const RECT bounds = Bounds();
        // In a colour of the system, so that it is seen in every scheme.
        const int width = std::max(2, GetSystemMetrics(SM_CXEDGE) * 3 / 2);
        mark_ = CreateWindowExA(WS_EX_NOPARENTNOTIFY, "Static", nullptr, WS_CHILD | SS_BLACKRECT,
                                bounds.left - 2 * width, bounds.top, width, bounds.bottom - bounds.top,
                                form_.Window(), nullptr, nullptr, nullptr);
    }
    if (mark_)
        ShowWindow(mark_, marked ? SW_SHOWNA : SW_HIDE);
}

RECT Control::Bounds() const {
    RECT bounds{};
    GetWindowRect(window_, &bounds);
    MapWindowPoints(nullptr, form_.Window(), reinterpret_cast<POINT*>(&bounds), 2);
    return bounds;
}

void Control::Move(int left, int top, int width, int height) {
    SetWindowPos(window_, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

std::string Control::WindowText() const {
    return TextOf(window_);
}

void Control::WindowText(const std::string& text) {
    SetWindowTextA(window_, text.c_str());
}

LRESULT Control::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
    return window_ ? SendMessageA(window_, message, wParam, lParam) : 0;
}

LRESULT Control::SendText(UINT message, WPARAM wParam, const std::string& text) const {
    return Send(message, wParam, reinterpret_cast<LPARAM>(text.c_str()));
}

void Control::Watch(HWND window) {
    if (!window)
        return;
    // In the characters of its own, so that none is converted on the way.
    const auto replace = IsWindowUnicode(window) ? SetWindowLongPtrW : SetWindowLongPtrA;
    const LONG_PTR before = replace(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(WatchProcedure));
    if (before != reinterpret_cast<LONG_PTR>(WatchProcedure))
        WatchedWindows()[window] = {this, reinterpret_cast<WNDPROC>(before)};
}

LRESULT Control::PassOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto watched = WatchedWindows().find(window);
    // Seeing the message may have destroyed the window.
    if (watched == WatchedWindows().end())
        return 0;
    const WNDPROC before = watched->second.before;
    if (message == WM_NCDESTROY)
        WatchedWindows().erase(watched);
    const auto call = IsWindowUnicode(window) ? CallWindowProcW : CallWindowProcA;
    return call(before, window, message, wParam, lParam);
}

LRESULT CALLBACK Control::WatchProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    bool used = false;
    const auto watched = WatchedWindows().find(window);
    Control* const control = watched == WatchedWindows().end() ? nullptr : watched->second.control;
    if (control && message != WM_NCDESTROY)
        control->form_.Raise([&] { used = control->Message(window, message, wParam, lParam); });
    return used ? 0 : PassOn(window, message, wParam, lParam);
}

void Label::Caption(const std::string& caption) {
    // Setting the text that is there already would make the label flicker at every tick.
    if (caption != WindowText())
        WindowText(caption);
}

bool Frame::PressThrough(MouseButton button, int x, int y) {
    if (!mouseDown_)
        return false;
    Raise([&] { mouseDown_(button, x, y); });
    return true;
}

void CommandButton::Press() {
    if (Enabled())
        Raise(click_);
}

void CommandButton::Command(int code) {
    if (code == BN_CLICKED)
        Raise(click_);
}

int CheckBox::Value() const {
    return Send(BM_GETCHECK) == BST_CHECKED ? 1 : 0;
}

void CheckBox::Value(int value) {
    Send(BM_SETCHECK, value ? BST_CHECKED : BST_UNCHECKED);
    Raise(click_);
}

void CheckBox::Command(int code) {
    if (code == BN_CLICKED)
        Raise(click_);
}

bool OptionButton::Value() const {
    return Send(BM_GETCHECK) == BST_CHECKED;
}

void OptionButton::Value(bool value) {
    if (!value) {
        Send(BM_SETCHECK, BST_UNCHECKED);
        return;
    }
    // The group: from the control that starts it to the one before the next start.
    HWND first = Window();
    while (first && !(GetWindowLongPtrA(first, GWL_STYLE) & WS_GROUP))
        first = GetWindow(first, GW_HWNDPREV);
    for (HWND each = first; each; each = GetWindow(each, GW_HWNDNEXT)) {
        const auto style = GetWindowLongPtrA(each, GWL_STYLE);
        if (each != first && (style & WS_GROUP))
            break;
        if (SendMessageA(each, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON)
            SendMessageA(each, BM_SETCHECK, each == Window() ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    Raise(click_);
}

void OptionButton::Command(int code) {
    if (code == BN_CLICKED && Value())
        Raise(click_);
}

} // namespace gui
