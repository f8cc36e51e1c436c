#include "platform/x11/input/SeenPlace.h"

#include <cmath>

namespace platform::x11 {

void SeenPlace::isAt(Point place) {
    seen = place;
    warpsThen = pointer.warps();
}

bool SeenPlace::movesTo(Point place, bool roughly) {
    if (pointer.warps() != warpsThen) {
        const xcb_point_t put = displays.toRoot(pointer.lastPut());
        isAt(displays.toTopLeft(put.x, put.y));
    }
    const Point before = seen;
    if (roughly && std::abs(place.x - before.x) <= 1 && std::abs(place.y - before.y) <= 1)
        return false;
    isAt(place);
    return place != before;
}

} // namespace platform::x11
