#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>
#include <xcb/xproto.h>

// The geometry of monitors and screens, root coordinates.

namespace platform::x11 {

/// Monitors that show the same piece of the desktop: one screen to whoever sits before them.
struct SharedScreen {
    xcb_rectangle_t area;              ///< around all of them
    std::vector<std::size_t> monitors; ///< their places in the list, that of the largest first
};

/// Puts together the monitors that are mirrored, lie one inside the other or overlap in part, until
/// no two screens share a pixel. The order is that of the monitors, by the first one of a screen.
std::vector<SharedScreen> screensOf(std::span<const xcb_rectangle_t> monitors);

/// The pixel of the areas that is nearest to a place which is on none of them; nothing where it is
/// on one, or where there are none.
std::optional<xcb_point_t> nearestTo(xcb_point_t place, std::span<const xcb_rectangle_t> areas);

/// Whether they have a pixel in common.
bool overlap(const xcb_rectangle_t& a, const xcb_rectangle_t& b);

/// The rectangle around them all; empty for none.
xcb_rectangle_t around(std::span<const xcb_rectangle_t> areas);

} // namespace platform::x11
