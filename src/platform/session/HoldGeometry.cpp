#include "platform/session/HoldGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace platform::session {

bool isVertical(Side side) {
    return side == Side::left || side == Side::right;
}

int lastPixel(Side side, const Box& box) {
    const std::array pixels{box.left, box.right - 1, box.top, box.bottom - 1};
    return pixels[static_cast<std::size_t>(side)];
}

bool isOutwards(Side side, double way) {
    return side == Side::right || side == Side::bottom ? way > 0 : way < 0;
}

std::vector<Side> innerSides(const Box& screen, std::span<const Box> monitors) {
    std::vector<Side> sides;
    const auto add = [&](Side side, auto&& liesBeyond) {
        if (std::any_of(monitors.begin(), monitors.end(), liesBeyond)) sides.push_back(side);
    };
    add(Side::left, [&](const Box& other) { return other.left < screen.left; });
    add(Side::right, [&](const Box& other) { return other.right > screen.right; });
    add(Side::top, [&](const Box& other) { return other.top < screen.top; });
    add(Side::bottom, [&](const Box& other) { return other.bottom > screen.bottom; });
    return sides;
}

Box partBeyond(Side side, const Box& screen, const Box& other) {
    Box part = other;
    switch (side) {
    case Side::left:
        part.right = std::min(part.right, screen.left);
        break;
    case Side::right:
        part.left = std::max(part.left, screen.right);
        break;
    case Side::top:
        part.bottom = std::min(part.bottom, screen.top);
        break;
    case Side::bottom:
        part.top = std::max(part.top, screen.bottom);
        break;
    }
    return part;
}

Point nearestPixel(Point p, const Box& box) {
    return {std::clamp(p.x, static_cast<double>(box.left), static_cast<double>(box.right - 1)),
            std::clamp(p.y, static_cast<double>(box.top), static_cast<double>(box.bottom - 1))};
}

Point nearestPlace(Point p, const Box& box) {
    const auto inside = [](double value, int begin, int end) {
        return std::clamp<double>(value, begin, std::nextafter(end, begin));
    };
    return {inside(p.x, box.left, box.right), inside(p.y, box.top, box.bottom)};
}

Point onDesktop(Point p, const Box& screen, std::span<const Box> monitors) {
    Box bounds = screen;
    for (const Box& other : monitors)
        bounds = {std::min(bounds.left, other.left), std::min(bounds.top, other.top),
                  std::max(bounds.right, other.right), std::max(bounds.bottom, other.bottom)};
    const Point held = nearestPixel(p, bounds);
    for (const Box& other : monitors)
        if (other.contains(held)) return held;
    return nearestPixel(held, screen);
}

} // namespace platform::session
