#pragma once

#include "platform/InputEvents.h"
#include "platform/session/Pace.h"
#include "platform/x11/input/RawInput.h"
#include "platform/x11/pointer/Hold.h"

#include <bitset>
#include <deque>
#include <functional>

namespace platform::x11 {
using session::Pace;

/// The session's events, sorted by type and handed to those who asked for them, at the pace of a
/// display: at most sixty motions a second, and a click within the frame, after the motion before
/// it. Of a device that tells places every motion comes, and at once. While a handler runs, the
/// pointer service answers the event's own place.
///
/// A motion to a point outside the screen that the pointer holds comes right after one at the point
/// where the cursor was held, so that the step between the two is the push of one frame.
class InputEvents final : public platform::InputEvents, private RawInput::Receiver {
  public:
    /// `ownWindowActive` is asked for each event that a monitor would get.
    /// The connection is the pointer's and the hold's, and nobody else reads it.
    InputEvents(Connection& connection, Descriptors& descriptors, const Displays& displays,
                Pointer& pointer, Hold& hold, std::function<bool()> ownWindowActive);
    ~InputEvents() override;
    InputEvents(const InputEvents&) = delete;
    InputEvents& operator=(const InputEvents&) = delete;

    void addGlobalMonitor(EventMask mask, Handler handler) override;
    void addTap(const TapParameters& parameters, Handler handler) override;

    /// To be called when a window of the program has become active or is so no longer.
    void ownWindowChanged();

  private:
    struct Consumer {
        EventMask mask;
        bool isTap;
        Handler handler;
        std::bitset<256> toldKeys{}; ///< by key code, those whose press it was told last
    };

    void add(Consumer consumer);
    void readFrame();
    void arrived() override;
    void tick();
    void rest();
    void receive(const RawEvent& raw, Point place, std::uint16_t buttonMask) override;
    void receiveMotion(InputEvent event);
    void deliver(const InputEvent& event, bool isHeldBack);
    void deliverKey(const InputEvent& event, const RawEvent& raw);

    Connection& connection;
    Pointer& pointer;
    PushSource& hold;
    std::function<bool()> ownWindowActive;
    std::deque<Consumer> consumers; ///< stays in place when a handler adds one
    std::optional<Point> putBack;   ///< where the program took the cursor at the last motion
    RawInput source;
    Pace pace;
    bool anyArrived = false;
    int emptyFrames = 0;
};

} // namespace platform::x11
