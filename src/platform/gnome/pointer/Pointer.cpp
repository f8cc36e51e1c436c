#include "platform/gnome/pointer/Pointer.h"

namespace platform::gnome {

std::optional<Point> Pointer::find() {
    const auto seen = hand.where();
    return seen ? std::optional(outputs.nearest(seen->place)) : std::nullopt;
}

bool Pointer::isHeldAt(Point place) const {
    return confinement.isHolding() && !confinement.isBeyond(place);
}

void Pointer::put(Point to) {
    hand.warp(outputs.toLayout(to));
}

// In one call of the shell, so that nothing is seen between the two.
bool Pointer::hold(std::optional<Rect> screen, std::optional<Point> goal) {
    return confinement.inside(screen, goal ? std::optional(outputs.toLayout(*goal)) : std::nullopt);
}

} // namespace platform::gnome
