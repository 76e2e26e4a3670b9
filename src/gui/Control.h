#pragma once

#include "gui/Form.h"

namespace gui {

using MouseHandler = std::function<void(MouseButton, int, int)>;
using KeyHandler = std::function<void(int&)>;

/// A child window of a form, named by its id in the form's template. While its form is not loaded, setting a
/// property does nothing and reading one gives an empty value.
class Control {
public:
    Control(Form& form, int id);
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    HWND Window() const { return window_; }
    int Id() const { return id_; }
    Form& Parent() const { return form_; }

    bool Enabled() const;
    /// Disabling or hiding the control that has the keyboard focus moves that on to the next one.
    void Enabled(bool enabled);
    bool Visible() const;
    void Visible(bool visible);
    void SetFocus();
    /// A bar to the left of the control, by which a form can mark it.
    bool Marked() const { return mark_ && IsWindowVisible(mark_); }
    void Marked(bool marked);

    /// Position and size in pixels, in the form's client area.
    RECT Bounds() const;
    void Move(int left, int top, int width, int height);

protected:
    std::string WindowText() const;
    void WindowText(const std::string& text);
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    LRESULT SendText(UINT message, WPARAM wParam, const std::string& text) const;
    /// Lets Message see everything that `window` (the control or a part of it) receives. To be called once.
    void Watch(HWND window);
    /// What the watched window does with a message by itself.
    static LRESULT PassOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Raise(const std::function<void()>& event) {
        if (event)
            form_.Raise(event);
    }

private:
    friend class Form;

    /// The window exists now.
    virtual void Attached() {}
    /// Runs Form_Load of the forms inside the control, before that of its own form.
    virtual void LoadInside() {}
    /// Turns over so many pages, round at the ends; false for a control that has none.
    virtual bool TurnPage(int /*by*/) { return false; }
    /// A key that went down in a page of the control; true when it is used up.
    virtual bool PageKey(const MSG& /*message*/) { return false; }
    /// A notification code of the control reached the form.
    virtual void Command(int /*code*/) {}
    virtual bool Notify(const NMHDR& /*header*/, LRESULT& /*result*/) { return false; }
    virtual void Draw(const DRAWITEMSTRUCT& /*item*/) {}
    /// A press inside a control that the mouse reaches the form through; false leaves it to the form.
    virtual bool PressThrough(MouseButton /*button*/, int /*x*/, int /*y*/) { return false; }
    /// A key that went down in the control or a part of it, before the dialog takes Enter, Esc and Tab for
    /// itself; true when it is used up.
    virtual bool Key(int /*virtualKey*/) { return false; }
    /// A message to a watched window; true when it is used up.
    virtual bool Message(HWND /*window*/, UINT /*message*/, WPARAM& /*wParam*/, LPARAM /*lParam*/) {
        return false;
    }
    static LRESULT CALLBACK WatchProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    Form& form_;
    int id_;
    HWND window_ = nullptr;
    HWND mark_ = nullptr;
    bool drawingFailed_ = false;
};

class Label : public Control {
public:
    using Control::Control;
    std::string Caption() const { return WindowText(); }
    void Caption(const std::string& caption);
};

/// A box around controls, with a heading.
class Frame : public Control {
public:
    template <class F, class C = F>
    Frame(F& form, int id, void (C::*mouseDown)(MouseButton, int, int) = nullptr)
        : Control(form, id), mouseDown_(Bind(form, mouseDown)) {}
    std::string Caption() const { return WindowText(); }
    void Caption(const std::string& caption) { WindowText(caption); }

private:
    bool PressThrough(MouseButton button, int x, int y) override;

    MouseHandler mouseDown_;
};

class CommandButton : public Control {
public:
    template <class F, class R = void, class C = F>
    CommandButton(F& form, int id, R (C::*click)() = nullptr)
        : Control(form, id), click_(Bind(form, click)) {}
    std::string Caption() const { return WindowText(); }
    void Caption(const std::string& caption) { WindowText(caption); }
    /// Runs the Click handler, as a press does, when the button is enabled.
    void Press();

private:
    void Command(int code) override;

    std::function<void()> click_;
};

/// A box that is checked (1) or not (0).
class CheckBox : public Control {
public:
    template <class F, class R = void, class C = F>
    CheckBox(F& form, int id, R (C::*click)() = nullptr) : Control(form, id), click_(Bind(form, click)) {}
    int Value() const;
    /// Any value but 0 checks the box. Runs the Click handler, whether or not the value is new.
    void Value(int value);
    std::string Caption() const { return WindowText(); }

private:
    void Command(int code) override;

    std::function<void()> click_;
};

/// One of a group of choices; the group starts at the control that has the WS_GROUP style.
class OptionButton : public Control {
public:
    template <class F, class R = void, class C = F>
    OptionButton(F& form, int id, R (C::*click)() = nullptr) : Control(form, id), click_(Bind(form, click)) {}
    bool Value() const;
    /// True selects this choice, clears the others of its group and runs the Click handler; false only
    /// clears.
    void Value(bool value);
    std::string Caption() const { return WindowText(); }
    void Caption(const std::string& caption) { WindowText(caption); }

private:
    void Command(int code) override;

    std::function<void()> click_;
};

} // namespace gui
