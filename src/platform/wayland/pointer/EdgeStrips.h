#pragma once

#include "platform/InputEvents.h"
#include "platform/wayland/connection/Layer.h"
#include "platform/wayland/pointer/PointerSeat.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform::wayland {

/// Invisible layers along sides of screens, over which the pointer's way is told: that it has come
/// from a place inside, and where it has left them to. A strip takes the clicks of its pixels, and
/// is told nothing while a button is held that was pressed elsewhere. Main thread.
class EdgeStrips {
  public:
    EdgeStrips(Connection& connection, Outputs& outputs, PointerSeat& pointer);
    ~EdgeStrips();
    EdgeStrips(const EdgeStrips&) = delete;
    EdgeStrips& operator=(const EdgeStrips&) = delete;

    /// As `InputEvents::watch`; the strips are where they are until the layout changes, and in the
    /// same place of the new one then.
    void watch(const PointerWatch& wanted);

    /// For a compositor that tells a layer of leaving only where the pointer has moved off it, and
    /// of the step that leads off nothing. Others also tell it of a cursor that they hide.
    void leaveByMotionAlone() { leavesByMotion = true; }

    // What the seat tells, while the connection is read. Layout coordinates.
    /// `last` is where the program knows the cursor to have been, or has put it.
    void moved(Point place, Point last);
    void meant(Point step);
    void left(Point last);

    /// Whether the pointer has come onto a strip, and this has not been taken yet. The place itself
    /// is not to be told before that.
    bool hasArrived() const { return arrival.has_value(); }
    /// Where the pointer has come from: once a batch has ended or, where the hand's speed counts,
    /// its first whole frame. Nothing while there is none, or it is too early.
    std::optional<Point> takeArrival(bool isFrameEnd);
    /// Whether the pointer has left a strip in this batch.
    bool hasLeft() const { return leftIn.has_value(); }
    /// Where it has gone to from the strips, at the end of a batch in which it has left one.
    std::optional<Point> takeDeparture();

  private:
    struct Strip {
        Rect area; ///< layout coordinates
        std::unique_ptr<Layer> layer;
    };
    struct Arrival {
        Point step; ///< the hand's, since then
    };

    void rebuild();
    const Strip* stripAt(Point layout) const;
    bool isOnStrip(Point layout) const { return stripAt(layout) != nullptr; }
    Point inside(Point layout) const;

    Connection& connection;
    Outputs& outputs;
    PointerSeat& pointer;
    PointerWatch watched;
    std::vector<Strip> strips;
    bool leavesByMotion = false;
    bool isOn = false;
    bool rests = false;          ///< there, but is not told of
    Point place;                 ///< the last one on a strip
    Point reached;               ///< by the hand since then
    std::optional<Point> leftIn; ///< this batch: the place of before
    std::optional<Arrival> arrival;
    std::optional<Point> departure;
};

} // namespace platform::wayland
