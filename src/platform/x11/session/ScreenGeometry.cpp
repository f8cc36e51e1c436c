#include "platform/x11/session/ScreenGeometry.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace platform::x11 {

bool overlap(const xcb_rectangle_t& a, const xcb_rectangle_t& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

xcb_rectangle_t around(std::span<const xcb_rectangle_t> areas) {
    if (areas.empty()) return {};
    int left = areas[0].x, top = areas[0].y, right = left, bottom = top;
    for (const xcb_rectangle_t& area : areas) {
        left = std::min<int>(left, area.x);
        top = std::min<int>(top, area.y);
        right = std::max(right, area.x + area.width);
        bottom = std::max(bottom, area.y + area.height);
    }
    return {static_cast<std::int16_t>(left), static_cast<std::int16_t>(top),
            static_cast<std::uint16_t>(right - left), static_cast<std::uint16_t>(bottom - top)};
}

std::vector<SharedScreen> screensOf(std::span<const xcb_rectangle_t> monitors) {
    std::vector<SharedScreen> screens;
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        SharedScreen joined{monitors[i], {i}};
        const auto shares = [&joined](const SharedScreen& other) {
            return overlap(other.area, joined.area);
        };
        // The rectangle around two may overlap a third that neither of them does.
        for (auto other = std::ranges::find_if(screens, shares); other != screens.end();
             other = std::ranges::find_if(screens, shares)) {
            joined.area = around(std::array{joined.area, other->area});
            joined.monitors.insert(joined.monitors.end(), other->monitors.begin(),
                                   other->monitors.end());
            screens.erase(other);
        }
        std::ranges::sort(joined.monitors);
        screens.push_back(std::move(joined));
    }
    std::ranges::sort(screens, {}, [](const SharedScreen& one) { return one.monitors.front(); });
    for (SharedScreen& screen : screens)
        std::ranges::stable_sort(screen.monitors, std::ranges::greater(), [&](std::size_t index) {
            return monitors[index].width * monitors[index].height;
        });
    return screens;
}

std::optional<xcb_point_t> nearestTo(xcb_point_t place, std::span<const xcb_rectangle_t> areas) {
    std::optional<xcb_point_t> nearest;
    auto least = std::numeric_limits<std::int64_t>::max();
    for (const xcb_rectangle_t& area : areas) {
        const int x = std::clamp<int>(place.x, area.x, area.x + area.width - 1);
        const int y = std::clamp<int>(place.y, area.y, area.y + area.height - 1);
        const std::int64_t dx = x - place.x, dy = y - place.y;
        const std::int64_t distance = dx * dx + dy * dy;
        if (distance == 0) return std::nullopt;
        if (distance >= least) continue;
        least = distance;
        nearest = xcb_point_t{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y)};
    }
    return nearest;
}

} // namespace platform::x11
