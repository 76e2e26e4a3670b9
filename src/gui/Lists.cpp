#include "gui/Lists.h"

namespace gui {

namespace {

// Room for so many bytes of text an entry; the list makes more itself when they are longer.
constexpr LPARAM kExpectedEntrySize = 32;

} // namespace

int ListControl::ListCount() const {
    return static_cast<int>(Send(messages_.count));
}

int ListControl::ListIndex() const {
    return Window() ? static_cast<int>(Send(messages_.getIndex)) : -1;
}

void ListControl::ListIndex(int index) {
    Send(messages_.setIndex, static_cast<WPARAM>(index >= 0 && index < ListCount() ? index : -1));
    Raise(click_);
}

std::string ListControl::List(int index) const {
    const LRESULT length = Send(messages_.textLength, static_cast<WPARAM>(index));
    if (length < 0)
        return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    const LRESULT read =
        Send(messages_.text, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.resize(read < 0 ? 0 : static_cast<std::size_t>(read));
    return text;
}

void ListControl::AddItem(const std::string& text) {
    SendText(messages_.add, 0, text);
}
void ListControl::RemoveItem(int index) {
    Send(messages_.remove, static_cast<WPARAM>(index));
}
void ListControl::Clear() {
    Send(messages_.clear);
}

int ListControl::IndexOf(const std::string& text) const {
    // The platform's own search ignores letter case.
    for (int index = 0; index < ListCount(); ++index)
        if (List(index) == text)
            return index;
    return -1;
}

void ListControl::Fill(int count, const std::function<void()>& fill) {
    Send(WM_SETREDRAW, FALSE);
    Send(messages_.reserve, static_cast<WPARAM>(count), count * kExpectedEntrySize);
    fill();
    Send(WM_SETREDRAW, TRUE);
    InvalidateRect(Window(), nullptr, TRUE);
}

const ListControl::Messages ListBox::kMessages{
    LB_GETCOUNT,  LB_GETCURSEL,    LB_SETCURSEL,    LB_GETTEXTLEN,  LB_GETTEXT,
    LB_ADDSTRING, LB_DELETESTRING, LB_RESETCONTENT, LB_INITSTORAGE,
};

void ListBox::Command(int code) {
    if (code == LBN_SELCHANGE)
        Raise(click_);
    else if (code == LBN_DBLCLK)
        Raise(dblClick_);
}

const ListControl::Messages ComboBox::kMessages{
    CB_GETCOUNT,  CB_GETCURSEL,    CB_SETCURSEL,    CB_GETLBTEXTLEN, CB_GETLBTEXT,
    CB_ADDSTRING, CB_DELETESTRING, CB_RESETCONTENT, CB_INITSTORAGE,
};

void ComboBox::Attached() {
    Watch(Window());
    if (!keyPress_)
        return;
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    // A list without a field names itself or nothing here, as the system's version has it.
    if (GetComboBoxInfo(Window(), &info) && info.hwndItem && info.hwndItem != Window())
        Watch(info.hwndItem);
}

void ComboBox::Command(int code) {
    if (code == CBN_SELCHANGE)
        Raise(click_);
    else if (code == CBN_EDITCHANGE)
        Raise(change_);
}

bool ComboBox::Message(HWND /*window*/, UINT message, WPARAM& wParam, LPARAM /*lParam*/) {
    // Whoever turns the wheel over a closed list wants to see more of the window, not to choose in passing.
    if (message == WM_MOUSEWHEEL)
        return !Open();
    if (message != WM_CHAR || !keyPress_)
        return false;
    int key = static_cast<int>(wParam);
    Raise([&] { keyPress_(key); });
    wParam = static_cast<WPARAM>(key);
    return key == 0;
}

} // namespace gui
