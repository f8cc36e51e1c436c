#include "platform/wayland/pointer/EdgeStrips.h"

#include "platform/session/HoldGeometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::wayland {

namespace {

// So far inside a screen a point is at none of its edges.
constexpr double inset = 2;

// The compositor rounds the place of a warp to its own fractions of a pixel.
constexpr double samePlace = 1.5;

bool areSame(Point a, Point b) {
    return std::hypot(a.x - b.x, a.y - b.y) < samePlace;
}

bool isInside(const Rect& inner, const Rect& outer) {
    return inner.width > 0 && inner.height > 0 && inner.x >= outer.x && inner.y >= outer.y &&
           inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

/// Whether another output lies beyond the side that the strip lies along.
bool leadsToAnother(const Rect& strip, const Outputs::Place& place,
                    std::span<const Outputs::Place> all) {
    const Rect& whole = place.area;
    const bool upright = strip.width < strip.height;
    Rect beyond = strip;
    if (upright)
        beyond.x = strip.x == whole.x ? whole.x - 1 : whole.x + whole.width;
    else
        beyond.y = strip.y == whole.y ? whole.y - 1 : whole.y + whole.height;
    (upright ? beyond.width : beyond.height) = 1;
    return std::ranges::any_of(all, [&](const Outputs::Place& other) {
        const Rect& r = other.area;
        return beyond.x < r.x + r.width && r.x < beyond.x + beyond.width &&
               beyond.y < r.y + r.height && r.y < beyond.y + beyond.height;
    });
}

} // namespace

EdgeStrips::EdgeStrips(Connection& x, Outputs& screens, PointerSeat& seat)
    : connection(x), outputs(screens), pointer(seat) {
    outputs.onLayout(this, [this] { rebuild(); });
}

EdgeStrips::~EdgeStrips() {
    outputs.onLayout(this, {});
    for (const Strip& strip : strips)
        pointer.forget(*strip.layer);
}

void EdgeStrips::watch(const PointerWatch& wanted) {
    const bool isSame = wanted.strips == watched.strips;
    watched = wanted;
    if (!isSame) rebuild();
}

// Between monitors a strip lies below the overlays, since there may be one that holds the cursor,
// which has to hear every push.
void EdgeStrips::rebuild() {
    for (const Strip& strip : strips)
        pointer.forget(*strip.layer);
    strips.clear();
    isOn = false;
    leftIn.reset();
    arrival.reset();
    departure.reset();
    for (const Rect& wanted : watched.strips) {
        const Point corner = outputs.toLayout(Point{wanted.x, wanted.y});
        const Rect area{corner.x, corner.y, wanted.width, wanted.height};
        const auto places = outputs.places();
        const auto screen = std::ranges::find_if(
            places, [&](const Outputs::Place& one) { return isInside(area, one.area); });
        if (screen == places.end()) continue;
        strips.push_back(
            {area, std::make_unique<Layer>(
                       connection, Layer::Look{.place = *screen,
                                               .area = area,
                                               .isBelow = leadsToAnother(area, *screen, places)})});
    }
}

const EdgeStrips::Strip* EdgeStrips::stripAt(Point layout) const {
    const auto found = std::ranges::find_if(
        strips, [&](const Strip& strip) { return strip.area.contains(layout); });
    return found != strips.end() ? &*found : nullptr;
}

Point EdgeStrips::inside(Point layout) const {
    const Outputs::Place* const screen = outputs.at(layout);
    if (!screen) return layout;
    const Rect& r = screen->area;
    const auto within = [](double value, double least, double length) {
        return std::clamp(value, least + inset,
                          std::max(least + inset, least + length - inset - 1));
    };
    return {within(layout.x, r.x, r.width), within(layout.y, r.y, r.height)};
}

void EdgeStrips::moved(Point at, Point last) {
    const bool wasOn = std::exchange(isOn, isOnStrip(at));
    if (!isOn) return;
    // From strip to strip it has not been inside, nor where the program has put it, nor where it
    // has only not been told for a time: a cursor that is hidden is over nothing until it moves.
    // Who reads late finds that it has gone in and come out again.
    const bool isAnother = leftIn && (!departure || stripAt(at) != stripAt(*leftIn));
    const bool wasPut = areSame(at, last) && !areSame(last, place);
    const bool hasRested = std::exchange(rests, false) && areSame(at, place);
    departure.reset();
    if (!wasOn && !isAnother && !wasPut && !hasRested) arrival = Arrival{};
    place = reached = at;
}

void EdgeStrips::meant(Point step) {
    if (!isOn) return;
    reached = outputs.nearest({reached.x + step.x, reached.y + step.y});
    if (arrival) arrival->step = {arrival->step.x + step.x, arrival->step.y + step.y};
}

// The step that leads off a strip is still told, before the pointer has left.
void EdgeStrips::left(Point last) {
    if (!std::exchange(isOn, false)) return;
    leftIn = place;
    const bool isPutElsewhere = !isOnStrip(last);
    rests = false;
    if (isPutElsewhere) return;
    const bool hasRested = isOnStrip(reached);
    rests = hasRested && !leavesByMotion;
    if (!rests) departure = hasRested ? inside(reached) : reached;
}

std::optional<Point> EdgeStrips::takeArrival(bool isFrameEnd) {
    if (!arrival || (watched.pushes && !isFrameEnd && isOn)) return std::nullopt;
    const Point step = std::exchange(arrival, std::nullopt)->step;
    return inside({place.x - step.x, place.y - step.y});
}

std::optional<Point> EdgeStrips::takeDeparture() {
    leftIn.reset();
    return std::exchange(departure, std::nullopt);
}

} // namespace platform::wayland
