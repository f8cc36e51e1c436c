#pragma once

#include "platform/session/HoldGeometry.h"
#include "platform/session/PushMeter.h"
#include "platform/wayland/pointer/CursorControl.h"
#include "platform/wayland/pointer/PointerSeat.h"

#include <optional>

namespace platform::wayland {

/// Keeps the cursor on one output, and measures what is pushed against its sides: on the last
/// column or row of pixels of each side beyond which another output lies there is a strip, an
/// invisible layer, over which every motion of the hand is told although the cursor stays. A strip
/// takes the clicks of those pixels. Nothing is told while a button is held that was pressed
/// elsewhere. Where the control cannot clamp, nets lie over the other outputs, invisible layers
/// that tell of a cursor which has left, and catch its clicks; what is pushed before it is back
/// counts too.
class Hold {
  public:
    /// `allowed` false: nothing is ever held, but the screen is remembered.
    Hold(Connection& connection, Outputs& outputs, PointerSeat& pointer, CursorControl& control,
         bool allowed);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    /// The screen to be held from now on, top-left coordinates; with nothing the cursor is free.
    void inside(std::optional<Rect> screen);
    /// The same, and puts the cursor there, a place on it; false where it could not.
    bool insideAt(const Rect& screen, Point place);
    /// As long as it is suspended the cursor is not held.
    void suspend(bool on);

    /// Whether the point, top-left coordinates, is outside the screen that was asked for.
    bool isBeyond(Point topLeft) const { return wanted && !wanted->contains(topLeft); }
    /// Whether the cursor is confined, and so cannot be elsewhere.
    bool isHolding() const { return held; }
    /// Whether the layer is one of the strips; null is none.
    bool isStrip(const Layer* layer) const;
    /// Where a cursor that is at this point has to be put back to, top-left coordinates both;
    /// nothing where it is inside, and where it is not for the hold to put it back.
    std::optional<Point> home(Point topLeft) const;

    /// A motion of the hand while the cursor is at a place, layout coordinates.
    void meant(Point place, Point step, double time);

    struct Push {
        Point held;   ///< where it began, on the screen
        Point beyond; ///< where it would lead to, on another output
    };
    /// What was pushed since the last call, top-left coordinates; `place` is where the cursor is.
    /// Nothing when the cursor would still be inside.
    std::optional<Push> takePush(Point place);
    /// The same, and it stays a part of what is taken later.
    std::optional<Push> pushSoFar(Point place) const;

  private:
    struct Strip {
        session::Side side;
        std::unique_ptr<Layer> layer;
        Rect area; ///< layout coordinates
    };

    bool rebuild(std::optional<Point> goal = {});
    void clear();
    std::optional<Push> pushOf(const std::optional<session::PushMeter::Sum>& sum,
                               Point place) const;

    Connection& connection;
    Outputs& outputs;
    PointerSeat& pointer;
    CursorControl& control;
    bool allowed;
    bool suspended = false;
    std::optional<Rect> wanted; ///< top-left
    bool held = false;
    ScreenId heldScreen = ScreenId::none;
    const wl_output* heldOutput = nullptr; ///< another one when the screen has gone and come back
    session::Box box;                      ///< the screen that is held, layout coordinates
    std::vector<session::Box> monitors;    ///< all of them
    std::vector<Strip> strips;
    std::vector<std::unique_ptr<Layer>> nets;
    session::PushMeter meter;
    double lastTime = 0;
};

} // namespace platform::wayland
