#include "platform/wayland/pointer/EventPointer.h"

#include <cmath>
#include <utility>

namespace platform::wayland {

EventPointer::Handling::Handling(EventPointer& pointer, Point place, bool isHeldBack)
    : owner(pointer),
      knownBefore(std::exchange(pointer.known, place)),
      beyondBefore(std::exchange(pointer.beyond, isHeldBack ? std::optional(place) : std::nullopt)),
      warpsBefore(pointer.warpCount) {
    if (!isHeldBack) pointer.last = place;
}

EventPointer::Handling::~Handling() {
    if (std::exchange(owner.releaseAtEnd, false)) owner.hold(std::nullopt, std::nullopt);
    if (owner.warpCount == warpsBefore) owner.letThrough();
    owner.beyond = beyondBefore;
    owner.known = knownBefore;
}

Point EventPointer::location() {
    if (known) return *known;
    if (const auto found = find()) last = outputs.toTopLeft(*found);
    return last;
}

void EventPointer::warp(Point to) {
    to = outputs.toTopLeft(outputs.nearest(outputs.toLayout(to)));
    const bool isThere =
        beyond && isHeldAt(to) && std::abs(to.x - last.x) < 2 && std::abs(to.y - last.y) < 2;
    if (!isThere) put(to);
    noteWarp(to);
}

void EventPointer::noteWarp(Point to) {
    ++warpCount;
    last = to;
    if (known) known = to;
}

void EventPointer::holdInside(std::optional<Rect> screen) {
    // Who switches off and on again in one event gets the new hold in the place of the old one.
    releaseAtEnd = known && !screen;
    if (releaseAtEnd) return;
    const bool leads = beyond && screen && screen->contains(*beyond);
    if (hold(screen, leads ? beyond : std::nullopt)) noteWarp(*std::exchange(beyond, std::nullopt));
}

void EventPointer::letThrough() {
    if (!beyond) return;
    const Point to = *std::exchange(beyond, std::nullopt);
    put(to);
    noteWarp(to);
}

} // namespace platform::wayland
