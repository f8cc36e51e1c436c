#pragma once

#include "platform/session/HoldGeometry.h"
#include "platform/session/PushMeter.h"

#include <optional>

namespace platform::x11 {

// What it has of the room that all sessions share.
using session::Box;
using session::innerSides;
using session::isOutwards;
using session::isVertical;
using session::lastPixel;
using session::nearestPixel;
using session::nearestPlace;
using session::onDesktop;
using session::partBeyond;
using session::PushMeter;
using session::Side;

/// Follows the cursor on the screen that holds it, and measures what is pushed against its sides.
/// What it is told comes from the server's stream, in its order. Root coordinates; times are
/// seconds of the server's clock.
class HeldCursor {
  public:
    /// Barriers stand around the screen from now on. Nothing is pushed yet.
    void hold(const Box& screen);
    /// No barriers stand: nothing is followed, but a place that the cursor is put to.
    void release();

    /// A motion of a device; `afterQuestion`: after the question that is on its way.
    void moved(Point step, double time, bool afterQuestion);

    /// A device that tells places has put the cursor somewhere.
    void jumped(bool afterQuestion);

    struct Stop {
        Side side;
        Point at;    ///< where the cursor stands
        Point told;  ///< the motion, as far as the hand meant it
        double time; ///< of the motion
        bool afterQuestion;
    };
    /// A barrier stopped the motion that was told last, or one that is not told by itself.
    void stopped(const Stop& stop);

    /// The place is asked for.
    void asked();
    /// The place where the cursor was at the question. False where the motion led to another one:
    /// somebody else has moved the cursor.
    bool placed(Point root);
    /// The program has put the cursor there.
    void put(Point root);

    /// The place on the screen at which a barrier ended the last motion; nothing after another one.
    std::optional<Point> stoppedAt() const;

    struct Push {
        Point held;   ///< where it began: held there, or put back there, on the screen
        Point beyond; ///< where it would lead to, on another monitor
    };
    /// What was pushed since the last call; `place` is where the cursor is. Nothing when the cursor
    /// would still be on its screen.
    std::optional<Push> takePush(Point place, std::span<const Box> monitors);
    void forgetPush() { meter.clear(); }

  private:
    bool isWherePut() const;
    void noteLead();
    void settle();

    bool held = false;
    Box box; ///< the screen, while it is held
    PushMeter meter;

    // Where the cursor was before the last motion, and that motion.
    Point before;
    bool isKnown = false;
    std::optional<Point> delta; ///< nothing where raw motion is not read
    bool anyRead = false;       ///< since the place was told
    double span = 0;            ///< seconds since the motion before it
    double lastTime = 0;
    std::optional<Point> putAt; ///< by the program, at the last time
    std::optional<Point> stop;  ///< where a barrier stopped that motion
    struct {
        double time = 0;
        Point told;
        Side side = Side::left;
    } lastStop;

    Point sinceQuestion;
    bool stoppedSinceQuestion = false;
    bool jumpedSinceQuestion = false;
};

} // namespace platform::x11
