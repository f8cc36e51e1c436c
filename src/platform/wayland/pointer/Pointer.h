#pragma once

#include "platform/Pointer.h"
#include "platform/wayland/pointer/Hold.h"

namespace platform::wayland {

/// Nobody is told where the cursor is, so who asks outside an event gets the place from layers that
/// lie over all outputs for that moment, for which it waits a tenth of a second at most.
class Pointer final : public platform::Pointer {
  public:
    Pointer(Connection& connection, Outputs& outputs, PointerSeat& seat, CursorControl& control,
            Hold& hold);

    Point location() override;
    /// Where the cursor is held it is a pixel beside it already, and stays there: put back from its
    /// strip, the next motion of a push would go to somebody else.
    void warp(Point to) override;
    /// Nothing can keep the hand from moving the cursor here.
    void setLocalEventsSuppressionInterval(double) override {}
    void holdInside(std::optional<Rect> screen) override;

    /// For the hold: the cursor has left, and goes back to this point on the screen that is held.
    void putBack(Point home);
    /// Whether the cursor, seen at a point, top-left, has just come to where the program put it. To
    /// be asked of each place that is seen; once for a warp.
    bool takeArrival(Point at);

    /// The handling of one event. The event's place is the cursor's place meanwhile. An event that
    /// the cursor was held back from is carried out at the end, unless the program has warped the
    /// cursor.
    class Handling {
      public:
        Handling(Pointer& pointer, Point place, bool isHeldBack);
        ~Handling();
        Handling(const Handling&) = delete;
        Handling& operator=(const Handling&) = delete;

      private:
        Pointer& owner;
        std::optional<Point> knownBefore, goalBefore;
        unsigned warpsBefore;
    };

  private:
    std::optional<Point> probe();
    void letThrough();
    void noteWarp(Point to);
    void put(Point to);

    Connection& connection;
    Outputs& outputs;
    PointerSeat& seat;
    CursorControl& control;
    Hold& hold;
    std::optional<Point> known;   ///< while an event is handled
    std::optional<Point> goal;    ///< of an event that the cursor was held back from
    Point last;                   ///< where it was seen or put last, top-left
    std::optional<Point> awaited; ///< where it was put, until it is seen somewhere
    unsigned warpCount = 0;
    bool releaseAtEnd = false; ///< of the event
};

} // namespace platform::wayland
