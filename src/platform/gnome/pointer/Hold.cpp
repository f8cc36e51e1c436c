#include "platform/gnome/pointer/Hold.h"

namespace platform::gnome {

using session::Box;

namespace {

Box boxOf(const Rect& r) {
    const int left = static_cast<int>(r.x), top = static_cast<int>(r.y);
    return {left, top, left + static_cast<int>(r.width), top + static_cast<int>(r.height)};
}

} // namespace

Hold::Hold(Hand& extension, wayland::Outputs& screens, bool isAllowed)
    : hand(extension), outputs(screens), allowed(isAllowed) {
    outputs.onLayout(this, [this] { rebuild({}); });
    hand.onFresh(this, [this](bool again) {
        held = false;
        meter.clear();
        if (again) rebuild({});
    });
}

Hold::~Hold() {
    hand.onFresh(this, {});
    outputs.onLayout(this, {});
    if (held) hand.release();
}

bool Hold::inside(std::optional<Rect> screen, std::optional<Point> place) {
    wanted = screen;
    if (wanted && !std::exchange(everWanted, true)) hand.watch(false, true);
    return rebuild(place);
}

void Hold::suspend(bool on) {
    if (suspended == on) return;
    suspended = on;
    rebuild({});
}

bool Hold::rebuild(std::optional<Point> place) {
    if (!allowed) return false;
    const wayland::Outputs::Place* target = nullptr;
    std::vector<Box> present;
    for (const auto& one : outputs.places()) {
        present.push_back(boxOf(one.area));
        const Point corner = outputs.toTopLeft({one.area.x, one.area.y});
        const Rect frame{corner.x, corner.y, one.area.width, one.area.height};
        if (wanted && !suspended && frame == *wanted) target = &one;
    }
    const bool isSame = held == (target != nullptr) && present == monitors &&
                        (!target || boxOf(target->area) == box);
    if (isSame && !place) return false;
    monitors = std::move(present);
    meter.clear();
    const bool wasHeld = std::exchange(held, target && hand.can("hold"));
    if (held) {
        box = boxOf(target->area);
        hand.hold(target->area, place);
        return place.has_value();
    }
    if (wasHeld) hand.release();
    return false;
}

void Hold::pushed(const Hand::Push& push) {
    if (!held) return;
    const double span = push.time - lastTime;
    lastTime = push.time;
    meter.reported(span);
    meter.add({push.time, span, session::nearestPixel(push.from, box), push.step});
}

std::optional<Hold::Push> Hold::takePush() {
    return pushOf(meter.take());
}

std::optional<Hold::Push> Hold::pushOf(const std::optional<session::PushMeter::Sum>& sum) const {
    if (!sum || !held) return std::nullopt;
    const Point from = sum->from;
    const Point beyond =
        session::onDesktop({from.x + sum->cutOff.x, from.y + sum->cutOff.y}, box, monitors);
    if (box.contains(beyond)) return std::nullopt;
    return Push{outputs.toTopLeft(from), outputs.toTopLeft(beyond)};
}

} // namespace platform::gnome
