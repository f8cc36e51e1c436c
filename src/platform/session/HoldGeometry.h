#pragma once

#include "platform/Geometry.h"

#include <span>
#include <vector>

// The geometry of holding a cursor on one monitor, in the coordinates of a whole desktop
// with y downwards.

namespace platform::session {

/// Pixels from `left` to `right` - 1 and from `top` to `bottom` - 1.
struct Box {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const Box&) const = default;

    bool contains(Point p) const {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
};

enum class Side { left, right, top, bottom };

/// Whether the side is a vertical line.
bool isVertical(Side side);
/// The column, or row, of pixels in which the cursor stands when the side stops it.
int lastPixel(Side side, const Box& box);
/// Whether a way across the side's line leads out; a way of no length does not.
bool isOutwards(Side side, double way);

/// The sides of `screen` beyond whose line a part of some other monitor lies: the only ones through
/// which a straight way leads to another monitor, slanting ones over the corners included.
std::vector<Side> innerSides(const Box& screen, std::span<const Box> monitors);

/// What of `other` lies beyond the line of the side; a box without pixels where nothing does.
Box partBeyond(Side side, const Box& screen, const Box& other);

/// Where the desktop would keep a cursor that moves from `screen` towards `p`: within the bounds of
/// the desktop, and on the screen that it comes from where there is no monitor.
Point onDesktop(Point p, const Box& screen, std::span<const Box> monitors);

/// The nearest pixel inside; of a place that is inside the fractions are kept only before the last
/// pixel of a row or column.
Point nearestPixel(Point p, const Box& box);
/// The nearest place inside, fractions of the last pixels included.
Point nearestPlace(Point p, const Box& box);

} // namespace platform::session
