#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace platform::x11 {

/// How the user's desktops lie beside each other, as a pager tells it (_NET_DESKTOP_LAYOUT).
struct DesktopLayout {
    bool downTheColumns = false; ///< they are counted so, and not along the rows
    bool fromTheRight = false;   ///< the first one is at the right side
    std::uint32_t columns = 0;   ///< 0 for as many as are needed
    std::uint32_t rows = 1;      ///< the same

    /// From the values of the property. Without them, or where they make no sense, it is one row.
    static DesktopLayout read(std::span<const std::uint32_t> property);

    /// The desktop to the left (-1) or the right (1) of `from`, of `count`; nothing at the end of
    /// its row.
    std::optional<std::uint32_t> neighbour(std::uint32_t from, std::uint32_t count,
                                           int direction) const;
};

} // namespace platform::x11
