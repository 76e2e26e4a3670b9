#pragma once

#include "gui/Control.h"

namespace Gdiplus {
class Bitmap;
}

namespace gui {

class Shape;

/// Shows a GIF picture, scaled to the control with sharp edges. The template gives it SS_OWNERDRAW.
class Picture : public Control {
public:
    template <class F, class C = F>
    Picture(F& form, int id, void (C::*mouseDown)(MouseButton, int, int) = nullptr,
            void (C::*mouseMove)(int, int) = nullptr)
        : Picture(form, id, Bind(form, mouseDown), Bind(form, mouseMove)) {}
    ~Picture() override;

    /// Shows the picture in the file; a file that is no picture shows none. Raises the file error when the
    /// file cannot be read. The file is not held open.
    void Load(const std::string& path);
    /// Shows nothing and is hidden, so that what lies under it is seen.
    void Clear();
    bool Empty() const { return !bitmap_; }
    /// Size of the picture itself, in its own pixels; 0 by 0 when there is none.
    SIZE PictureSize() const;

private:
    friend class Shape;
    Picture(Form& form, int id, MouseHandler mouseDown, std::function<void(int, int)> mouseMove);
    void Attached() override;
    void Draw(const DRAWITEMSTRUCT& item) override;
    bool Message(HWND window, UINT message, WPARAM& wParam, LPARAM lParam) override;

    MouseHandler mouseDown_;
    std::function<void(int, int)> mouseMove_;
    std::unique_ptr<Gdiplus::Bitmap> bitmap_;
    Shape* shape_ = nullptr;
};

/// A ring drawn over a picture to mark a spot. Positions are those of its top-left corner, in pixels of the
/// form's client area, like the bounds of controls.
class Shape {
public:
    Shape(Picture& picture, int diameter);
    Shape(const Shape&) = delete;
    Shape& operator=(const Shape&) = delete;

    int Left() const { return left_; }
    int Top() const { return top_; }
    int Width() const { return diameter_; }
    int Height() const { return diameter_; }
    void Move(int left, int top);
    bool Visible() const { return visible_; }
    void Visible(bool visible);

private:
    friend class Picture;
    void Draw(HDC context) const;
    void Redraw() const;

    Picture& picture_;
    int diameter_;
    int left_ = 0;
    int top_ = 0;
    bool visible_ = true;
};

} // namespace gui
