#include "platform/wayland/pointer/Pointer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::wayland {

namespace {

constexpr std::chrono::milliseconds patience{100};

} // namespace

Pointer::Pointer(Connection& x, Outputs& screens, PointerSeat& pointerSeat, CursorControl& cursor,
                 Hold& screenHold)
    : EventPointer(screens),
      connection(x),
      seat(pointerSeat),
      control(cursor),
      confinement(screenHold) {}

std::optional<Point> Pointer::find() {
    const auto place = seat.place();
    return place ? place : probe();
}

// What catches the pointer is told where it is as soon as it is drawn, or when the cursor stirs.
std::optional<Point> Pointer::probe() {
    if (!seat.isThere()) return std::nullopt;
    std::vector<std::unique_ptr<Layer>> nets;
    for (const Outputs::Place& place : outputs.places())
        nets.push_back(
            std::make_unique<Layer>(connection, Layer::Look{place, place.area, 0, false}));
    const auto isCaught = [&] { return seat.focus() != nullptr; };
    const auto areDrawn = [&] {
        return std::ranges::all_of(nets, [](const auto& net) { return net->isDrawn(); });
    };
    connection.waitFor([&] { return isCaught() || areDrawn(); },
                       Connection::Clock::now() + patience);
    if (!isCaught() && areDrawn() && connection.synchronize() && !isCaught()) control.stir();
    connection.waitFor(isCaught, Connection::Clock::now() + patience);
    const auto found = seat.place();
    for (const auto& net : nets)
        seat.forget(*net);
    return found;
}

bool Pointer::isHeldAt(Point place) const {
    return confinement.isHolding() && !confinement.isBeyond(place);
}

void Pointer::put(Point to) {
    control.warp(outputs.toLayout(to));
    awaited = to;
}

// The compositor puts it onto whole pixels.
bool Pointer::takeArrival(Point at) {
    const auto to = std::exchange(awaited, std::nullopt);
    return to && std::abs(at.x - to->x) < 1 && std::abs(at.y - to->y) < 1;
}

void Pointer::putBack(Point home) {
    control.warp(outputs.toLayout(home));
    last = home;
}

bool Pointer::hold(std::optional<Rect> screen, std::optional<Point> goal) {
    if (!screen || !goal) {
        confinement.inside(screen);
        return false;
    }
    const bool isPut = confinement.insideAt(*screen, *goal);
    if (isPut) awaited = goal;
    return isPut;
}

} // namespace platform::wayland
