#pragma once

#include "platform/x11/pointer/Pointer.h"

namespace platform::x11 {

/// Where the cursor was when it was last looked at, top-left coordinates, or where the program has
/// put it since: one's own warps are none of another's moves.
class SeenPlace {
  public:
    /// Both that are lent must outlive the object.
    SeenPlace(const Displays& screens, const Pointer& cursor)
        : displays(screens), pointer(cursor) {}

    void isAt(Point place);

    /// Whether it is elsewhere now. By a pixel a place that a barrier or a finger told may be
    /// wrong: `roughly` that is no move.
    bool movesTo(Point place, bool roughly);

  private:
    const Displays& displays;
    const Pointer& pointer;
    Point seen;
    unsigned warpsThen = 0;
};

} // namespace platform::x11
