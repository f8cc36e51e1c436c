#include "platform/gnome/pointer/Pointer.h"

#include <cmath>
#include <utility>

namespace platform::gnome {

Pointer::Pointer(Hand& extension, wayland::Outputs& screens, Hold& confinement)
    : hand(extension), outputs(screens), hold(confinement) {}

Pointer::Handling::Handling(Pointer& pointer, Point place, bool isHeldBack)
    : owner(pointer),
      knownBefore(std::exchange(pointer.known, place)),
      goalBefore(std::exchange(pointer.goal, isHeldBack ? std::optional(place) : std::nullopt)),
      warpsBefore(pointer.warpCount) {
    if (!isHeldBack) pointer.last = place;
}

Pointer::Handling::~Handling() {
    if (std::exchange(owner.releaseAtEnd, false)) owner.hold.inside(std::nullopt);
    if (owner.warpCount == warpsBefore) owner.letThrough();
    owner.goal = goalBefore;
    owner.known = knownBefore;
}

Point Pointer::location() {
    if (known) return *known;
    if (const auto seen = hand.where()) last = outputs.toTopLeft(outputs.nearest(seen->place));
    return last;
}

void Pointer::warp(Point to) {
    to = outputs.toTopLeft(outputs.nearest(outputs.toLayout(to)));
    const bool isThere = goal && hold.isHolding() && !hold.isBeyond(to) &&
                         std::abs(to.x - last.x) < 2 && std::abs(to.y - last.y) < 2;
    if (!isThere) hand.warp(outputs.toLayout(to));
    moved(to);
}

void Pointer::moved(Point to) {
    ++warpCount;
    last = to;
    if (known) known = to;
}

// The new screen is held and the cursor put there in one call of the shell, so that nothing is seen
// between them.
void Pointer::holdInside(std::optional<Rect> screen) {
    // Who switches off and on again in one event gets the new hold in the place of the old one.
    releaseAtEnd = known && !screen;
    if (releaseAtEnd) return;
    const bool leads = goal && screen && screen->contains(*goal);
    if (!hold.inside(screen, leads ? std::optional(outputs.toLayout(*goal)) : std::nullopt)) return;
    moved(*std::exchange(goal, std::nullopt));
}

void Pointer::letThrough() {
    if (!goal) return;
    const Point to = *std::exchange(goal, std::nullopt);
    hand.warp(outputs.toLayout(to));
    moved(to);
}

} // namespace platform::gnome
