#include "accounts/AccountNameBox.h"

#include "common/Text.h"
#include "gui/Form.h"
#include "gui/TaskWaits.h"

#include <algorithm>

void AccountNameBox::Attached() {
    Watch(Window());
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(Window(), &info);
    field_ = info.hwndItem;
    list_ = info.hwndList;
    names_.Clear();
    listed_ = 0;
    listing_ = false;
    shown_ = -1;
    typed_.clear();
    offer_.clear();
}

std::string AccountNameBox::Text() const {
    return Offers() ? typed_ : WindowText();
}

void AccountNameBox::Text(const std::string& text) {
    FieldText(text);
    typed_ = text;
}

std::string AccountNameBox::Edited() const {
    const int chosen = ListIndex();
    const bool isSearch = chosen >= 0 && shown_ >= 0 && !common::Trim(typed_).empty() &&
                          names_.At(chosen).size() >= typed_.size() &&
                          common::EqualsIgnoreCase(names_.At(chosen).substr(0, typed_.size()), typed_);
    return isSearch ? names_.At(shown_) : typed_;
}

int AccountNameBox::ListIndex() const {
    return Window() ? static_cast<int>(Send(CB_GETCURSEL)) : -1;
}

void AccountNameBox::ListIndex(int index) {
    ListUpTo(index + 1);
    Send(CB_SETCURSEL, static_cast<WPARAM>(index < ListCount() ? index : -1));
    Raise(click_);
}

void AccountNameBox::FieldText(const std::string& text) {
    offer_.clear();
    // A name that was just chosen stands there already, and drawing it again takes longer than all else.
    if (WindowText() == text) {
        SendMessageA(field_, EM_SETSEL, 0, 0);
        return;
    }
    completing_ = true;
    WindowText(text);
    completing_ = false;
}

void AccountNameBox::Shown(int index) {
    shown_ = index;
    ListUpTo(index + 1);
    if (ListIndex() != index)
        Send(CB_SETCURSEL, static_cast<WPARAM>(index));
    Text(index < 0 ? std::string() : names_.At(index));
}

void AccountNameBox::AddItem(const std::string& name) {
    names_.Add(name);
}

void AccountNameBox::Fill(int count, const std::function<void()>& fill) {
    // Room for so many bytes of text an entry; the list makes more itself when they are longer.
    constexpr LPARAM kExpectedEntrySize = 32;
    Send(CB_RESETCONTENT);
    names_.Clear();
    names_.Expect(count);
    listed_ = 0;
    Shown(-1);
    Send(CB_INITSTORAGE, static_cast<WPARAM>(count), count * kExpectedEntrySize);
    fill();
    if (!std::exchange(listing_, true))
        Parent().Start(ListInTurns());
}

/// Has at least so many names in the list control, as far as there are that many.
void AccountNameBox::ListUpTo(int count) {
    count = std::min(count, names_.Count());
    if (listed_ >= count)
        return;
    SendMessageA(list_, WM_SETREDRAW, FALSE, 0);
    // Through the box itself it would take twenty times as long: seconds for 100,000 names.
    for (; listed_ < count; ++listed_)
        SendMessageA(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(names_.At(listed_).c_str()));
    SendMessageA(list_, WM_SETREDRAW, TRUE, 0);
}

gui::Task<> AccountNameBox::ListInTurns() {
    constexpr int kAtOnce = 500;
    while (listed_ < names_.Count()) {
        ListUpTo(listed_ + kAtOnce);
        names_.Prepare(listed_);
        co_await gui::NextTurn();
    }
    listing_ = false;
}

void AccountNameBox::Rename(int index, const std::string& name) {
    if (names_.At(index) == name)
        return;
    ListUpTo(index + 1);
    // Taking an entry away takes the text of the field away too.
    const int selected = ListIndex();
    const std::string field = WindowText();
    Send(CB_DELETESTRING, static_cast<WPARAM>(index));
    SendText(CB_INSERTSTRING, static_cast<WPARAM>(index), name);
    names_.Set(index, name);
    Send(CB_SETCURSEL, static_cast<WPARAM>(selected));
    FieldText(field);
}

void AccountNameBox::RemoveItem(int index) {
    ListUpTo(index + 1);
    Send(CB_DELETESTRING, static_cast<WPARAM>(index));
    --listed_;
    names_.Remove(index);
    if (shown_ >= index)
        shown_ = shown_ == index ? -1 : shown_ - 1;
}

bool AccountNameBox::Offers() const {
    DWORD from = 0;
    DWORD to = 0;
    if (offer_.empty() || WindowText() != offer_)
        return false;
    SendMessageA(field_, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    return from == typed_.size() && to == offer_.size();
}

void AccountNameBox::Complete() {
    const std::string before = typed_;
    typed_ = WindowText();
    offer_.clear();
    DWORD caret = 0;
    SendMessageA(field_, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
    // Only text that grows at its end is completed, or nothing could ever be deleted.
    const bool grows = typed_.size() > before.size() && typed_.starts_with(before) && caret == typed_.size();
    if (!grows || names_.IndexOf(typed_) >= 0)
        return;
    const int match = names_.FindPrefix(typed_);
    if (match < 0 || names_.At(match).size() == typed_.size())
        return;
    const std::string offer = typed_ + names_.At(match).substr(typed_.size());
    FieldText(offer);
    offer_ = offer;
    SendMessageA(field_, EM_SETSEL, typed_.size(), static_cast<LPARAM>(offer.size()));
}

void AccountNameBox::Command(int code) {
    if (code == CBN_SELCHANGE) {
        Raise(click_);
    } else if (code == CBN_DROPDOWN) {
        ListUpTo(ListCount());
    } else if (code == CBN_EDITCHANGE && !completing_) {
        Complete();
        Raise(change_);
    } else if (code == CBN_KILLFOCUS && Offers()) {
        FieldText(typed_);
    }
}

bool AccountNameBox::Message(HWND /*window*/, UINT message, WPARAM& /*wParam*/, LPARAM /*lParam*/) {
    // As for every list that drops down: the wheel over a closed one chooses nothing.
    return message == WM_MOUSEWHEEL && !Send(CB_GETDROPPEDSTATE);
}

bool AccountNameBox::Key(int virtualKey) {
    if (virtualKey != VK_RETURN || Send(CB_GETDROPPEDSTATE))
        return false;
    const int exact = names_.IndexOf(Text());
    const int index = exact >= 0 ? exact : names_.FindPrefix(Offers() ? offer_ : Text());
    if (index < 0) {
        MessageBeep(MB_OK);
        return true;
    }
    // In any case a search: the entry that was found begins with the text.
    ListIndex(index);
    return true;
}
