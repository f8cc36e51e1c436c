#include "platform/layershell/pointer/CursorControl.h"

#include <algorithm>
#include <cmath>

namespace platform::layershell {

CursorControl::CursorControl(wayland::Connection& x, const wayland::Outputs& screens)
    : connection(x),
      outputs(screens),
      mouse(zwlr_virtual_pointer_manager_v1_create_virtual_pointer(x.virtualPointers(), x.seat())) {
    connection.flush();
}

// A place is told as a share of the whole layout, and here as that of the middle of a pixel: on the
// border between two of them the compositor's rounding would choose.
void CursorControl::warp(Point layout) {
    const auto places = outputs.places();
    if (places.empty()) return;
    Rect all = places[0].area;
    double right = all.x + all.width, bottom = all.y + all.height;
    for (const auto& place : places) {
        all.x = std::min(all.x, place.area.x);
        all.y = std::min(all.y, place.area.y);
        right = std::max(right, place.area.x + place.area.width);
        bottom = std::max(bottom, place.area.y + place.area.height);
    }
    const auto halves = [](double pixels) {
        return static_cast<std::uint32_t>(std::lround(std::max(0.0, pixels * 2)));
    };
    using namespace std::chrono;
    const auto now = duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    zwlr_virtual_pointer_v1_motion_absolute(
        mouse.get(), static_cast<std::uint32_t>(now), halves(std::floor(layout.x) - all.x) + 1,
        halves(std::floor(layout.y) - all.y) + 1, halves(right - all.x), halves(bottom - all.y));
    zwlr_virtual_pointer_v1_frame(mouse.get());
    connection.flush();
}

} // namespace platform::layershell
