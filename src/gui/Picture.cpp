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
    whole_.reset();
    IStream* stream =
        SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size()));
    if (stream) {
        // The bitmap keeps the stream as long as it lives.
        bitmap_.reset(Gdiplus::Bitmap::FromStream(stream));
        stream->Release();
    }
    if (bitmap_ && (bitmap_->GetLastStatus() != Gdiplus::Ok || bitmap_->GetWidth() == 0))
        bitmap_.reset();
    InvalidateRect(Window(), nullptr, FALSE);
}

void Picture::Lay(const RECT& whole) {
    whole_ = whole;
    InvalidateRect(Window(), nullptr, FALSE);
}

void Picture::Clear() {
    bitmap_.reset();
    whole_.reset();
    InvalidateRect(Window(), nullptr, FALSE);
}

SIZE Picture::PictureSize() const {
    if (!bitmap_)
        return {};
    return {static_cast<LONG>(bitmap_->GetWidth()), static_cast<LONG>(bitmap_->GetHeight())};
}

void Picture::Draw(const DRAWITEMSTRUCT& item) {
    if (Empty()) {
        RECT area = item.rcItem;
        FillRect(item.hDC, &area, GetSysColorBrush(COLOR_BTNFACE));
        SetBkMode(item.hDC, TRANSPARENT);
        DrawTextA(item.hDC, textWithoutPicture_.c_str(), -1, &area,
                  DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
        return;
    }
    Gdiplus::Graphics graphics(item.hDC);
    // Sharp cells rather than a blur, and the first pixel in the corner rather than half outside.
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    const RECT place = whole_.value_or(item.rcItem);
    graphics.DrawImage(bitmap_.get(), static_cast<int>(place.left), static_cast<int>(place.top),
                       static_cast<int>(place.right - place.left),
                       static_cast<int>(place.bottom - place.top));
    if (GetFocus() == Window())
        DrawFocusRect(item.hDC, &item.rcItem);
}

bool Picture::Key(int virtualKey) {
    if (!keyDown_)
        return false;
    int key = virtualKey;
    keyDown_(key);
    return key == 0;
}

bool Picture::Message(HWND window, UINT message, WPARAM& wParam, LPARAM lParam) {
    const int x = static_cast<short>(LOWORD(lParam));
    const int y = static_cast<short>(HIWORD(lParam));
    if (message == WM_MOUSEMOVE && mouseMove_)
        Raise([&] { mouseMove_(x, y); });
    constexpr std::pair<UINT, MouseButton> kPresses[] = {{WM_LBUTTONDOWN, MouseButton::Left},
                                                         {WM_RBUTTONDOWN, MouseButton::Right},
                                                         {WM_MBUTTONDOWN, MouseButton::Middle}};
    for (const auto& [press, button] : kPresses)
        if (message == press) {
            if (GetWindowLongPtrA(window, GWL_STYLE) & WS_TABSTOP)
                SetFocus();
            if (mouseDown_)
                Raise([&] { mouseDown_(button, x, y); });
        }
    if (message == WM_SETFOCUS || message == WM_KILLFOCUS)
        InvalidateRect(window, nullptr, FALSE);
    if (message == WM_MOUSEWHEEL && wheel_) {
        POINT at{x, y};
        ScreenToClient(window, &at);
        Raise([&] { wheel_(GET_WHEEL_DELTA_WPARAM(wParam) / WHEEL_DELTA, at); });
        return true;
    }
    return false;
}

namespace {

using Region = common::Handle<HRGN, DeleteObject>;

/// What lies between two ellipses in a rectangle of the size: one `outer` pixels within its edge and one
/// `inner` pixels within it.
Region Ring(SIZE size, int outer, int inner) {
    Region ring(CreateEllipticRgn(outer, outer, size.cx - outer + 1, size.cy - outer + 1));
    const Region hole(CreateEllipticRgn(inner, inner, size.cx - inner + 1, size.cy - inner + 1));
    CombineRgn(ring.get(), ring.get(), hole.get(), RGN_DIFF);
    return ring;
}

constexpr int kRingWidth = 4;

} // namespace

void Shape::Attached() {
    Region ring = Ring({Width(), Height()}, 0, kRingWidth);
    // The window owns its region.
    if (SetWindowRgn(Window(), ring.get(), FALSE))
        static_cast<void>(ring.release());
}

void Shape::Draw(const DRAWITEMSTRUCT& item) {
    // Only the ring itself: a static control draws with what its form may draw on, whatever its own region.
    // White on both sides of the red is seen on any ground.
    const SIZE size{Width(), Height()};
    using Brush = common::Handle<HBRUSH, DeleteObject>;
    const Brush red(CreateSolidBrush(RGB(220, 20, 40)));
    FillRgn(item.hDC, Ring(size, 0, kRingWidth).get(), static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    FillRgn(item.hDC, Ring(size, 1, kRingWidth - 1).get(), red.get());
}

} // namespace gui
