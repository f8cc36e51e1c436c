#include "platform/wayland/pointer/Pointer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::wayland {

namespace {

constexpr std::chrono::milliseconds patience{100};

} // namespace

Pointer::Pointer(Connection& x, Outputs& screens, PointerSeat& pointerSeat, CursorControl& cursor,
                 Hold& confinement)
    : connection(x), outputs(screens), seat(pointerSeat), control(cursor), hold(confinement) {}

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
    if (const auto place = seat.place())
        last = outputs.toTopLeft(*place);
    else if (const auto found = probe())
        last = outputs.toTopLeft(*found);
    return last;
}

// What catches the pointer is told where it is as soon as it is drawn, or when the cursor stirs.
std::optional<Point> Pointer::probe() {
    if (!seat.isThere()) return std::nullopt;
    std::vector<std::unique_ptr<Layer>> nets;
    for (const Outputs::Place& place : outputs.places())
        nets.push_back(
            std::make_unique<Layer>(connection, Layer::Look{place, place.area, 0, false}));
    const auto deadline = Connection::Clock::now() + patience;
    const auto isCaught = [&] { return seat.focus() != nullptr; };
    const auto areDrawn = [&] {
        return std::ranges::all_of(nets, [](const auto& net) { return net->isDrawn(); });
    };
    connection.waitFor([&] { return isCaught() || areDrawn(); }, deadline);
    if (!isCaught() && areDrawn() && connection.synchronize() && !isCaught()) control.stir();
    connection.waitFor(isCaught, deadline);
    const auto found = seat.place();
    for (const auto& net : nets)
        seat.forget(*net);
    return found;
}

void Pointer::warp(Point to) {
    to = outputs.toTopLeft(outputs.nearest(outputs.toLayout(to)));
    const bool isThere = goal && hold.isHolding() && !hold.isBeyond(to) &&
                         std::abs(to.x - last.x) < 2 && std::abs(to.y - last.y) < 2;
    if (isThere)
        noteWarp(to);
    else
        put(to);
}

void Pointer::put(Point to) {
    control.warp(outputs.toLayout(to));
    awaited = to;
    noteWarp(to);
}

// The compositor puts it onto whole pixels.
bool Pointer::takeArrival(Point at) {
    const auto to = std::exchange(awaited, std::nullopt);
    return to && std::abs(at.x - to->x) < 1 && std::abs(at.y - to->y) < 1;
}

void Pointer::noteWarp(Point to) {
    ++warpCount;
    last = to;
    if (known) known = to;
}

void Pointer::putBack(Point home) {
    control.warp(outputs.toLayout(home));
    last = home;
}

void Pointer::holdInside(std::optional<Rect> screen) {
    // Who switches off and on again in one event gets the new hold in the place of the old one.
    releaseAtEnd = known && !screen;
    if (releaseAtEnd) return;
    if (!goal || !screen || !screen->contains(*goal))
        hold.inside(screen);
    else if (hold.insideAt(*screen, *goal)) {
        awaited = goal;
        noteWarp(*std::exchange(goal, std::nullopt));
    } else
        letThrough();
}

void Pointer::letThrough() {
    if (!goal) return;
    put(*std::exchange(goal, std::nullopt));
}

} // namespace platform::wayland
