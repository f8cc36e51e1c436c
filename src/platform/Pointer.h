#pragma once

#include "platform/Geometry.h"

namespace platform {

/// The cursor's place. Points are top-left coordinates. Main thread.
class Pointer {
  public:
    virtual ~Pointer() = default;

    /// Where the cursor is. While an event is being handled this is the place that belongs to it,
    /// or where the program has put the cursor since, and costs no round trip.
    virtual Point location() = 0;

    /// Puts the cursor there. It makes no event; the move may be done only after the call returns.
    virtual void warp(Point to) = 0;

    /// For how many seconds the hand does not move the cursor after a warp. The interval in force
    /// at the warp counts.
    virtual void setLocalEventsSuppressionInterval(double seconds) = 0;
};

} // namespace platform
