#pragma once

#include "platform/Geometry.h"

#include <optional>

namespace platform {

/// The cursor's place. Points are top-left coordinates. Main thread.
class Pointer {
  public:
    virtual ~Pointer() = default;

    /// Where the cursor is. While an event is being handled this is the place that belongs to it,
    /// or where the program has put the cursor since, and costs no round trip. Otherwise it is a
    /// place on a screen: a desktop that lets the cursor float between screens puts it onto the
    /// nearest one first.
    virtual Point location() = 0;

    /// Puts the cursor there; a point beside all screens stands for the nearest one on the screen
    /// that is held, or else on any. It makes no event; the move may be done only after the call
    /// returns.
    virtual void warp(Point to) = 0;

    /// For how many seconds the hand does not move the cursor after a warp. The interval in force
    /// at the warp counts.
    virtual void setLocalEventsSuppressionInterval(double seconds) = 0;

    /// Asks the platform to keep the cursor inside a screen, top-left coordinates, until the next
    /// call; with nothing the cursor is free. What the hand pushes against the screen's edges still
    /// comes as events outside it, while a button is held only where the desktop tells a program of
    /// that, and the answer to such an event decides: a warp stands, and without one the cursor
    /// goes where the event was. A platform that cannot hold ignores it, and the cursor is then
    /// really outside at such an event.
    virtual void holdInside(std::optional<Rect> screen) = 0;
};

} // namespace platform
