#include "config/TrafficGraph.h"

#include "common/Handle.h"
#include "common/Numbers.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace config {

namespace {

using Pen = common::Handle<HPEN, DeleteObject>;
using Brush = common::Handle<HBRUSH, DeleteObject>;

constexpr std::size_t kSeconds = 120;
constexpr int kGridColumns = 4;
constexpr int kGridRows = 3;
constexpr int kTextMargin = 4;
// So that single packets on a quiet line do not look like a storm.
constexpr double kLowestScale = 10;

/// `share` hundredths of the way from one colour to another.
COLORREF Mixed(COLORREF from, COLORREF to, int share) {
    const auto part = [share](int a, int b) { return a + (b - a) * share / 100; };
    return RGB(part(GetRValue(from), GetRValue(to)), part(GetGValue(from), GetGValue(to)),
               part(GetBValue(from), GetBValue(to)));
}

/// The colours of the operator's Windows, which may be a light or a dark one.
struct Colours {
    COLORREF paper = GetSysColor(COLOR_WINDOW);
    COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    COLORREF edge = Mixed(paper, text, 40);
    COLORREF grid = Mixed(paper, text, 12);
    bool isDark = GetRValue(paper) + GetGValue(paper) + GetBValue(paper) < 3 * 128;
    COLORREF download = isDark ? RGB(110, 190, 255) : RGB(30, 100, 180);
    COLORREF upload = isDark ? RGB(255, 175, 70) : RGB(200, 100, 20);
    COLORREF downloadFill = Mixed(paper, download, 18);
};

/// Everything that is drawn is drawn here, in the coordinates of the control.
class Canvas {
public:
    Canvas(HDC context, SIZE size, const Colours& colours)
        : context_(context), size_(size), colours_(colours) {}

    void Ground() {
        RECT area{0, 0, size_.cx, size_.cy};
        FillRect(context_, &area, Brush(CreateSolidBrush(colours_.paper)).get());
        const auto pen = Use(colours_.grid);
        for (int i = 1; i < kGridColumns; ++i)
            Line({size_.cx * i / kGridColumns, 0}, {size_.cx * i / kGridColumns, size_.cy});
        for (int i = 1; i < kGridRows; ++i)
            Line({0, size_.cy * i / kGridRows}, {size_.cx, size_.cy * i / kGridRows});
    }

    void Edge() {
        RECT area{0, 0, size_.cx, size_.cy};
        FrameRect(context_, &area, Brush(CreateSolidBrush(colours_.edge)).get());
    }

    void Curve(const std::vector<POINT>& points, COLORREF colour) {
        const auto pen = Use(colour);
        Polyline(context_, points.data(), static_cast<int>(points.size()));
    }

    void Area(std::vector<POINT> points, COLORREF colour) {
        points.push_back({points.back().x, size_.cy});
        points.push_back({points.front().x, size_.cy});
        const auto pen = Use(colour);
        const Brush brush(CreateSolidBrush(colour));
        const HGDIOBJ before = SelectObject(context_, brush.get());
        Polygon(context_, points.data(), static_cast<int>(points.size()));
        SelectObject(context_, before);
    }

    /// Returns the right end of the text.
    int Text(const std::string& text, UINT format, COLORREF colour, int left = kTextMargin) {
        RECT area{left, 2, size_.cx - kTextMargin, size_.cy};
        SetTextColor(context_, colour);
        DrawTextA(context_, text.c_str(), -1, &area, format | DT_SINGLELINE | DT_NOPREFIX);
        DrawTextA(context_, text.c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
        return area.right;
    }

private:
    struct Selected {
        Selected(HDC dc, COLORREF colour)
            : context(dc), pen(CreatePen(PS_SOLID, 1, colour)), before(SelectObject(dc, pen.get())) {}
        ~Selected() { SelectObject(context, before); }
        Selected(const Selected&) = delete;
        Selected& operator=(const Selected&) = delete;
        HDC context;
        Pen pen;
        HGDIOBJ before;
    };

    Selected Use(COLORREF colour) const { return Selected(context_, colour); }

    void Line(POINT from, POINT to) {
        const POINT points[] = {from, to};
        Polyline(context_, points, 2);
    }

    HDC context_;
    SIZE size_;
    const Colours& colours_;
};

/// The curve of one direction. A counter that was reset gives a negative speed; it is drawn as none.
std::vector<POINT> Points(const std::deque<Traffic>& speeds, double Traffic::*direction, double scale,
                          SIZE size) {
    std::vector<POINT> points;
    auto second = static_cast<long>(kSeconds - speeds.size());
    for (const Traffic& speed : speeds) {
        const double height = std::max(0.0, speed.*direction) / scale * static_cast<double>(size.cy - 2);
        points.push_back({second++ * (size.cx - 1) / static_cast<long>(kSeconds - 1),
                          size.cy - 2 - static_cast<long>(std::lround(height))});
    }
    return points;
}

void DrawGraph(HDC context, const std::deque<Traffic>& speeds, SIZE size, const Colours& colours) {
    Canvas canvas(context, size, colours);
    double highest = 0;
    for (const Traffic& speed : speeds)
        highest = std::max({highest, speed.received, speed.sent});
    const double scale = GraphScale(highest);
    canvas.Ground();
    if (!speeds.empty()) {
        const auto download = Points(speeds, &Traffic::received, scale, size);
        canvas.Area(download, colours.downloadFill);
        canvas.Curve(download, colours.download);
        canvas.Curve(Points(speeds, &Traffic::sent, scale, size), colours.upload);
    }
    const int end = canvas.Text("Download", DT_LEFT, colours.download);
    canvas.Text("Upload", DT_LEFT, colours.upload, end + 2 * kTextMargin);
    canvas.Text(common::ThousandsText(scale) + " kb/s", DT_RIGHT, colours.text);
    canvas.Edge();
}

} // namespace

double GraphScale(double highest) {
    double scale = kLowestScale;
    // 10, 20, 50, 100, ...
    for (const double steps[] = {2, 2.5, 2}; scale < highest;)
        for (const double step : steps)
            if (scale < highest)
                scale *= step;
    return scale;
}

bool TrafficGraph::Message(HWND window, UINT message, WPARAM& /*wParam*/, LPARAM /*lParam*/) {
    if (message == WM_SETFOCUS || message == WM_KILLFOCUS)
        InvalidateRect(window, nullptr, FALSE);
    return false;
}

void TrafficGraph::Add(const Traffic& speed) {
    speeds_.push_back(speed);
    if (speeds_.size() > kSeconds)
        speeds_.pop_front();
    if (Window())
        InvalidateRect(Window(), nullptr, FALSE);
}

void TrafficGraph::Draw(const DRAWITEMSTRUCT& item) {
    // Drawn beside the screen first, so that nothing flickers at the tick.
    const SIZE size{item.rcItem.right - item.rcItem.left, item.rcItem.bottom - item.rcItem.top};
    const common::Handle<HDC, DeleteDC> memory(CreateCompatibleDC(item.hDC));
    const common::Handle<HBITMAP, DeleteObject> surface(CreateCompatibleBitmap(item.hDC, size.cx, size.cy));
    const HGDIOBJ before = SelectObject(memory.get(), surface.get());
    const HGDIOBJ fontBefore = SelectObject(memory.get(), reinterpret_cast<HFONT>(Send(WM_GETFONT)));
    SetBkMode(memory.get(), TRANSPARENT);
    const Colours colours;
    DrawGraph(memory.get(), speeds_, size, colours);
    if (GetFocus() == Window()) {
        const RECT frame{1, 1, size.cx - 1, size.cy - 1};
        SetTextColor(memory.get(), colours.text);
        DrawFocusRect(memory.get(), &frame);
    }
    BitBlt(item.hDC, item.rcItem.left, item.rcItem.top, size.cx, size.cy, memory.get(), 0, 0, SRCCOPY);
    SelectObject(memory.get(), fontBefore);
    SelectObject(memory.get(), before);
}

} // namespace config
