#pragma once

#include "platform/InputEvents.h"
#include "platform/x11/RawInput.h"

#include <deque>

namespace platform::x11 {

/// The session's events, sorted by type and handed to those who asked for them. While a handler
/// runs, the pointer service answers the event's own place.
class InputEvents final : public platform::InputEvents {
  public:
    /// `ownWindowActive` is asked for each pointer event that a monitor would get.
    InputEvents(Connection& connection, const Displays& displays, Pointer& pointer,
                std::function<bool()> ownWindowActive);

    void addGlobalMonitor(EventMask mask, Handler handler) override;
    void addTap(const TapParameters& parameters, Handler handler) override;

  private:
    struct Consumer {
        EventMask mask;
        bool isTap;
        Handler handler;
    };

    void add(Consumer consumer);
    void receive(const RawEvent& raw, Point place, std::uint16_t buttonMask);

    Pointer& pointer;
    std::function<bool()> ownWindowActive;
    std::deque<Consumer> consumers; ///< stays in place when a handler adds one
    RawInput source;
};

} // namespace platform::x11
