#include "platform/x11/input/MotionWatch.h"

#include <cmath>

namespace platform::x11 {

namespace {

// In one frame: what a mouse of 500 Hz sends.
constexpr int fewEvents = 9;

} // namespace

void MotionWatch::event(Point step) {
    ++events;
    fractions = std::trunc(step.x) != step.x || std::trunc(step.y) != step.y;
}

void MotionWatch::looked(bool moved) {
    hasLooked = true;
    hasMoved |= moved;
}

bool MotionWatch::wish() const {
    if (anyPlace || (anyStop && fractions)) return true;
    if (!reads) return hasLooked && !hasMoved && !anyStop;
    return events <= fewEvents || !(hasMoved || anyStop);
}

bool MotionWatch::frameEnded() {
    const bool before = reads;
    reads = wish();
    justBegan = reads && !before;
    events = 0;
    anyStop = anyPlace = hasLooked = hasMoved = false;
    return reads != before;
}

} // namespace platform::x11
