#pragma once

#include "platform/x11/input/ButtonMap.h"
#include "platform/x11/input/Devices.h"
#include "platform/x11/input/Fingers.h"
#include "platform/x11/input/MotionWatch.h"
#include "platform/x11/input/RawEvent.h"
#include "platform/x11/input/SeenPlace.h"
#include "platform/x11/input/Stirring.h"

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
    /// The next frame is the last one before a rest: what is nobody's event must not be missed.
    void lookOnce() { wantsLook = pointerSelected; }
    void rested() { followsOthers = false; }
    /// Whether what comes has to be read at once: the cursor is moved by a device that tells
    /// places, which no barrier stops.
    bool readsAtOnce() const { return movedByPlaces; }
    /// Whether a question is on its way.
    bool waitsForAnswer() const { return asked != 0; }

  private:
    void handle(const xcb_generic_event_t& event) override;
    void handleReply(unsigned sequence, const void* reply) override;
    void batchEnded() override;

    void readDevices();
    void watchOthers();
    void sendSelection();
    void selectPointer();
    void selectOn(std::uint16_t device, std::uint32_t eventMask);
    void addSeenMotion(std::uint32_t sequence);
    void addMotion(const xcb_input_raw_motion_event_t& raw, const RawEvent& event);
    void addTouch(const xcb_input_raw_motion_event_t& raw, RawEvent event);
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
    void noteOtherButton(const RawEvent& event);

    Connection& connection;
    const Displays& displays;
    const Pointer& pointer;
    CursorTrack& track;
    Receiver& receiver;
    KeyboardMap keyboard;
    ButtonMap buttonMap;
    bool buttonsStale = true;
    Devices devices;
    bool devicesStale = true;
    Stirring stirring;
    bool pointerSelected = false;
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
    std::bitset<256> othersDown; ///< buttons that the mask has no bit for, by the logical number
    Fingers fingers;
    bool movedByPlaces = false;
    MotionWatch motion;
    bool wantsLook = false;      ///< whatever has come
    bool looksForOthers = false; ///< by the last question
    bool followsOthers = false;  ///< in each frame until the rest
    SeenPlace seen;
    std::uint32_t lastTime = 0;
    double clockAhead = 0; ///< of the server's clock, seconds
    bool anyTime = false;  ///< told by the server in this batch
    double timeBase = 0;
};

} // namespace platform::x11
