#pragma once

#include "platform/wayland/pointer/EventPointer.h"
#include "platform/wayland/pointer/Hold.h"

namespace platform::wayland {

/// Nobody is told where the cursor is, so who asks outside an event gets the place from layers that
/// lie over all outputs for that moment, for which it waits two tenths of a second at most.
class Pointer final : public EventPointer {
  public:
    Pointer(Connection& connection, Outputs& outputs, PointerSeat& seat, CursorControl& control,
            Hold& hold);

    /// For the hold: the cursor has left, and goes back to this point on the screen that is held.
    void putBack(Point home);
    /// Whether the cursor, seen at a point, top-left, has just come to where the program put it. To
    /// be asked of each place that is seen; once for a warp.
    bool takeArrival(Point at);

  private:
    std::optional<Point> find() override;
    bool isHeldAt(Point place) const override;
    void put(Point to) override;
    bool hold(std::optional<Rect> screen, std::optional<Point> goal) override;
    std::optional<Point> probe();

    Connection& connection;
    PointerSeat& seat;
    CursorControl& control;
    Hold& confinement;
    std::optional<Point> awaited; ///< where it was put, until it is seen somewhere
};

} // namespace platform::wayland
