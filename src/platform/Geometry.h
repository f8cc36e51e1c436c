#pragma once

// Points and rectangles in double precision. Two coordinate systems meet in this program and a
// declaration always says which one it takes:
//
//   top-left    global display coordinates of events and of the cursor: origin at the top left of
//               the first screen, y grows downwards;
//   bottom-left the window system's: origin at the bottom left of the first screen, y grows
//   upwards.
//
// x is the same in both, and the unit is one pixel of the desktop in both.

namespace platform {

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const Rect&) const = default;

    /// The minimum edges belong to the rectangle, the maximum edges do not.
    bool contains(Point p) const {
        return p.x >= x && p.x < x + width && p.y >= y && p.y < y + height;
    }
};

} // namespace platform
