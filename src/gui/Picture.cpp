#include "gui/Picture.h"

#include "common/Files.h"
#include "common/Handle.h"

#include <objidl.h>
#include <shlwapi.h>

#include <algorithm>
// GDI+ headers call min and max unqualified.
namespace Gdiplus {
using std::max; // NOLINT(misc-unused-using-decls)
using std::min; // NOLINT(misc-unused-using-decls)
} // namespace Gdiplus
#include <gdiplus.h>

namespace gui {

namespace {

/// GDI+ runs from the first picture to the end of the program.
void StartGdiPlus() {
    static const ULONG_PTR token = [] {
        ULONG_PTR started = 0;
        const Gdiplus::GdiplusStartupInput input;
        Gdiplus::GdiplusStartup(&started, &input, nullptr);
        return started;
    }();
    static_cast<void>(token);
}

} // namespace

Picture::Picture(Form& form, int id, MouseHandler mouseDown, std::function<void(int, int)> mouseMove)
    : Control(form, id), mouseDown_(std::move(mouseDown)), mouseMove_(std::move(mouseMove)) {
    StartGdiPlus();
}

Picture::~Picture() = default;

void Picture::Attached() {
    Watch(Window());
}

void Picture::Load(const std::string& path) {
    const std::string bytes = common::ReadFileText(path);
    bitmap_.reset();
    IStream* stream =
        SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size()));
    if (stream) {
        // The bitmap keeps the stream as long as it lives.
        bitmap_.reset(Gdiplus::Bitmap::FromStream(stream));
        stream->Release();
    }
    if (bitmap_ && (bitmap_->GetLastStatus() != Gdiplus::Ok || bitmap_->GetWidth() == 0))
        bitmap_.reset();
    Visible(!Empty());
    InvalidateRect(Window(), nullptr, FALSE);
}

void Picture::Clear() {
    bitmap_.reset();
    Visible(false);
}

SIZE Picture::PictureSize() const {
    if (!bitmap_)
        return {};
    return {static_cast<LONG>(bitmap_->GetWidth()), static_cast<LONG>(bitmap_->GetHeight())};
}

void Picture::Draw(const DRAWITEMSTRUCT& item) {
    const int width = item.rcItem.right - item.rcItem.left;
    const int height = item.rcItem.bottom - item.rcItem.top;
    const common::Handle<HDC, DeleteDC> memory(CreateCompatibleDC(item.hDC));
    const common::Handle<HBITMAP, DeleteObject> surface(CreateCompatibleBitmap(item.hDC, width, height));
    const HGDIOBJ before = SelectObject(memory.get(), surface.get());
    {
        Gdiplus::Graphics graphics(memory.get());
        graphics.Clear(Gdiplus::Color(255, 255, 255));
        // Sharp cells rather than a blur, and the first pixel in the corner rather than half outside.
        graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
        graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
        if (bitmap_)
            graphics.DrawImage(bitmap_.get(), 0, 0, width, height);
    }
    if (shape_ && shape_->Visible())
        shape_->Draw(memory.get());
    BitBlt(item.hDC, item.rcItem.left, item.rcItem.top, width, height, memory.get(), 0, 0, SRCCOPY);
    SelectObject(memory.get(), before);
}

bool Picture::Message(HWND /*window*/, UINT message, WPARAM& /*wParam*/, LPARAM lParam) {
    const int x = static_cast<short>(LOWORD(lParam));
    const int y = static_cast<short>(HIWORD(lParam));
    if (message == WM_MOUSEMOVE && mouseMove_)
        Raise([&] { mouseMove_(x, y); });
    if ((message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN) && mouseDown_)
        Raise([&] { mouseDown_(message == WM_LBUTTONDOWN ? MouseButton::Left : MouseButton::Right, x, y); });
    return false;
}

Shape::Shape(Picture& picture, int diameter) : picture_(picture), diameter_(diameter) {
    picture.shape_ = this;
}

void Shape::Move(int left, int top) {
    left_ = left;
    top_ = top;
    Redraw();
}

void Shape::Visible(bool visible) {
    visible_ = visible;
    Redraw();
}

void Shape::Redraw() const {
    InvalidateRect(picture_.Window(), nullptr, FALSE);
}

void Shape::Draw(HDC context) const {
    const RECT bounds = picture_.Bounds();
    const int left = left_ - bounds.left;
    const int top = top_ - bounds.top;
    Gdiplus::Graphics graphics(context);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    // White around red is seen on any ground.
    const Gdiplus::Pen halo(Gdiplus::Color(255, 255, 255), 4);
    const Gdiplus::Pen ring(Gdiplus::Color(220, 20, 40), 2);
    graphics.DrawEllipse(&halo, left + 1, top + 1, diameter_ - 3, diameter_ - 3);
    graphics.DrawEllipse(&ring, left + 1, top + 1, diameter_ - 3, diameter_ - 3);
}

} // namespace gui
