#pragma once

#include "platform/Pointer.h"
#include "platform/RunLoop.h"
#include "platform/x11/pointer/HoldRoles.h"
#include "platform/x11/session/Displays.h"

#include <array>
#include <chrono>
#include <xcb/xfixes.h>

namespace platform::x11 {

class Pointer final : public platform::Pointer {
  public:
    /// On the connection that the events are read from, or a warp and they would have no order.
    Pointer(Connection& connection, const Displays& displays, RunLoop& runLoop, Confinement& hold);
    ~Pointer() override;
    Pointer(const Pointer&) = delete;
    Pointer& operator=(const Pointer&) = delete;

    Point location() override;
    void warp(Point to) override;
    void setLocalEventsSuppressionInterval(double seconds) override { interval = seconds; }
    void holdInside(std::optional<Rect> screen) override;

    /// Where the last warp led.
    Point lastPut() const { return lastPlace; }
    /// The warp's place in the stream of requests: an event with a lower number is older.
    std::uint32_t lastPutSequence() const { return lastSequence; }

    /// Counts the program's own warps, so that an answer from before one is known to be stale.
    unsigned warps() const { return warpCount; }

    /// While one of these lives, an event that happened at `place` is being handled. Where the hold
    /// has kept the cursor from there, it goes there as soon as the hold ends or goes over to that
    /// place, before what else the handler has to do, and at the end where no warp has answered.
    /// The hand may be on its way between two monitors that do not touch; an event that is not
    /// `isPointers` says nothing of that, and then `location` puts the cursor onto a monitor.
    class Handling {
      public:
        Handling(Pointer& pointer, Point place, bool isHeldBack, bool isPointers = true);
        ~Handling();
        Handling(const Handling&) = delete;
        Handling& operator=(const Handling&) = delete;

      private:
        Pointer& owner;
        std::optional<Point> knownBefore, goalBefore;
        unsigned warpsBefore;
    };

    /// Lets the hand move the cursor again once the interval is over. The event source calls it
    /// too, since no timer fires under a modal alert and the user must be able to reach that.
    void releaseWhenDue();

  private:
    using Clock = std::chrono::steady_clock;

    bool isBesideAll(Point place) const;
    std::optional<xcb_point_t> nearestForWarp(xcb_point_t place) const;
    void letThrough();
    void move(Point to, xcb_point_t place);
    void pause(xcb_point_t place);
    void release();

    Connection& connection;
    const Displays& displays;
    RunLoop& runLoop;
    Confinement& hold;
    std::optional<Rect> held; ///< the screen that is to be held, top-left
    std::optional<Point> known;
    std::optional<Point> goal; ///< of an event that the cursor was held back from
    Point lastPlace;
    std::uint32_t lastSequence = 0;
    unsigned warpCount = 0;
    double interval = 0;
    std::array<xcb_xfixes_barrier_t, 4> barriers{}; ///< of the pause
    bool paused = false;
    Clock::time_point pausedUntil;
    TimerId timer = TimerId::none;
};

} // namespace platform::x11
