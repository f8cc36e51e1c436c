#pragma once

#include "platform/InputEvents.h"
#include "platform/gnome/pointer/Pointer.h"
#include "platform/session/Pace.h"

#include <deque>

namespace platform::gnome {

/// What the extension tells of the session's events. As long as no screen is held the place of the
/// cursor comes at the pace of a display; of a screen that is held only what is pushed against its
/// sides: a motion to a point outside comes right after one at the point where the cursor was held,
/// so that the step between the two is the push of one frame.
class InputEvents final : public platform::InputEvents {
  public:
    /// `ownWindowActive` is asked for each event that a monitor would get.
    InputEvents(Hand& hand, Descriptors& descriptors, wayland::Outputs& outputs, Pointer& pointer,
                Hold& hold, std::function<bool()> ownWindowActive);
    ~InputEvents() override;
    InputEvents(const InputEvents&) = delete;
    InputEvents& operator=(const InputEvents&) = delete;

    void addGlobalMonitor(EventMask mask, Handler handler) override;
    void addTap(const TapParameters& parameters, Handler handler) override;
    void watch(const PointerWatch& wanted) override;

    /// To be called when a window of the program has become active or is so no longer.
    void ownWindowChanged() { hold.suspend(ownWindowActive()); }

    /// As long as it is on, modifiers are told to nobody.
    void withholdModifiers(bool on) { withheld = on; }

  private:
    struct Consumer {
        EventMask mask;
        bool isTap;
        Handler handler;
    };

    void seen(const Hand::Seen& sight);
    void tellModifiers(Hand::State state);
    void tick();
    void tell(const Hold::Push& push);
    void takeBack();
    void deliver(EventType type, Point place, bool isHeldBack);

    Hand& hand;
    wayland::Outputs& outputs;
    Pointer& pointer;
    Hold& hold;
    std::function<bool()> ownWindowActive;
    std::deque<Consumer> consumers; ///< stays in place when a handler adds one
    session::Pace pace;
    Hand::Seen last;
    Hand::State toldModifiers = 0; ///< whose presses were told, and whose releases will be
    std::optional<Hold::Push> lastPush;
    bool withheld = false;
    bool anyPush = false;
    double crossing = 0; ///< as in PointerWatch
    int emptyFrames = 0;
};

} // namespace platform::gnome
