#pragma once

#include "platform/gnome/pointer/Hold.h"
#include "platform/wayland/pointer/EventPointer.h"

namespace platform::gnome {

/// Who asks where the cursor is outside an event waits for the shell, a tenth of a second at most.
class Pointer final : public wayland::EventPointer {
  public:
    Pointer(Hand& extension, wayland::Outputs& screens, Hold& screenHold)
        : EventPointer(screens), hand(extension), confinement(screenHold) {}

  private:
    std::optional<Point> find() override;
    bool isHeldAt(Point place) const override;
    void put(Point to) override;
    bool hold(std::optional<Rect> screen, std::optional<Point> goal) override;

    Hand& hand;
    Hold& confinement;
};

} // namespace platform::gnome
