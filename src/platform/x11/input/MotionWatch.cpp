#include "platform/x11/input/MotionWatch.h"

#include <cmath>

namespace platform::x11 {

namespace {

// In one frame: what a mouse of 500 Hz sends.
constexpr int fewEvents = 9;

} // namespace

void MotionWatch::event(Point step, std::uint16_t device) {
    ++events;
    const bool isFraction = std::trunc(step.x) != step.x || std::trunc(step.y) != step.y;
    if (isFraction && device < byFractions.size()) byFractions.set(device);
}

void MotionWatch::stopped(std::uint16_t device) {
    anyStop = true;
    fractionStopped |= device < byFractions.size() && byFractions[device];
}

void MotionWatch::looked(bool moved) {
    hasLooked = true;
    hasMoved |= moved;
}

bool MotionWatch::wish() const {
    if (anyPlace || fractionStopped) return true;
    if (!reads) return hasLooked && !hasMoved && !anyStop;
    return events <= fewEvents || !(hasMoved || anyStop);
}

bool MotionWatch::frameEnded() {
    const bool before = reads;
    reads = wish();
    justBegan = reads && !before;
    events = 0;
    anyStop = fractionStopped = anyPlace = hasLooked = hasMoved = false;
    return reads != before;
}

} // namespace platform::x11
