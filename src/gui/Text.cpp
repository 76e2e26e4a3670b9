#include "gui/Text.h"

#include <richedit.h>

namespace gui {

void TextControl::Attached() {
    // A dot, also where the system's edit control would show an asterisk.
    if (GetWindowLongPtrA(Window(), GWL_STYLE) & ES_PASSWORD)
        SendMessageW(Window(), EM_SETPASSWORDCHAR, 0x25CF, 0);
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

void TextControl::SelectAll() {
    Send(EM_SETSEL, 0, -1);
}

int TextControl::Caret() const {
    DWORD end = 0;
    Send(EM_GETSEL, 0, reinterpret_cast<LPARAM>(&end));
    return static_cast<int>(end);
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

void RichTextBox::Attached() {
    // Without this the box takes 64 KB.
    Send(EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
    if (mouseDown_)
        Watch(Window());
}

void RichTextBox::Append(const std::string& text) {
    const CHARRANGE end{-1, -1};
    Send(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&end));
    SendText(EM_REPLACESEL, FALSE, text);
    Send(WM_VSCROLL, SB_BOTTOM);
}

bool RichTextBox::Message(HWND /*window*/, UINT message, WPARAM& /*wParam*/, LPARAM lParam) {
    if (message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN)
        Raise([&] {
            mouseDown_(message == WM_LBUTTONDOWN ? MouseButton::Left : MouseButton::Right,
                       static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
        });
    return false;
}

} // namespace gui
