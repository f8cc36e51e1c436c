#pragma once

#include "platform/x11/pointer/PushMeter.h"
#include "platform/x11/pointer/Walls.h"
#include "platform/x11/session/Displays.h"

#include <optional>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

namespace platform::x11 {

// How the server holds the cursor.
//
// A pointer barrier stands on each side of the screen beyond which another monitor lies. It stops
// motion outwards only, so a cursor that came out in another way (a warp, a tablet) can come back.
// It is a line without ends: the server tells whether a slanting motion meets a barrier by a point
// mirrored at the start of the motion, so near the end of a shorter one it lets some of them pass.
//
// For each motion that a barrier stops the server tells the whole of the motion, but not where the
// cursor was before it. That is followed here: from the last place that the server told, along the
// raw motion since, which also has the fractions of pixels that the server drops at a barrier. Of
// a fast mouse the raw motion is not read, and the first motion that is stopped counts as if the
// cursor had been at the barrier already: one event of a hundred in a frame.

/// Keeps the cursor on one screen, and tells what is pushed against its sides. The pointer barriers
/// belong to the connection: the server removes them when the program dies.
class Hold {
  public:
    /// `allowed` false: nothing is ever held, but `screen` is remembered.
    Hold(Connection& connection, Displays& displays, bool allowed);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    /// Top-left coordinates. A screen that is not in the list of displays is not held.
    void inside(std::optional<Rect> screen);
    /// As long as it is suspended the server does not hold the cursor.
    void suspend(bool on);

    /// Whether the point, top-left coordinates, is outside the screen that was asked for.
    bool isBeyond(Point topLeft) const { return wanted && !wanted->contains(topLeft); }

    // What the event source reads from the server's stream, in its order.

    /// A motion of a device; `afterQuestion`: after the question that is on its way.
    void moved(Point delta, double time, bool afterQuestion);
    void hit(const xcb_input_barrier_hit_event_t& event, double time, bool afterQuestion);
    /// The place was asked for.
    void asked();
    /// The place where the cursor was at the question, root coordinates.
    void placed(Point root);
    /// The program itself put it there.
    void put(Point root);
    /// The pixel of the screen at which a barrier ended the last motion, root coordinates; nothing
    /// after another motion, as far as motion is read.
    std::optional<xcb_point_t> stoppedAt() const;

    struct Push {
        Point held;   ///< where the cursor was held, inside the screen
        Point beyond; ///< where it would be now: held, plus the push of one frame; outside
    };
    /// What was pushed since the last call, top-left coordinates; `place` is where the cursor is.
    /// Nothing when the cursor would still be inside.
    std::optional<Push> takePush(Point place);

  private:
    struct Wall {
        Side side;
        int at; ///< the line stands before this pixel
        xcb_xfixes_barrier_t id;
    };

    bool isWherePut() const;
    void noteLead();
    void rebuild();
    void replaceWalls(const std::vector<Side>& sides);
    Wall build(Side side);
    void settle();

    Connection& connection;
    Displays& displays;
    bool allowed;
    bool suspended = false;
    std::optional<Rect> wanted; ///< top-left

    Box box;                   ///< the screen, while there are walls
    std::vector<Box> monitors; ///< all of them
    std::vector<Wall> walls;
    PushMeter meter;

    // Where the cursor was before the last motion, and that motion.
    Point before;
    bool isKnown = false;
    std::optional<Point> delta; ///< nothing where raw motion is not read
    double span = 0;            ///< seconds since the motion before it
    double lastTime = 0;
    std::optional<Point> putAt;   ///< by the program, at the last time
    std::optional<Point> stopped; ///< where a barrier stopped that motion
    struct {
        double time;
        Point told;
        xcb_xfixes_barrier_t wall;
    } lastStop{};

    Point sinceQuestion;
    bool stoppedSinceQuestion = false;
};

} // namespace platform::x11
