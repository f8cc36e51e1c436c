#pragma once

#include "platform/gnome/connection/Hand.h"
#include "platform/session/HoldGeometry.h"
#include "platform/session/PushMeter.h"
#include "platform/wayland/connection/Outputs.h"

namespace platform::gnome {

/// Which screen the hand keeps the cursor on, and what is pushed against its sides. Main thread.
class Hold {
  public:
    /// `allowed` false: nothing is ever held, but the screen is remembered.
    Hold(Hand& hand, wayland::Outputs& outputs, bool allowed);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    /// The screen to be held from now on, top-left coordinates; with nothing the cursor is free.
    /// With a `place`, layout coordinates, the cursor is put there in the same moment; false where
    /// that was not done.
    bool inside(std::optional<Rect> screen, std::optional<Point> place = {});
    /// As long as it is suspended the cursor is not held.
    void suspend(bool on);

    /// Whether the point, top-left coordinates, is outside the screen that was asked for.
    bool isBeyond(Point topLeft) const { return wanted && !wanted->contains(topLeft); }
    /// Whether the cursor is confined, and so cannot be elsewhere.
    bool isHolding() const { return held; }
    /// Whether a screen has ever been asked for.
    bool wasWanted() const { return everWanted; }

    void pushed(const Hand::Push& push);

    struct Push {
        Point held;   ///< where it began, on the screen
        Point beyond; ///< where it would lead to, on another output
    };
    /// What was pushed since the last call, top-left coordinates. Nothing when the cursor would
    /// still be inside.
    std::optional<Push> takePush();
    /// The same in the middle of a frame; it is told again at its end.
    std::optional<Push> pushSoFar() const { return pushOf(meter.soFar()); }

  private:
    bool rebuild(std::optional<Point> place);
    std::optional<Push> pushOf(const std::optional<session::PushMeter::Sum>& sum) const;

    Hand& hand;
    wayland::Outputs& outputs;
    bool allowed;
    bool suspended = false, everWanted = false;
    std::optional<Rect> wanted; ///< top-left
    bool held = false;
    session::Box box;                   ///< the screen that is held, layout coordinates
    std::vector<session::Box> monitors; ///< all of them
    session::PushMeter meter;
    double lastTime = 0;
};

} // namespace platform::gnome
