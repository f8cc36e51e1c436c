#include "platform/x11/pointer/Pointer.h"

#include <algorithm>
#include <utility>

namespace platform::x11 {

Pointer::Pointer(Connection& x, const Displays& screens, RunLoop& loop, Confinement& confinement)
    : connection(x), displays(screens), runLoop(loop), hold(confinement) {}

Pointer::~Pointer() {
    release();
    connection.flush();
}

Pointer::Handling::Handling(Pointer& pointer, Point place, bool isHeldBack)
    : owner(pointer),
      knownBefore(std::exchange(pointer.known, place)),
      goalBefore(std::exchange(pointer.goal, isHeldBack ? std::optional(place) : std::nullopt)),
      warpsBefore(pointer.warpCount) {}

Pointer::Handling::~Handling() {
    if (owner.warpCount == warpsBefore) owner.letThrough();
    owner.goal = goalBefore;
    owner.known = knownBefore;
}

Point Pointer::location() {
    if (known) return *known;
    const auto reply = connection.wait(xcb_query_pointer(connection.xcb(), connection.root()),
                                       xcb_query_pointer_reply);
    return reply ? displays.toTopLeft(reply->root_x, reply->root_y) : Point{};
}

// The barriers stand before the cursor comes, or the hand would move it on in between.
void Pointer::warp(Point to) {
    release();
    const xcb_point_t place = displays.toRoot(to);
    const bool isOnMonitor = onMonitor(place);
    if (interval > 0 && isOnMonitor) pause(place);
    move(to, place);
    if (interval > 0 && !isOnMonitor) pause(placeInForce(place));
    connection.flush();
}

void Pointer::holdInside(std::optional<Rect> screen) {
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

bool Pointer::onMonitor(xcb_point_t place) const {
    const auto screens = displays.screens();
    return std::any_of(screens.begin(), screens.end(), [&](const Screen& screen) {
        const xcb_rectangle_t area = displays.toRoot(screen.frame);
        return place.x >= area.x && place.x < area.x + area.width && place.y >= area.y &&
               place.y < area.y + area.height;
    });
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

// A cursor that is put beside every monitor stays on the one it comes from, at the pixel next to
// the place. This waits for the server, for such a place alone.
xcb_point_t Pointer::placeInForce(xcb_point_t wanted) {
    const auto reply = connection.wait(xcb_query_pointer(connection.xcb(), connection.root()),
                                       xcb_query_pointer_reply);
    return reply ? xcb_point_t{reply->root_x, reply->root_y} : wanted;
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
