#include "platform/x11/pointer/Hold.h"

#include <algorithm>
#include <array>
#include <cmath>

// How the server holds the cursor.
//
// A pointer barrier stands on each side of the screen beyond which another monitor lies. It stops
// motion outwards only, so a cursor that came out in another way (a warp, a tablet) can come back.
// It is a line without ends: the server tells whether a slanting motion meets a barrier by a point
// mirrored at the start of the motion, so near the end of a shorter one it lets some of them pass.
//
// For each motion that a barrier stops the server tells the whole of the motion, but not where the
// cursor was before it. That is followed here: from the last place that the server told, along the
// raw motion since, which also has the fractions of pixels that the server drops at a barrier. Of
// a fast mouse the raw motion is not read, and the first motion that is stopped counts as if the
// cursor had been at the barrier already: one event of a hundred in a frame.

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

bool isVertical(Side side) {
    return side == Side::left || side == Side::right;
}

/// The pixel at which the cursor stands when a side stops it.
int lastPixel(Side side, const Box& box) {
    const std::array pixels{box.left, box.right - 1, box.top, box.bottom - 1};
    return pixels[static_cast<std::size_t>(side)];
}

bool isOutwards(Side side, double way) {
    return side == Side::right || side == Side::bottom ? way > 0 : way < 0;
}

} // namespace

Hold::Hold(Connection& x, Displays& screens, bool isAllowed)
    : connection(x), displays(screens), allowed(isAllowed && x.tellsBarrierHits()) {
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
    // Without barriers nothing is followed, and a place that the cursor was put to since is right.
    isKnown &= barriers.empty();
    stopped.reset();
    delta.reset();
    meter.clear();
    replaceBarriers(held ? innerSides(box, monitors) : std::vector<Side>{});
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

/// The last motion is over: the cursor is where it led to.
void Hold::settle() {
    if (stopped) {
        before = *stopped;
        isKnown = true;
    } else if (isKnown && delta) {
        before = nearestPlace({before.x + delta->x, before.y + delta->y}, box);
    }
    stopped.reset();
    delta.reset();
}

bool Hold::isWherePut() const {
    return isKnown && putAt && std::abs(before.x - putAt->x) < 1 &&
           std::abs(before.y - putAt->y) < 1;
}

/// What leads from where the cursor was put back to the edge is a part of the push: of a slow one,
/// which is put back in each frame, it is a quarter.
void Hold::noteLead() {
    if (!isWherePut() || !delta || stopped) return;
    meter.add({lastTime, span, {}, {}, *delta});
}

void Hold::moved(Point step, double time, bool afterQuestion) {
    noteLead();
    settle();
    span = time - lastTime;
    lastTime = time;
    isKnown &= !barriers.empty();
    if (barriers.empty()) return;
    delta = step;
    if (!afterQuestion) return;
    sinceQuestion.x += step.x;
    sinceQuestion.y += step.y;
}

void Hold::asked() {
    sinceQuestion = {};
    stoppedSinceQuestion = false;
}

void Hold::placed(Point root) {
    isKnown &= !barriers.empty();
    if (barriers.empty() || stoppedSinceQuestion) return; // a stop was told later than this
    const Point last = delta.value_or(Point{});
    const Point now = stopped.value_or(Point{before.x + last.x, before.y + last.y});
    const auto agrees = [](double followed, double told) { return std::floor(followed) == told; };
    // Where they agree the followed place is the better one: it has fractions.
    const bool isRight = isKnown && agrees(now.x - sinceQuestion.x, root.x) &&
                         agrees(now.y - sinceQuestion.y, root.y);
    if (isRight && sinceQuestion == Point{}) settle();
    if (isRight) return;
    stopped.reset();
    before = root;
    if (sinceQuestion == Point{})
        delta.reset();
    else
        before = nearestPlace(
            {root.x + sinceQuestion.x - last.x, root.y + sinceQuestion.y - last.y}, box);
    isKnown = true;
}

void Hold::put(Point root) {
    stopped.reset();
    delta.reset();
    before = root;
    isKnown = true;
    putAt = root;
}

// Barriers are endless, and stop a cursor outside the screen too.
std::optional<xcb_point_t> Hold::stoppedAt() const {
    if (!stopped || barriers.empty() || !box.contains(*stopped)) return std::nullopt;
    return xcb_point_t{static_cast<std::int16_t>(std::floor(stopped->x)),
                       static_cast<std::int16_t>(std::floor(stopped->y))};
}

void Hold::hit(const xcb_input_barrier_hit_event_t& event, double time, bool afterQuestion) {
    const auto barrier = std::find_if(barriers.begin(), barriers.end(),
                                      [&](const Barrier& one) { return one.id == event.barrier; });
    if (barrier == barriers.end()) return;
    stoppedSinceQuestion |= afterQuestion;
    const Point told{fromFixed(event.dx), fromFixed(event.dy)};
    // Two barriers stop a motion into a corner. Otherwise it is another motion, even if its own raw
    // event is not read.
    const bool isSecondBarrier =
        time == lastStop.time && told == lastStop.told && event.barrier != lastStop.barrier;
    if (stopped && !isSecondBarrier) settle();
    lastStop = {time, told, event.barrier};
    stopped = Point{fromFixed(event.root_x), fromFixed(event.root_y)};

    const bool vertical = isVertical(barrier->side);
    const auto across = [vertical](Point p) { return vertical ? p.x : p.y; };
    const auto along = [vertical](Point p) { return vertical ? p.y : p.x; };
    // A motion that is not the one told, or a place that does not lead to where it was stopped, is
    // of an absolute device or of another program's warp.
    const bool sameMotion = delta && std::abs(across(*delta) - across(told)) < 1.5;
    const double step = sameMotion ? across(*delta) : across(told);
    const double start = along(*stopped) - along(told);
    const bool followed = isKnown && sameMotion && std::abs(along(before) - start) < 2.5;

    const int edge = lastPixel(barrier->side, box);
    const double cutOff = (followed ? across(before) - edge : 0) + step;
    const bool leads = followed && isWherePut();
    // Where the cursor just reaches the edge nothing is cut off.
    if (!isOutwards(barrier->side, cutOff) && !(leads && cutOff == 0)) return;
    const double at = edge;
    PushMeter::Piece piece{time, sameMotion ? span : event.dtime / 1000.0, {}, {}};
    // The first one of a contact may end a rest.
    if (event.dtime == 0 && piece.span > PushMeter::frame) piece.span = 0;
    piece.from = nearestPixel(vertical ? Point{at, start} : Point{start, at}, box);
    piece.cutOff = vertical ? Point{cutOff, 0} : Point{0, cutOff};
    if (leads) piece.lead = vertical ? Point{at - before.x, 0} : Point{0, at - before.y};
    meter.add(piece);
}

std::optional<PushSource::Push> Hold::takePush(Point place) {
    const auto sum = meter.take();
    if (!sum || barriers.empty()) return std::nullopt;
    const xcb_point_t at = displays.toRoot(place);
    const Point would{at.x + sum->cutOff.x, at.y + sum->cutOff.y};
    const Point beyond = onDesktop(would, box, monitors);
    if (box.contains(beyond)) return std::nullopt;
    const Point origin = displays.toTopLeft(0, 0);
    const auto heldAt = [](double from, double cutOff, double lead) {
        return cutOff * lead > 0 ? from - lead : from;
    };
    const Point held{heldAt(sum->from.x, sum->cutOff.x, sum->lead.x),
                     heldAt(sum->from.y, sum->cutOff.y, sum->lead.y)};
    return Push{{held.x + origin.x, held.y + origin.y}, {beyond.x + origin.x, beyond.y + origin.y}};
}

} // namespace platform::x11
