#pragma once

#include "platform/Pointer.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

/// A cursor that stands where it was put; nothing holds it inside a screen.
class Pointer final : public platform::Pointer {
  public:
    explicit Pointer(Effects& stream) : effects(stream) {}

    Point location() override { return at; }

    void warp(Point to) override {
        effects.emit("warp", Member{"to", to});
        at = to;
    }

    void setLocalEventsSuppressionInterval(double seconds) override {
        effects.emit("suppressionInterval", Member{"seconds", seconds});
    }

    /// Only remembered: who drives the events from outside decides where the cursor gets to.
    void holdInside(std::optional<Rect> screen) override { held = screen; }
    std::optional<Rect> heldInside() const { return held; }

    /// Moves the cursor as the hand does, without an event. Top-left coordinates.
    void place(Point to) { at = to; }

  private:
    Effects& effects;
    Point at;
    std::optional<Rect> held;
};

} // namespace platform::memory
