#include "platform/x11/pointer/Pointer.h"

#include "platform/x11/session/ScreenGeometry.h"

#include <algorithm>
#include <utility>

namespace platform::x11 {

Pointer::Pointer(Connection& x, const Displays& screens, RunLoop& loop, Confinement& confinement)
    : connection(x), displays(screens), runLoop(loop), hold(confinement) {}

Pointer::~Pointer() {
    release();
    connection.flush();
}

Pointer::Handling::Handling(Pointer& pointer, Point place, bool isHeldBack, bool isPointers)
    : owner(pointer),
      knownBefore(std::exchange(pointer.known, isPointers || !pointer.isBesideAll(place)
                                                   ? std::optional(place)
                                                   : std::nullopt)),
      goalBefore(std::exchange(pointer.goal, isHeldBack ? std::optional(place) : std::nullopt)),
      warpsBefore(pointer.warpCount) {}

Pointer::Handling::~Handling() {
    if (owner.warpCount == warpsBefore) owner.letThrough();
    owner.goal = goalBefore;
    owner.known = knownBefore;
}

// Between monitors that do not touch the server lets the cursor float. Whoever asks where it is
// wants to know on which screen: one beside all of them would be on none.
Point Pointer::location() {
    if (known) return *known;
    const auto reply = connection.wait(xcb_query_pointer(connection.xcb(), connection.root()),
                                       xcb_query_pointer_reply);
    if (!reply) return {};
    const xcb_point_t at{reply->root_x, reply->root_y};
    const auto shown = nearestTo(at, displays.areas());
    if (!shown) return displays.toTopLeft(at.x, at.y);
    const Point place = displays.toTopLeft(shown->x, shown->y);
    move(place, *shown);
    connection.flush();
    return place;
}

// The barriers stand before the cursor comes, or the hand would move it on in between.
void Pointer::warp(Point to) {
    release();
    xcb_point_t place = displays.toRoot(to);
    if (const auto shown = nearestForWarp(place)) {
        place = *shown;
        to = displays.toTopLeft(place.x, place.y);
    }
    if (interval > 0) pause(place);
    move(to, place);
    connection.flush();
}

// The server would keep the cursor on the monitor that it comes from. Where one is held, what lies
// beside all of them is meant to be inside that one, though another may be nearer.
std::optional<xcb_point_t> Pointer::nearestForWarp(xcb_point_t place) const {
    const auto areas = displays.areas();
    const auto shown = nearestTo(place, areas);
    if (!shown || !held) return shown;
    const xcb_point_t corner = displays.toRoot(Point{held->x, held->y});
    const auto isHeld = [&](const xcb_rectangle_t& area) {
        return area.x == corner.x && area.y == corner.y && area.width == held->width &&
               area.height == held->height;
    };
    const auto screen = std::ranges::find_if(areas, isHeld);
    return screen == areas.end() ? shown : nearestTo(place, {&*screen, 1});
}

bool Pointer::isBesideAll(Point place) const {
    return nearestTo(displays.toRoot(place), displays.areas()).has_value();
}

void Pointer::holdInside(std::optional<Rect> screen) {
    held = screen;
    hold.inside(screen);
    if (goal && !hold.isBeyond(*goal)) letThrough();
}

void Pointer::letThrough() {
    if (!goal) return;
    const Point to = *std::exchange(goal, std::nullopt);
    release();
    move(to, displays.toRoot(to));
    connection.flush();
}

void Pointer::move(Point to, xcb_point_t place) {
    lastSequence = xcb_warp_pointer(connection.xcb(), XCB_NONE, connection.root(), 0, 0, 0, 0,
                                    place.x, place.y)
                       .sequence;
    ++warpCount;
    lastPlace = to;
    if (known) known = to;
    hold.put({static_cast<double>(place.x), static_cast<double>(place.y)});
}

// A vertical barrier at x stands between the pixels x - 1 and x, a horizontal one likewise. The
// four overlap at the corners, or a diagonal step would slip out between two of them.
void Pointer::pause(xcb_point_t place) {
    const int x = place.x, y = place.y;
    const std::array<std::array<int, 4>, 4> lines = {{{x, y - 2, x, y + 3},
                                                      {x + 1, y - 2, x + 1, y + 3},
                                                      {x - 2, y, x + 3, y},
                                                      {x - 2, y + 1, x + 3, y + 1}}};
    const std::uint16_t device = connection.masterPointer();
    const auto at = [](int v) { return static_cast<std::uint16_t>(std::max(v, 0)); };
    for (std::size_t i = 0; i < barriers.size(); ++i) {
        const auto& [x1, y1, x2, y2] = lines[i];
        barriers[i] = xcb_generate_id(connection.xcb());
        xcb_xfixes_create_pointer_barrier(connection.xcb(), barriers[i], connection.root(), at(x1),
                                          at(y1), at(x2), at(y2), 0, 1, &device);
    }
    paused = true;
    pausedUntil = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                     std::chrono::duration<double>(interval));
    timer = runLoop.schedule(interval, false, "releasePointer", [this] {
        timer = TimerId::none;
        release();
        connection.flush();
    });
}

void Pointer::releaseWhenDue() {
    if (paused && Clock::now() >= pausedUntil) release();
}

void Pointer::release() {
    if (!paused) return;
    paused = false;
    for (const xcb_xfixes_barrier_t barrier : barriers)
        xcb_xfixes_delete_pointer_barrier(connection.xcb(), barrier);
    runLoop.invalidate(timer);
    timer = TimerId::none;
}

} // namespace platform::x11
