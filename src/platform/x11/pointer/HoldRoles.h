#pragma once

#include "platform/Geometry.h"

#include <optional>
#include <xcb/xinput.h>

// The hold as each of its three users sees it.

namespace platform::x11 {

/// To the pointer service, which moves the cursor.
class Confinement {
  public:
    /// The screen to be held from now on, top-left coordinates; with nothing the cursor is free. A
    /// screen that is not in the list of displays is not held.
    virtual void inside(std::optional<Rect> screen) = 0;
    /// Whether the point, top-left coordinates, is outside the screen that was asked for.
    virtual bool isBeyond(Point topLeft) const = 0;
    /// The program has put the cursor there, root coordinates.
    virtual void put(Point root) = 0;

  protected:
    ~Confinement() = default;
};

/// To the event source, which tells what it reads from the server's stream, in its order.
class CursorTrack {
  public:
    /// A motion of a device; `afterQuestion`: after the question that is on its way.
    virtual void moved(Point delta, double time, bool afterQuestion) = 0;
    /// A device that tells places, and no steps, has put the cursor somewhere.
    virtual void jumped(bool afterQuestion) = 0;
    virtual void hit(const xcb_input_barrier_hit_event_t& event, double time,
                     bool afterQuestion) = 0;
    /// The place is asked for next.
    virtual void asked() = 0;
    /// The place where the cursor was at the question, root coordinates. False: it is to be asked
    /// for once more.
    virtual bool placed(Point root) = 0;
    /// The pixel of the screen at which a barrier ended the last motion, root coordinates; nothing
    /// after another motion, as far as motion is read, and where somebody else may move the cursor.
    virtual std::optional<xcb_point_t> stoppedAt() const = 0;

  protected:
    ~CursorTrack() = default;
};

/// To the one who delivers the events.
class PushSource {
  public:
    struct Push {
        Point held;   ///< where the push began, inside the screen: held, or put back, there
        Point beyond; ///< where it would be now: held, plus the push of one frame; outside
    };

    /// As long as it is suspended the server does not hold the cursor.
    virtual void suspend(bool on) = 0;
    /// What was pushed since the last call, top-left coordinates; `place` is where the cursor is.
    /// Nothing when the cursor would still be inside.
    virtual std::optional<Push> takePush(Point place) = 0;
    /// Whether the point, top-left coordinates, is outside the screen that was asked for.
    virtual bool isBeyond(Point topLeft) const = 0;
    /// Whether the point, top-left coordinates, is outside that screen and the cursor is kept there
    /// by another program: no answer to what happens there would be carried out.
    virtual bool isOutOfReach(Point topLeft) const = 0;

  protected:
    ~PushSource() = default;
};

} // namespace platform::x11
