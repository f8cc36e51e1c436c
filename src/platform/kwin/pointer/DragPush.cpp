#include "platform/kwin/pointer/DragPush.h"

#include <algorithm>
#include <cmath>

namespace platform::kwin {

DragPush::DragPush(Script& inside, EmulatedPointer& hand, wayland::LayerServices& services,
                   Descriptors& descriptors)
    : script(inside), pointer(hand), shared(services), pace(descriptors, [this] { tick(); }) {
    script.onTold("edge", [this](const JsonValue::List&) { cameToEdge(); });
    script.onTold("inside", [this](const JsonValue::List&) { pace.stop(); });
    script.onTold("crossed", [this](const JsonValue::List& words) { crossed(words); });
}

DragPush::~DragPush() {
    for (const char* name : {"edge", "inside", "crossed"})
        script.onTold(name, {});
}

void DragPush::setCrossing(double pixels) {
    if (crossing == pixels) return;
    crossing = pixels;
    again();
}

void DragPush::again() {
    pace.stop();
    script.run("crossing", {crossing});
}

bool DragPush::isOnStrip() const {
    return shared.hold.isStrip(shared.seat.focus());
}

// What was pushed so far would count as soon as the barrier is lower.
void DragPush::cameToEdge() {
    if (!shared.hold.isHolding() || isOnStrip()) return;
    forget();
    script.run("drag", {1.0});
    pace.start();
}

void DragPush::forget() {
    pointer.rest();
    frameBegan = Clock::now();
}

// A strip has the cursor as soon as the button is released.
void DragPush::tick() {
    if (!shared.hold.isHolding() || isOnStrip())
        end();
    else
        forget();
}

void DragPush::end() {
    pace.stop();
    script.run("drag", {0.0});
}

// A frame that has lasted longer than it should has summed up more.
void DragPush::crossed(const JsonValue::List& words) {
    constexpr double slack = 1.25;
    const auto numbers = numbersOf(words);
    pace.stop();
    if (numbers.size() != 4 || !shared.hold.isHolding()) return;
    const Point from{numbers[0], numbers[1]}, now{numbers[2], numbers[3]};
    const std::chrono::duration<double> took = Clock::now() - frameBegan;
    const std::chrono::duration<double> frame = session::Pace::period;
    const double way = now.x - from.x;
    const double length = (crossing + std::abs(way)) * std::min(1.0, slack * frame / took);
    shared.input.tellCrossing(from, {std::copysign(length, way), now.y - from.y});
}

} // namespace platform::kwin
