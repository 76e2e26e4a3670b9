#pragma once

#include <windows.h>

#include <cstdint>
#include <string_view>

/// Where the cells of a map lie on its picture. The picture covers the whole map; the cells' Y axis points
/// up.
namespace config {

/// A cell of a map, or its highest one; 0 for an axis that is not known.
struct Cell {
    std::int16_t x = 0;
    std::int16_t y = 0;

    bool operator==(const Cell&) const = default;
};

/// A typed coordinate as the cells' number: rounded, and the nearest end of the 16-bit range when it lies
/// outside, so that a wrong one in the file can be put right with the picker.
std::int16_t CoordinateOf(std::string_view text);

/// The cell at a point of the picture, both measured from the picture's top-left corner.
Cell CellAt(POINT point, SIZE picture, Cell highest);

/// The point that belongs to the coordinates, for a picture at `bounds`; the picture's top-left corner when
/// an axis of the map is not known. Coordinates off the map give a point off the picture, as far as windows
/// reach.
POINT PointOf(double x, double y, const RECT& bounds, Cell highest);

/// The largest place for the picture in the middle of the area that keeps the picture's shape.
RECT FitInto(const RECT& area, SIZE picture);

/// The place of the picture after it was made larger (or smaller, for a factor below 1) around a point that
/// stays where it is. The picture goes on covering `window`, in which it is seen, and is at most `largest`
/// pixels wide.
RECT Zoomed(const RECT& picture, const RECT& window, POINT around, double factor, LONG largest);

/// The place of the picture moved as little as brings the point of it into the middle half of `window`, which
/// it goes on covering.
RECT BroughtIntoView(const RECT& picture, const RECT& window, POINT point);

} // namespace config
