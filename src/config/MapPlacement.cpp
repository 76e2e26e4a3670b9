#include "config/MapPlacement.h"

#include "common/Numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace config {

namespace {

using Limits = std::numeric_limits<std::int16_t>;

std::int16_t Clamped(double value) {
    return static_cast<std::int16_t>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

} // namespace

std::int16_t CoordinateOf(std::string_view text) {
    return Clamped(std::nearbyint(common::Val(text)));
}

Cell CellAt(POINT point, SIZE picture, Cell highest) {
    if (picture.cx <= 0 || picture.cy <= 0)
        return {};
    const double right = static_cast<double>(point.x) / picture.cx;
    const double up = static_cast<double>(picture.cy - point.y) / picture.cy;
    return {Clamped(std::floor(right * highest.x)), Clamped(std::floor(up * highest.y))};
}

POINT PointOf(double x, double y, const RECT& bounds, Cell highest) {
    if (highest.x == 0 || highest.y == 0)
        return {bounds.left, bounds.top};
    const double left = bounds.left + x / highest.x * (bounds.right - bounds.left);
    const double top = bounds.bottom - y / highest.y * (bounds.bottom - bounds.top);
    return {Clamped(std::nearbyint(left)), Clamped(std::nearbyint(top))};
}

namespace {

/// Moved as little as makes it cover the window.
RECT Covering(RECT picture, const RECT& window) {
    const LONG right = std::min(0L, window.left - picture.left) + std::max(0L, window.right - picture.right);
    const LONG down = std::min(0L, window.top - picture.top) + std::max(0L, window.bottom - picture.bottom);
    OffsetRect(&picture, right, down);
    return picture;
}

/// How far to move so that `at` lies between the ends.
LONG Into(LONG at, LONG from, LONG to) {
    return std::clamp(at, from, to) - at;
}

} // namespace

RECT Zoomed(const RECT& picture, const RECT& window, POINT around, double factor, LONG largest) {
    const double width = picture.right - picture.left;
    const double height = picture.bottom - picture.top;
    const double least = (window.right - window.left) / width;
    const double scale = std::clamp(factor, least, std::max(least, largest / width));
    const LONG left = std::lround(around.x - (around.x - picture.left) * scale);
    const LONG top = std::lround(around.y - (around.y - picture.top) * scale);
    return Covering({left, top, left + std::lround(width * scale), top + std::lround(height * scale)},
                    window);
}

RECT BroughtIntoView(const RECT& picture, const RECT& window, POINT point) {
    const LONG quarterX = (window.right - window.left) / 4;
    const LONG quarterY = (window.bottom - window.top) / 4;
    RECT moved = picture;
    OffsetRect(&moved, Into(point.x, window.left + quarterX, window.right - quarterX),
               Into(point.y, window.top + quarterY, window.bottom - quarterY));
    return Covering(moved, window);
}

RECT FitInto(const RECT& area, SIZE picture) {
    const LONG width = area.right - area.left;
    const LONG height = area.bottom - area.top;
    if (picture.cx <= 0 || picture.cy <= 0)
        return area;
    const double scale =
        std::min(static_cast<double>(width) / picture.cx, static_cast<double>(height) / picture.cy);
    const LONG fitWidth = std::max(1L, std::lround(picture.cx * scale));
    const LONG fitHeight = std::max(1L, std::lround(picture.cy * scale));
    const LONG left = area.left + (width - fitWidth) / 2;
    const LONG top = area.top + (height - fitHeight) / 2;
    return {left, top, left + fitWidth, top + fitHeight};
}

} // namespace config
