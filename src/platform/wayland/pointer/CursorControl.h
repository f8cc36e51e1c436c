#pragma once

#include "platform/wayland/connection/Outputs.h"

namespace platform::wayland {

/// What each family of compositors does its own way: it keeps the cursor on an output, and moves
/// it. Nothing here waits for an answer. Main thread.
class CursorControl {
  public:
    virtual ~CursorControl() = default;

    /// From now on no pointer's motion leads off this output; null lets the cursor go.
    virtual void confine(const Outputs::Place* place) = 0;

    /// False: `confine` does nothing, and the cursor can only be put back after it has left.
    virtual bool clamps() const { return true; }

    /// Layout coordinates, on an output.
    virtual void warp(Point layout) = 0;

    /// Both: confines it to another output, and puts it there.
    virtual void cross(const Outputs::Place& place, Point layout) {
        confine(&place);
        warp(layout);
    }

    /// Has it told what lies under the resting cursor by now, where the compositor would leave that
    /// to the next motion.
    virtual void stir() {}
};

} // namespace platform::wayland
