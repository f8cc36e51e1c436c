#pragma once

#include "platform/InputEvents.h"
#include "platform/session/Pace.h"
#include "platform/wayland/pointer/EdgeStrips.h"
#include "platform/wayland/pointer/Pointer.h"

#include <deque>
#include <functional>

namespace platform::wayland {

/// What a client can know of the session's events: what happens over the program's own layers, at
/// the pace of a display. A motion to a point outside the screen that the pointer holds comes right
/// after one at the point where the cursor was held, so that the step between the two is the push
/// of one frame. The modifiers are told by whoever finds them out.
class InputEvents final : public platform::InputEvents, private PointerSeat::Listener {
  public:
    /// `ownWindowActive` is asked for each event that a monitor would get.
    InputEvents(Connection& connection, Descriptors& descriptors, Outputs& outputs,
                PointerSeat& seat, Pointer& pointer, Hold& hold, EdgeStrips& edges,
                std::function<bool()> ownWindowActive);
    ~InputEvents() override;
    InputEvents(const InputEvents&) = delete;
    InputEvents& operator=(const InputEvents&) = delete;

    void addGlobalMonitor(EventMask mask, Handler handler) override;
    void addTap(const TapParameters& parameters, Handler handler) override;
    void watch(const PointerWatch& wanted) override;
    bool tellsMotion() const override { return teller != nullptr; }

    /// For a compositor that can tell of every motion, by `tellPlace`: called whenever something
    /// else than before is to be told. One handler.
    void onWatch(std::function<void(const PointerWatch&)> handler) { teller = std::move(handler); }

    /// To be called when a window of the program has become active or is so no longer.
    void ownWindowChanged() { hold.suspend(ownWindowActive()); }

    /// The compositor has told where the cursor is, layout coordinates.
    void tellPlace(Point layout);

    /// The hand has pushed the cursor out of the screen that is held, so far in one frame from a
    /// place on it, layout coordinates both.
    void tellCrossing(Point from, Point step);

    /// A modifier was pressed or released; a virtual key code.
    void tellModifier(std::uint16_t keyCode);

  private:
    struct Consumer {
        EventMask mask;
        bool isTap;
        Handler handler;
    };

    void moved(Point place) override;
    void left() override { edges.left(outputs.toLayout(pointer.lastPlace())); }
    void meant(Point step, double time) override;
    void button(std::uint32_t code, bool down) override;
    void scrolled() override { note(EventType::scrollWheel); }

    void startWatching();
    void note(EventType type);
    void batchEnded();
    bool putBack();
    void tick();
    void readMotion();
    bool isEnough(const Hold::Push& push) const;
    void tell(const Hold::Push& push);
    void chooseReading();
    void tellEdges(bool isFrameEnd);
    void deliver(EventType type, Point place, bool isHeldBack);

    Connection& connection;
    Outputs& outputs;
    PointerSeat& seat;
    Pointer& pointer;
    Hold& hold;
    EdgeStrips& edges;
    std::function<bool()> ownWindowActive;
    std::function<void(const PointerWatch&)> teller;
    PointerWatch asked;
    PointerWatch watched; ///< the same, but while an event is delivered
    bool isDelivering = false;
    std::deque<Consumer> consumers; ///< stays in place when a handler adds one
    session::Pace pace;
    std::vector<EventType> noted; ///< clicks of this batch
    Point place;                  ///< the last one told, top-left
    double time = 0;              ///< of the last motion
    std::uint32_t buttonsDown = 0;
    bool hasMoved = false; ///< since it was delivered
    bool anyArrived = false;
    bool isFrameHalfOver = false;
    int emptyFrames = 0;
};

} // namespace platform::wayland
