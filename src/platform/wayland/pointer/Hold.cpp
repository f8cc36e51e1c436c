#include "platform/wayland/pointer/Hold.h"

#include <algorithm>

namespace platform::wayland {

using session::Box;
using session::Side;

namespace {

Box boxOf(const Rect& r) {
    const int left = static_cast<int>(r.x), top = static_cast<int>(r.y);
    return {left, top, left + static_cast<int>(r.width), top + static_cast<int>(r.height)};
}

Rect stripAt(Side side, const Box& box) {
    const double at = session::lastPixel(side, box);
    const double width = box.right - box.left, height = box.bottom - box.top;
    if (session::isVertical(side)) return {at, static_cast<double>(box.top), 1, height};
    return {static_cast<double>(box.left), at, width, 1};
}

} // namespace

Hold::Hold(Connection& x, Outputs& screens, PointerSeat& seat, CursorControl& cursor,
           bool isAllowed)
    : connection(x), outputs(screens), pointer(seat), control(cursor), allowed(isAllowed) {
    outputs.onLayout(this, [this] { rebuild(); });
}

Hold::~Hold() {
    outputs.onLayout(this, {});
    clear();
    if (held) control.confine(nullptr);
}

void Hold::inside(std::optional<Rect> screen) {
    wanted = screen;
    rebuild();
}

bool Hold::insideAt(const Rect& screen, Point place) {
    wanted = screen;
    return rebuild(outputs.toLayout(place));
}

void Hold::suspend(bool on) {
    if (suspended == on) return;
    suspended = on;
    rebuild();
}

void Hold::clear() {
    for (const Strip& strip : strips)
        pointer.forget(*strip.layer);
    strips.clear();
    for (const auto& net : nets)
        pointer.forget(*net);
    nets.clear();
    meter.clear();
}

/// Whether it has put the cursor to the goal, layout coordinates.
bool Hold::rebuild(std::optional<Point> goal) {
    if (!allowed) return false;
    const Outputs::Place* place = nullptr;
    std::vector<Box> present;
    for (const Outputs::Place& one : outputs.places()) {
        present.push_back(boxOf(one.area));
        const Point corner = outputs.toTopLeft({one.area.x, one.area.y});
        const Rect frame{corner.x, corner.y, one.area.width, one.area.height};
        if (wanted && !suspended && frame == *wanted) place = &one;
    }
    const bool isSame = held == (place != nullptr) && present == monitors &&
                        (!place || (place->id == heldScreen && place->output == heldOutput &&
                                    boxOf(place->area) == box));
    if (isSame) return false;
    monitors = std::move(present);
    held = place != nullptr;
    // Before the strips go, as the compositor draws when they do.
    if (place && goal)
        control.cross(*place, *goal);
    else
        control.confine(place);
    clear();
    if (!place) return false;
    heldScreen = place->id;
    heldOutput = place->output;
    box = boxOf(place->area);
    for (const Side side : session::innerSides(box, monitors)) {
        const Rect area = stripAt(side, box);
        strips.push_back(
            {side, std::make_unique<Layer>(connection, Layer::Look{*place, area, 0, false}), area});
    }
    if (!control.clamps())
        for (const Outputs::Place& other : outputs.places())
            if (&other != place)
                nets.push_back(
                    std::make_unique<Layer>(connection, Layer::Look{other, other.area, 0, false}));
    return goal.has_value();
}

bool Hold::isStrip(const Layer* layer) const {
    return layer && std::ranges::any_of(
                        strips, [&](const Strip& strip) { return strip.layer.get() == layer; });
}

std::optional<Point> Hold::home(Point topLeft) const {
    if (!held || control.clamps()) return std::nullopt;
    const Point at = outputs.toLayout(topLeft);
    if (box.contains(at)) return std::nullopt;
    return outputs.toTopLeft(session::nearestPixel(at, box));
}

// The step before the one that brought the cursor onto the strip went to whoever was below, so a
// push counts from the next one on. A step over a net is cut off like one at the strip before it;
// the way back is a step as well to some compositors, with a clock of its own, and no report of the
// hand.
void Hold::meant(Point place, Point step, double time) {
    if (!control.clamps()) {
        const bool leadsOut = std::ranges::any_of(strips, [step](const Strip& strip) {
            return session::isOutwards(strip.side,
                                       session::isVertical(strip.side) ? step.x : step.y);
        });
        if (!leadsOut) return;
        place = session::nearestPixel(place, box);
    }
    const double span = time - lastTime;
    lastTime = time;
    meter.reported(span);
    for (const Strip& strip : strips) {
        if (!strip.area.contains(place)) continue;
        const bool vertical = session::isVertical(strip.side);
        const double way = vertical ? step.x : step.y;
        if (!session::isOutwards(strip.side, way)) continue;
        meter.add({time, span, session::nearestPixel(place, box),
                   vertical ? Point{way, 0} : Point{0, way}});
    }
}

std::optional<Hold::Push> Hold::takePush(Point place) {
    return pushOf(meter.take(), place);
}

std::optional<Hold::Push> Hold::pushSoFar(Point place) const {
    return pushOf(meter.soFar(), place);
}

std::optional<Hold::Push> Hold::pushOf(const std::optional<session::PushMeter::Sum>& sum,
                                       Point place) const {
    if (!sum || !held) return std::nullopt;
    const Point at = session::nearestPixel(outputs.toLayout(place), box);
    const Point beyond =
        session::onDesktop({at.x + sum->cutOff.x, at.y + sum->cutOff.y}, box, monitors);
    if (box.contains(beyond)) return std::nullopt;
    return Push{outputs.toTopLeft(sum->from), outputs.toTopLeft(beyond)};
}

} // namespace platform::wayland
