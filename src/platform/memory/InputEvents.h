#pragma once

#include "platform/InputEvents.h"
#include "platform/memory/Effects.h"

#include <deque>

namespace platform::memory {

class InputEvents final : public platform::InputEvents {
  public:
    explicit InputEvents(Effects& stream, const Clock& virtualClock)
        : effects(stream), clock(virtualClock) {}

    void addGlobalMonitor(EventMask mask, Handler handler) override;
    void addTap(const TapParameters& parameters, Handler handler) override;
    /// Only remembered: who drives the events tells of all of them.
    void watch(const PointerWatch& wanted) override { asked = wanted; }
    const PointerWatch& watched() const { return asked; }
    bool tellsMotion() const override { return motionTold; }
    void setTellsMotion(bool tells) { motionTold = tells; }

    /// Hands an event to each handler whose mask has its type, in the order of installing. The
    /// virtual time is put into it.
    void deliver(InputEvent event);

  private:
    struct Listener {
        EventMask mask;
        Handler handler;
    };

    Effects& effects;
    const Clock& clock;
    PointerWatch asked;
    bool motionTold = true;
    std::deque<Listener> listeners; ///< one may be added while another one runs
};

} // namespace platform::memory
