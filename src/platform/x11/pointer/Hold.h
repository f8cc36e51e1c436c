#pragma once

#include "platform/x11/pointer/HeldCursor.h"
#include "platform/x11/pointer/HoldRoles.h"
#include "platform/x11/pointer/Reach.h"
#include "platform/x11/session/Displays.h"

#include <chrono>
#include <xcb/xfixes.h>

namespace platform::x11 {

/// Keeps the cursor on one screen, and tells what is pushed against its sides. The pointer barriers
/// belong to the connection: the server removes them when the program dies.
class Hold final : public Confinement, public CursorTrack, public PushSource {
  public:
    /// On the connection that the events are read from. `allowed` false: nothing is ever held, but
    /// the screen is remembered.
    Hold(Connection& connection, Displays& displays, bool allowed = true);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    void inside(std::optional<Rect> screen) override;
    bool isBeyond(Point topLeft) const override { return wanted && !wanted->contains(topLeft); }
    void put(Point root) override;

    void moved(Point step, double time, bool afterQuestion) override {
        cursor.moved(step, time, afterQuestion);
    }
    void jumped(bool afterQuestion) override;
    void hit(const xcb_input_barrier_hit_event_t& event, double time, bool afterQuestion) override;
    void asked() override;
    bool placed(Point root) override;
    std::optional<xcb_point_t> stoppedAt() const override;

    void suspend(bool on) override;
    std::optional<Push> takePush(Point place) override;
    bool isOutOfReach(Point topLeft) const override {
        return (confined || givenUp) && isBeyond(topLeft);
    }

  private:
    struct Barrier {
        Side side;
        xcb_xfixes_barrier_t id;
    };

    void rebuild();
    void forgetOthers();
    bool isAtStop(Point root) const;
    xcb_point_t nearestBeyond(Side side, Point from) const;
    void noteTakenOut();
    void replaceBarriers(const std::vector<Side>& sides);
    Barrier build(Side side);

    Connection& connection;
    Displays& displays;
    bool allowed;
    bool suspended = false;
    std::optional<Rect> wanted; ///< top-left

    Box box;                   ///< the screen, while there are barriers
    std::vector<Box> monitors; ///< all of them
    std::vector<Barrier> barriers;
    HeldCursor cursor;

    using Clock = std::chrono::steady_clock;

    // What other clients do with the cursor.
    Reach reach;
    bool grabbed = false; ///< by somebody, at the last stop
    struct {
        Side side;
        Point at;
    } lastStop{};
    bool isTried = true;          ///< whether it can cross the side of that stop
    bool othersMove = false;      ///< at the last look it was not where it was followed to
    std::optional<Point> outside; ///< where it was seen there, unless it was put elsewhere since
    bool confined = false;        ///< and cannot come in
    bool wasInside = false;       ///< when it was last seen, or put somewhere
    int timesTakenOut = 0;        ///< by somebody, shortly one after the other
    Clock::time_point takenOutAt;
    bool givenUp = false; ///< somebody insists on having it outside
};

} // namespace platform::x11
