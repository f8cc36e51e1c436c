#include "platform/x11/keys/DesktopLayout.h"

#include <algorithm>

namespace platform::x11 {

DesktopLayout DesktopLayout::read(std::span<const std::uint32_t> property) {
    enum : std::size_t { orientation, columnCount, rowCount, corner, whole };
    enum : std::uint32_t { vertical = 1 };
    enum : std::uint32_t { topRight = 1, bottomRight = 2 };
    // The corner may be left out.
    if (property.size() < corner) return {};
    DesktopLayout layout;
    layout.downTheColumns = property[orientation] == vertical;
    layout.columns = property[columnCount];
    layout.rows = property[rowCount];
    if (layout.columns == 0 && layout.rows == 0) return {};
    layout.fromTheRight = property.size() >= whole &&
                          (property[corner] == topRight || property[corner] == bottomRight);
    return layout;
}

std::optional<std::uint32_t> DesktopLayout::neighbour(std::uint32_t from, std::uint32_t count,
                                                      int direction) const {
    const auto shared = [count](std::uint32_t among) { return (count + among - 1) / among; };
    const std::int64_t step = fromTheRight ? -direction : direction;
    std::int64_t to = 0;
    if (downTheColumns) {
        const std::uint32_t inColumn = rows != 0 ? rows : shared(columns);
        to = from + step * std::max(inColumn, 1u);
    } else {
        const std::uint32_t inRow = std::max(columns != 0 ? columns : shared(rows), 1u);
        to = from + step;
        const bool sameRow = to >= 0 && to / inRow == from / inRow;
        if (!sameRow) return std::nullopt;
    }
    if (to < 0 || to >= count) return std::nullopt;
    return static_cast<std::uint32_t>(to);
}

} // namespace platform::x11
