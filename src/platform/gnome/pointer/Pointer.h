#pragma once

#include "platform/Pointer.h"
#include "platform/gnome/pointer/Hold.h"

namespace platform::gnome {

/// Who asks where the cursor is outside an event waits for the shell, a tenth of a second at most.
class Pointer final : public platform::Pointer {
  public:
    Pointer(Hand& hand, wayland::Outputs& outputs, Hold& hold);

    Point location() override;
    /// Where the cursor is held it is a pixel beside it already, and stays there: put back from its
    /// line, the next motion of a push would be cut short.
    void warp(Point to) override;
    /// Nothing can keep the hand from moving the cursor here.
    void setLocalEventsSuppressionInterval(double) override {}
    void holdInside(std::optional<Rect> screen) override;

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
    void letThrough();
    void moved(Point to);

    Hand& hand;
    wayland::Outputs& outputs;
    Hold& hold;
    std::optional<Point> known; ///< while an event is handled
    std::optional<Point> goal;  ///< of an event that the cursor was held back from
    Point last;                 ///< where it was seen or put last, top-left
    unsigned warpCount = 0;
    bool releaseAtEnd = false; ///< of the event
};

} // namespace platform::gnome
