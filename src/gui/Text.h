#pragma once

#include "gui/Control.h"

namespace gui {

/// What boxes to type in share.
class TextControl : public Control {
public:
    std::string Text() const { return WindowText(); }

protected:
    TextControl(Form& form, int id, KeyHandler keyPress)
        : Control(form, id), keyPress_(std::move(keyPress)) {}
    void Attached() override;
    bool Message(HWND window, UINT message, WPARAM& wParam, LPARAM lParam) override;

private:
    KeyHandler keyPress_;
};

/// A box to type in. KeyPress gets each character before the box does; a handler that sets it to 0 swallows
/// it.
class TextBox : public TextControl {
public:
    template <class F, class C = F>
    TextBox(F& form, int id, void (C::*change)() = nullptr, void (C::*keyPress)(int&) = nullptr)
        : TextControl(form, id, Bind(form, keyPress)), change_(Bind(form, change)) {}
    template <class F, class C>
    TextBox(F& form, int id, void (C::*keyPress)(int&)) : TextControl(form, id, Bind(form, keyPress)) {}
    using TextControl::Text;
    /// Runs the Change handler, as typing does.
    void Text(const std::string& text);
    /// The button that Enter presses in this box, in the place of the window's own.
    void Enter(CommandButton& button) { enter_ = &button; }
    /// A dot stands for each character.
    void Hidden(bool hidden);

private:
    void Command(int code) override;
    bool Key(int virtualKey) override;

    CommandButton* enter_ = nullptr;
    std::function<void()> change_;
};

/// A read-only box for text that grows without a limit. Text in it can be selected with the mouse and copied;
/// every other key press is swallowed. Its height is cut to whole lines, so that none is seen in halves.
class RichTextBox : public TextControl {
public:
    /// `click`: a press and release of the left button that selects nothing. `contextMenu`: the right button,
    /// Shift+F10 or the menu key; it is told where on the screen its menu belongs.
    template <class F, class R = void, class C = F>
    RichTextBox(F& form, int id, R (C::*click)() = nullptr, void (C::*contextMenu)(POINT) = nullptr)
        : TextControl(form, id, {}), click_(Bind(form, click)), contextMenu_(Bind(form, contextMenu)) {}
    using TextControl::Text;
    void Text(const std::string& text) { WindowText(text); }
    /// Puts text behind what is there; costs what the new text costs. The end comes into sight, with the
    /// caret there, unless the reader has scrolled up or selected something: then the view stays as it is.
    void Append(const std::string& text);
    /// Whether the last line is in sight.
    bool EndInView() const;

    enum class Found { Nowhere, FromTheStart, Further };
    /// Selects the next place of the text, letter case aside, behind what is selected, and brings it into
    /// sight. Behind the last place the first one comes again.
    Found FindNext(const std::string& sought);

private:
    void Attached() override;
    bool Message(HWND window, UINT message, WPARAM& wParam, LPARAM lParam) override;
    bool SelectsText() const;
    bool OpenMenu(POINT at);
    void MeasureLines();
    int WholeLines(int height) const;

    std::function<void()> click_;
    std::function<void(POINT)> contextMenu_;
    int lineHeight_ = 0;
    int frameHeight_ = 0;
};

} // namespace gui
