#pragma once

#include "platform/Pointer.h"
#include "platform/wayland/connection/Outputs.h"

#include <optional>

namespace platform::wayland {

/// The pointer of a desktop that tells where the cursor is in its events alone: while one is
/// handled its place is the cursor's, and who asks at another time waits. Points are top-left
/// coordinates where nothing else is said. Main thread.
class EventPointer : public platform::Pointer {
  public:
    Point location() final;
    /// Where the cursor is held it is a pixel beside it already, and stays there: put back from its
    /// edge, the next motion of a push would be lost.
    void warp(Point to) final;
    /// Nothing can keep the hand from moving the cursor here.
    void setLocalEventsSuppressionInterval(double) final {}
    void holdInside(std::optional<Rect> screen) final;

    /// Where it was seen or put last.
    Point lastPlace() const { return last; }

    /// The handling of one event. An event that the cursor was held back from is carried out at the
    /// end, unless the program has warped the cursor.
    class Handling {
      public:
        Handling(EventPointer& pointer, Point place, bool isHeldBack);
        ~Handling();
        Handling(const Handling&) = delete;
        Handling& operator=(const Handling&) = delete;

      private:
        EventPointer& owner;
        std::optional<Point> knownBefore, beyondBefore;
        unsigned warpsBefore;
    };

  protected:
    explicit EventPointer(Outputs& screens) : outputs(screens) {}

    Outputs& outputs;
    Point last;

  private:
    /// Asks where the cursor is, layout coordinates; a fraction of a second at most.
    virtual std::optional<Point> find() = 0;
    /// Whether the cursor is confined to the screen that has this point.
    virtual bool isHeldAt(Point place) const = 0;
    virtual void put(Point to) = 0;
    /// The screen to be held from now on. With a `goal`, a place on it, the cursor is put there in
    /// the same moment; false where that was not done.
    virtual bool hold(std::optional<Rect> screen, std::optional<Point> goal) = 0;

    void letThrough();
    void noteWarp(Point to);

    std::optional<Point> known;  ///< while an event is handled
    std::optional<Point> beyond; ///< of an event that the cursor was held back from
    unsigned warpCount = 0;
    bool releaseAtEnd = false; ///< of the event
};

} // namespace platform::wayland
