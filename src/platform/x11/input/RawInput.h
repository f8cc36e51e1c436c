#pragma once

#include "platform/x11/input/MotionWatch.h"
#include "platform/x11/input/RawEvent.h"
#include "platform/x11/pointer/Pointer.h"

#include <bitset>
#include <vector>

namespace platform::x11 {

/// The devices' events of the whole session, received also while another client grabs, in their
/// order and with the cursor's place. Nothing here waits for the server.
class RawInput final : private Listener {
  public:
    class Receiver {
      public:
        /// An event has come that will be passed on.
        virtual void arrived() = 0;
        /// `buttonMask` is the core protocol's, as it was with the event.
        virtual void receive(const RawEvent& event, Point topLeft, std::uint16_t buttonMask) = 0;

      protected:
        ~Receiver() = default;
    };

    RawInput(Connection& connection, const Displays& displays, const Pointer& pointer,
             CursorTrack& track, Receiver& receiver);
    ~RawInput();
    RawInput(const RawInput&) = delete;
    RawInput& operator=(const RawInput&) = delete;

    /// Events of these types are passed on too from now on; motion is whenever a pointer's are.
    void select(EventMask types);

    /// From here on one more question about the cursor's place may be asked.
    void beginFrame();
    void endFrame();
    /// Whether a question is on its way.
    bool waitsForAnswer() const { return asked != 0; }

  private:
    void handle(const xcb_generic_event_t& event) override;
    void handleReply(unsigned sequence, const void* reply) override;
    void batchEnded() override;

    void findClientPointer();
    void sendSelection();
    void addSeenMotion(std::uint32_t sequence);
    void addMotion(const xcb_input_raw_motion_event_t& raw, const RawEvent& event);
    void addHit(const xcb_input_barrier_hit_event_t& hit);
    double seconds(std::uint32_t serverTime);
    double lastSeconds() const { return timeBase + lastTime / 1000.0; }
    bool isAfterQuestion(std::uint32_t sequence) const;
    void add(const RawEvent& event);
    void addKey(std::uint32_t keycode, bool down, RawEvent event);
    void beginAnswer();
    void ask();
    std::optional<xcb_point_t> knownPlace() const;
    void passOnFrom(xcb_point_t root);
    void passOn(Point place);

    Connection& connection;
    const Displays& displays;
    const Pointer& pointer;
    CursorTrack& track;
    Receiver& receiver;
    KeyTable table;
    bool tableStale = true;
    bool pointerSelected = false;
    std::uint16_t clientPointer = 0; ///< the device whose place the server tells
    bool keysSelected = false;
    bool otherKeys = false;
    std::bitset<256> down;

    std::vector<RawEvent> pending; ///< from `head` on
    std::size_t head = 0;
    std::size_t covered = 0; ///< of `pending`, those that the question, or the place, is about
    unsigned asked = 0;      ///< its sequence, 0 for none
    bool mayAsk = false;
    unsigned warpsWhenAsked = 0;
    std::optional<std::uint16_t> buttons; ///< the mask as last told, and what has come since
    MotionWatch motion;
    Point lastPlace; ///< where the cursor was when it was last looked at, or was put since
    std::uint32_t lastTime = 0;
    double clockAhead = 0; ///< of the server's clock, seconds
    bool anyTime = false;  ///< told by the server in this batch
    double timeBase = 0;
};

} // namespace platform::x11
