#pragma once

#include "platform/Geometry.h"

#include <bitset>
#include <cstdint>

namespace platform::x11 {

/// Decides, frame by frame, whether raw motion is read or the cursor is only looked at.
///
/// Reading every event of a mouse at 8000 Hz costs three times as much as looking at the cursor
/// sixty times a second. But only the events tell that a movement begins, that the hand pushes
/// where the cursor cannot move, and the fractions of pixels that a barrier cuts off. So they are
/// read at rest, where the cursor stands still, from slow mice, and at a barrier from mice that
/// move by fractions; and not from a fast mouse that moves the cursor.
class MotionWatch {
  public:
    bool readsEvents() const { return reads; }
    /// Whether the cursor has to be looked at in this frame, even if nothing has come.
    bool looks() const { return !reads || justBegan; }

    void event(Point step, std::uint16_t device);
    /// By a device that tells places: no barrier stops it, so each of them has to be seen.
    void place() { anyPlace = true; }
    void stopped(std::uint16_t device); ///< by a barrier
    void looked(bool hasMoved);

    /// Whether `readsEvents` is another one from here on.
    bool frameEnded();

  private:
    bool wish() const;

    bool reads = true;
    bool justBegan = false; ///< what came between the last look and the first event is not lost
    std::bitset<256> byFractions; ///< the devices that have moved so
    bool fractionStopped = false; ///< a motion of one of those
    int events = 0;
    bool anyStop = false;
    bool anyPlace = false;
    bool hasLooked = false;
    bool hasMoved = false;
};

} // namespace platform::x11
