#pragma once

#include "gui/Control.h"

namespace gui {

/// What the two kinds of list share, told apart by the platform's message numbers.
class ListControl : public Control {
public:
    int ListCount() const;
    /// The selected entry, counted from 0; -1 for none.
    int ListIndex() const;
    /// Selects an entry (-1 for none; an index that the list does not have selects none) and runs the Click
    /// handler, as choosing it does.
    void ListIndex(int index);
    std::string List(int index) const;
    void AddItem(const std::string& text);
    void RemoveItem(int index);
    void Clear();
    /// First entry equal to `text` to the letter, -1 when there is none.
    int IndexOf(const std::string& text) const;
    /// Makes room for so many entries at once; the list is not drawn until `fill` has returned.
    void Fill(int count, const std::function<void()>& fill);

protected:
    struct Messages {
        UINT count, getIndex, setIndex, textLength, text, add, remove, clear, reserve;
    };
    ListControl(Form& form, int id, const Messages& messages, std::function<void()> click)
        : Control(form, id), click_(std::move(click)), messages_(messages) {}

    std::function<void()> click_;

private:
    const Messages& messages_;
};

class ListBox : public ListControl {
public:
    template <class F, class R = void, class C = F, class D = void>
    ListBox(F& form, int id, R (C::*click)() = nullptr, D (C::*dblClick)() = nullptr)
        : ListControl(form, id, kMessages, Bind(form, click)), dblClick_(Bind(form, dblClick)) {}

private:
    void Command(int code) override;

    static const Messages kMessages;
    std::function<void()> dblClick_;
};

/// A list that drops down, with or without a text field (the template's style says which). The mouse wheel
/// turns it only while it is open.
class ComboBox : public ListControl {
public:
    template <class F, class R = void, class C = F>
    ComboBox(F& form, int id, R (C::*click)() = nullptr, void (C::*change)() = nullptr,
             void (C::*keyPress)(int&) = nullptr)
        : ListControl(form, id, kMessages, Bind(form, click)), change_(Bind(form, change)),
          keyPress_(Bind(form, keyPress)) {}
    /// With a KeyPress handler alone, called for each character before the list takes it.
    template <class F, class C>
    ComboBox(F& form, int id, void (C::*keyPress)(int&))
        : ListControl(form, id, kMessages, {}), keyPress_(Bind(form, keyPress)) {}
    std::string Text() const { return WindowText(); }
    /// Whether the list is dropped down.
    bool Open() const { return Send(CB_GETDROPPEDSTATE) != 0; }
    /// Text of the field; does not run Change.
    void Text(const std::string& text) { WindowText(text); }

protected:
    void Attached() override;

private:
    void Command(int code) override;
    bool Message(HWND window, UINT message, WPARAM& wParam, LPARAM lParam) override;

    static const Messages kMessages;
    std::function<void()> change_;
    KeyHandler keyPress_;
};

} // namespace gui
