#include "gui/Text.h"

#include <commdlg.h>
#include <richedit.h>

namespace gui {

namespace {

/// What stands for a character of a password.
constexpr WPARAM kDot = 0x25CF;

} // namespace

void TextControl::Attached() {
    // A dot, also where the system's edit control would show an asterisk.
    if (GetWindowLongPtrA(Window(), GWL_STYLE) & ES_PASSWORD)
        SendMessageW(Window(), EM_SETPASSWORDCHAR, kDot, 0);
    if (keyPress_)
        Watch(Window());
}

bool TextControl::Message(HWND /*window*/, UINT message, WPARAM& wParam, LPARAM /*lParam*/) {
    if (message != WM_CHAR || !keyPress_)
        return false;
    int key = static_cast<int>(wParam);
    Raise([&] { keyPress_(key); });
    wParam = static_cast<WPARAM>(key);
    return key == 0;
}

void TextBox::Text(const std::string& text) {
    WindowText(text);
    // A multi-line box does not tell of a text that was set.
    if (GetWindowLongPtrA(Window(), GWL_STYLE) & ES_MULTILINE)
        Raise(change_);
}

void TextBox::Command(int code) {
    if (code == EN_CHANGE)
        Raise(change_);
}

bool TextBox::Key(int virtualKey) {
    if (virtualKey != VK_RETURN || !enter_)
        return false;
    enter_->Press();
    return true;
}

void TextBox::Hidden(bool hidden) {
    SendMessageW(Window(), EM_SETPASSWORDCHAR, hidden ? kDot : 0, 0);
    InvalidateRect(Window(), nullptr, TRUE);
}

void RichTextBox::Attached() {
    // Without this the box takes 64 KB.
    Send(EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
    MeasureLines();
    Watch(Window());
    const RECT bounds = Bounds();
    Move(bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top);
}

void RichTextBox::MeasureLines() {
    // The box knows best how high it makes a line.
    WindowText("1\r\n2");
    POINTL first{};
    POINTL second{};
    Send(EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&first), 0);
    Send(EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&second), Send(EM_LINEINDEX, 1));
    WindowText("");
    RECT text{};
    Send(EM_GETRECT, 0, reinterpret_cast<LPARAM>(&text));
    const RECT bounds = Bounds();
    lineHeight_ = second.y - first.y;
    frameHeight_ = bounds.bottom - bounds.top - (text.bottom - text.top);
}

int RichTextBox::WholeLines(int height) const {
    if (lineHeight_ <= 0 || height < frameHeight_ + lineHeight_)
        return height;
    return height - (height - frameHeight_) % lineHeight_;
}

bool RichTextBox::EndInView() const {
    const LRESULT lastLine = Send(EM_GETLINECOUNT) - 1;
    POINTL at{};
    RECT text{};
    Send(EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&at), Send(EM_LINEINDEX, static_cast<WPARAM>(lastLine)));
    Send(EM_GETRECT, 0, reinterpret_cast<LPARAM>(&text));
    return at.y + lineHeight_ / 2 < text.bottom;
}

void RichTextBox::Append(const std::string& text) {
    const CHARRANGE end{-1, -1};
    const bool follows = EndInView() && !SelectsText();
    CHARRANGE selected{};
    POINT view{};
    Send(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
    Send(EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&view));
    // While it may draw, some versions go through all their lines at every change.
    Send(WM_SETREDRAW, FALSE);
    Send(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&end));
    SendText(EM_REPLACESEL, FALSE, text);
    if (follows) {
        Send(WM_VSCROLL, SB_BOTTOM);
    } else {
        Send(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&selected));
        Send(EM_SETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&view));
    }
    Send(WM_SETREDRAW, TRUE);
    // With the frame, where the scroll bar has appeared meanwhile.
    RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME);
}

RichTextBox::Found RichTextBox::FindNext(const std::string& sought) {
    CHARRANGE selected{};
    Send(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
    const struct {
        LONG from;
        Found result;
    } tries[] = {{selected.cpMax, Found::Further}, {0, Found::FromTheStart}};
    for (const auto& each : tries) {
        FINDTEXTEXA find{{each.from, -1}, sought.c_str(), {}};
        if (Send(EM_FINDTEXTEX, FR_DOWN, reinterpret_cast<LPARAM>(&find)) < 0)
            continue;
        Send(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&find.chrgText));
        Send(EM_SCROLLCARET);
        return each.result;
    }
    return Found::Nowhere;
}

bool RichTextBox::SelectsText() const {
    CHARRANGE selected{};
    Send(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
    return selected.cpMin != selected.cpMax;
}

bool RichTextBox::Message(HWND window, UINT message, WPARAM& wParam, LPARAM lParam) {
    switch (message) {
    case WM_CHAR:
        // Ctrl+C and the keys that move are not characters to the box; all else would only make it beep.
        return true;
    case WM_GETDLGCODE:
        // Only the arrows are the box's own. Tab would not lead out of it otherwise, and Tab into it would
        // select everything.
        return !lParam || wParam < VK_LEFT || wParam > VK_DOWN;
    case WM_LBUTTONUP:
        // The box ends its selecting first, because a menu opened by the click takes the mouse from it.
        PassOn(window, message, wParam, lParam);
        if (!SelectsText())
            Raise(click_);
        return true;
    case WM_WINDOWPOSCHANGING: {
        auto& place = *reinterpret_cast<WINDOWPOS*>(lParam);
        place.cy = WholeLines(place.cy);
        return false;
    }
    case WM_RBUTTONUP: {
        POINT at{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        ClientToScreen(window, &at);
        return OpenMenu(at);
    }
    case WM_CONTEXTMENU: {
        POINT corner{};
        ClientToScreen(window, &corner);
        return OpenMenu(corner);
    }
    default:
        return false;
    }
}

bool RichTextBox::OpenMenu(POINT at) {
    if (!contextMenu_)
        return false;
    Raise([&] { contextMenu_(at); });
    return true;
}

} // namespace gui
