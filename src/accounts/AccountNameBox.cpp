#include "accounts/AccountNameBox.h"

#include "common/Text.h"

void AccountNameBox::Attached() {
    ComboBox::Attached();
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(Window(), &info);
    field_ = info.hwndItem;
    list_ = info.hwndList;
    names_.Clear();
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

void AccountNameBox::FieldText(const std::string& text) {
    offer_.clear();
    completing_ = true;
    WindowText(text);
    completing_ = false;
}

void AccountNameBox::Shown(int index) {
    shown_ = index;
    Send(CB_SETCURSEL, static_cast<WPARAM>(index));
    Text(index < 0 ? std::string() : names_.At(index));
}

void AccountNameBox::AddItem(const std::string& name) {
    // Through the box itself it would take twenty times as long: seconds for 100,000 names.
    SendMessageA(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    names_.Add(name);
}

void AccountNameBox::Fill(int count, const std::function<void()>& fill) {
    SendMessageA(list_, WM_SETREDRAW, FALSE, 0);
    ComboBox::Fill(count, fill);
    SendMessageA(list_, WM_SETREDRAW, TRUE, 0);
}

void AccountNameBox::Rename(int index, const std::string& name) {
    if (names_.At(index) == name)
        return;
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
    ComboBox::RemoveItem(index);
    names_.Remove(index);
    if (shown_ >= index)
        shown_ = shown_ == index ? -1 : shown_ - 1;
}

void AccountNameBox::Clear() {
    ComboBox::Clear();
    names_.Clear();
    Shown(-1);
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
        if (!offer_.empty() && ListIndex() >= 0 && common::EqualsIgnoreCase(names_.At(ListIndex()), offer_))
            TakeAsSearch();
        Raise(click_);
    } else if (code == CBN_EDITCHANGE && !completing_) {
        Complete();
        Raise(change_);
    } else if (code == CBN_KILLFOCUS && Offers()) {
        FieldText(typed_);
    }
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
    // What was typed was a search, not a new name of the account that is shown.
    TakeAsSearch();
    ListIndex(index);
    return true;
}
