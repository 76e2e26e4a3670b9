#pragma once

#include "gui/Control.h"

#include <optional>

namespace Gdiplus {
class Bitmap;
}

namespace gui {

/// Shows a GIF picture, scaled to the control with sharp edges, or a text where there is none. The template
/// gives it SS_OWNERDRAW, SS_NOTIFY and WS_CLIPSIBLINGS. With WS_TABSTOP it takes the keyboard, also by a
/// press.
class Picture : public Control {
public:
    template <class F, class C = F>
    Picture(F& form, int id, void (C::*mouseDown)(MouseButton, int, int) = nullptr,
            void (C::*mouseMove)(int, int) = nullptr)
        : Picture(form, id, Bind(form, mouseDown), Bind(form, mouseMove)) {}
    /// `keyDown` gets each key that goes down here and sets the ones that it uses to 0; `wheel` the notches
    /// that the wheel was turned away from the user, and where.
    template <class F, class C = F>
    Picture(F& form, int id, void (C::*mouseDown)(MouseButton, int, int), void (C::*mouseMove)(int, int),
            void (C::*keyDown)(int&), void (C::*wheel)(int, POINT))
        : Picture(form, id, Bind(form, mouseDown), Bind(form, mouseMove)) {
        keyDown_ = Bind(form, keyDown);
        wheel_ = Bind(form, wheel);
    }
    ~Picture() override;

    /// Shows the picture in the file; a file that is no picture shows none. Raises the file error when the
    /// file cannot be read. The file is not held open.
    void Load(const std::string& path);
    /// Shows no picture.
    void Clear();
    /// Where the whole picture lies, in the control's coordinates; the control shows what is inside of it. A
    /// new picture fills the control.
    void Lay(const RECT& whole);
    /// What is seen in the middle while there is no picture.
    void TextWithoutPicture(const std::string& text) { textWithoutPicture_ = text; }
    bool Empty() const { return !bitmap_; }
    /// Size of the picture itself, in its own pixels; 0 by 0 when there is none.
    SIZE PictureSize() const;

private:
    Picture(Form& form, int id, MouseHandler mouseDown, std::function<void(int, int)> mouseMove);
    void Attached() override;
    void Draw(const DRAWITEMSTRUCT& item) override;
    bool Key(int virtualKey) override;
    bool Message(HWND window, UINT message, WPARAM& wParam, LPARAM lParam) override;

    KeyHandler keyDown_;
    std::function<void(int, POINT)> wheel_;
    std::optional<RECT> whole_;
    MouseHandler mouseDown_;
    std::function<void(int, int)> mouseMove_;
    std::unique_ptr<Gdiplus::Bitmap> bitmap_;
    std::string textWithoutPicture_;
};

/// A ring that marks a spot: a window of the ring's form, so that it is seen over the edge of a picture too.
/// What is inside the ring, and a click on the ring itself, belong to what lies under it. The template gives
/// it SS_OWNERDRAW, its size, and a place before the controls that it may cover.
class Shape : public Control {
public:
    using Control::Control;

    int Left() const { return Bounds().left; }
    int Top() const { return Bounds().top; }
    int Width() const { return Bounds().right - Bounds().left; }
    int Height() const { return Bounds().bottom - Bounds().top; }
    using Control::Move;
    void Move(int left, int top) { Move(left, top, Width(), Height()); }

private:
    void Attached() override;
    void Draw(const DRAWITEMSTRUCT& item) override;
};

} // namespace gui
