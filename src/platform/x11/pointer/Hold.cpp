#include "platform/x11/pointer/Hold.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

// How the server holds the cursor.
//
// A pointer barrier stands on each side of the screen beyond which another monitor lies. It stops
// motion outwards only, so a cursor that came out in another way (a warp, a tablet) can come back.
// It is a line without ends: the server tells whether a slanting motion meets a barrier by a point
// mirrored at the start of the motion, so near the end of a shorter one it lets some of them pass.

namespace platform::x11 {

namespace {

constexpr std::uint16_t endless1 = 0xffff; // -1 and -2: a line that ends at neither side
constexpr std::uint16_t endless2 = 0xfffe;

double fromFixed(xcb_input_fp1616_t value) {
    return value / 65536.0;
}

double fromFixed(const xcb_input_fp3232_t& value) {
    return value.integral + value.frac / 4294967296.0;
}

xcb_point_t pixelAt(Point root) {
    return {static_cast<std::int16_t>(std::floor(root.x)),
            static_cast<std::int16_t>(std::floor(root.y))};
}

constexpr int mostTimesTakenOut = 3;

} // namespace

Hold::Hold(Connection& x, Displays& screens, bool isAllowed)
    : connection(x), displays(screens), allowed(isAllowed && x.tellsBarrierHits()), reach(x) {
    displays.onLayout(this, [this] { rebuild(); });
}

Hold::~Hold() {
    displays.onLayout(this, {});
    replaceBarriers({});
    connection.flush();
}

void Hold::inside(std::optional<Rect> screen) {
    wanted = screen;
    rebuild();
}

void Hold::suspend(bool on) {
    if (suspended == on) return;
    suspended = on;
    rebuild();
}

void Hold::rebuild() {
    if (!allowed) return;
    std::vector<Box> present;
    for (const Screen& screen : displays.screens()) {
        const xcb_rectangle_t r = displays.toRoot(screen.frame);
        present.push_back({r.x, r.y, r.x + r.width, r.y + r.height});
    }
    std::optional<Box> held;
    if (wanted && !suspended) {
        const xcb_point_t corner = displays.toRoot(Point{wanted->x, wanted->y});
        held = Box{corner.x, corner.y, corner.x + static_cast<int>(wanted->width),
                   corner.y + static_cast<int>(wanted->height)};
        // Of a screen that has gone nothing is left to be held inside.
        if (std::find(present.begin(), present.end(), *held) == present.end()) held.reset();
    }
    const bool same =
        held ? !barriers.empty() && *held == box && present == monitors : barriers.empty();
    monitors = std::move(present);
    if (same) return;
    if (held) box = *held;
    replaceBarriers(held ? innerSides(box, monitors) : std::vector<Side>{});
    forgetOthers();
    if (barriers.empty())
        cursor.release();
    else
        cursor.hold(box);
    connection.flush();
}

// The new barriers stand before the old ones go, and nobody's input comes in between.
void Hold::replaceBarriers(const std::vector<Side>& sides) {
    if (sides.empty() && barriers.empty()) return;
    xcb_connection_t* c = connection.xcb();
    xcb_grab_server(c);
    std::vector<Barrier> built;
    for (const Side side : sides)
        built.push_back(build(side));
    for (const Barrier& barrier : barriers)
        xcb_xfixes_delete_pointer_barrier(c, barrier.id);
    xcb_ungrab_server(c);
    barriers = std::move(built);
}

Hold::Barrier Hold::build(Side side) {
    constexpr std::array<std::uint32_t, 4> inwards{
        XCB_XFIXES_BARRIER_DIRECTIONS_POSITIVE_X, XCB_XFIXES_BARRIER_DIRECTIONS_NEGATIVE_X,
        XCB_XFIXES_BARRIER_DIRECTIONS_POSITIVE_Y, XCB_XFIXES_BARRIER_DIRECTIONS_NEGATIVE_Y};
    const Barrier barrier{side, xcb_generate_id(connection.xcb())};
    const int behind = side == Side::right || side == Side::bottom ? 1 : 0;
    const auto at = static_cast<std::uint16_t>(lastPixel(side, box) + behind);
    const bool vertical = isVertical(side);
    const std::uint16_t device = connection.masterPointer();
    xcb_xfixes_create_pointer_barrier(connection.xcb(), barrier.id, connection.root(),
                                      vertical ? at : endless1, vertical ? endless1 : at,
                                      vertical ? at : endless2, vertical ? endless2 : at,
                                      inwards[static_cast<std::size_t>(side)], 1, &device);
    return barrier;
}

void Hold::hit(const xcb_input_barrier_hit_event_t& event, double time, bool afterQuestion) {
    const auto barrier = std::find_if(barriers.begin(), barriers.end(),
                                      [&](const Barrier& one) { return one.id == event.barrier; });
    if (barrier == barriers.end()) return;
    grabbed = (event.flags & XCB_INPUT_BARRIER_FLAGS_DEVICE_IS_GRABBED) != 0;
    isTried = !grabbed;
    lastStop = {barrier->side, {fromFixed(event.root_x), fromFixed(event.root_y)}};
    cursor.stopped({.side = barrier->side,
                    .at = lastStop.at,
                    .told = {fromFixed(event.dx), fromFixed(event.dy)},
                    .time = time,
                    .afterQuestion = afterQuestion});
}

std::optional<xcb_point_t> Hold::stoppedAt() const {
    const auto place = cursor.stoppedAt();
    if (!place || grabbed || othersMove) return std::nullopt;
    return pixelAt(*place);
}

void Hold::jumped(bool afterQuestion) {
    cursor.jumped(afterQuestion);
    wasInside = othersMove = false;
}

// A warp of the program's own that leads to where the cursor is kept is none that takes it out.
void Hold::put(Point root) {
    cursor.put(root);
    outside.reset();
    wasInside = !barriers.empty() && box.contains(root);
}

// A grab alone proves nothing, as menus and drags have one.
void Hold::asked() {
    cursor.asked();
    if (barriers.empty()) return;
    if (outside && (confined || givenUp))
        reach.askForGrab();
    else if (outside)
        reach.tryIn(box, pixelAt(*outside), pixelAt(nearestPixel(*outside, box)));
    else if (!isTried)
        reach.tryOut(box, lastStop.side, pixelAt(lastStop.at),
                     nearestBeyond(lastStop.side, lastStop.at));
    else
        reach.forget();
    isTried = true;
}

bool Hold::placed(Point root) {
    if (barriers.empty() || box.contains(root)) {
        outside.reset();
        if (givenUp) timesTakenOut = 0;
        confined = givenUp = false;
        wasInside = !barriers.empty();
        othersMove = !cursor.placed(root);
        return true;
    }
    const bool isNew = !std::exchange(outside, root);
    if (isNew && !givenUp) return false; // and now it is tried
    if (reach.answer() != Reach::Answer::none)
        confined = reach.answer() == Reach::Answer::notReached;
    noteTakenOut();
    othersMove = !cursor.placed(root);
    return true;
}

// A cursor that was put inside does not come out by itself. Who takes it out again and again, as
// games do that want it in the middle of their window, would have it thrown to and fro.
void Hold::noteTakenOut() {
    if (!std::exchange(wasInside, false)) return;
    const auto now = Clock::now();
    if (now - takenOutAt > std::chrono::seconds(1)) timesTakenOut = 0;
    takenOutAt = now;
    givenUp |= ++timesTakenOut >= mostTimesTakenOut;
}

void Hold::forgetOthers() {
    grabbed = othersMove = confined = wasInside = givenUp = false;
    isTried = true;
    outside.reset();
    timesTakenOut = 0;
    reach.forget();
}

/// The pixel of another monitor that is next to a place at a side, beyond the side's line.
xcb_point_t Hold::nearestBeyond(Side side, Point from) const {
    std::optional<Point> nearest;
    const auto distance = [&](Point p) { return std::hypot(p.x - from.x, p.y - from.y); };
    for (const Box& other : monitors) {
        const Box part = partBeyond(side, box, other);
        if (part.left >= part.right || part.top >= part.bottom) continue;
        const Point pixel = nearestPixel(from, part);
        if (!nearest || distance(pixel) < distance(*nearest)) nearest = pixel;
    }
    return pixelAt(nearest.value_or(from));
}

/// Whether the cursor is still at the side that stopped it.
bool Hold::isAtStop(Point root) const {
    const Point way{root.x - lastStop.at.x, root.y - lastStop.at.y};
    return std::abs(isVertical(lastStop.side) ? way.x : way.y) < 3;
}

std::optional<PushSource::Push> Hold::takePush(Point place) {
    const xcb_point_t root = displays.toRoot(place);
    const Point at{static_cast<double>(root.x), static_cast<double>(root.y)};
    if ((grabbed && reach.answer() != Reach::Answer::reached) || (othersMove && !isAtStop(at))) {
        cursor.forgetPush();
        return std::nullopt;
    }
    const auto push = cursor.takePush(at, monitors);
    if (!push) return std::nullopt;
    const Point origin = displays.toTopLeft(0, 0);
    const auto topLeft = [&](Point p) { return Point{p.x + origin.x, p.y + origin.y}; };
    return Push{topLeft(push->held), topLeft(push->beyond)};
}

} // namespace platform::x11
