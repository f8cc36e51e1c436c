#pragma once

#include "platform/x11/input/MotionWatch.h"
#include "platform/x11/keys/KeyboardMap.h"
#include "platform/x11/pointer/Pointer.h"

#include <bitset>
#include <optional>

namespace platform::x11 {

/// One event of a device, before it has a place.
struct RawEvent {
    enum class Kind : std::uint8_t { motion, buttonDown, buttonUp, keyDown, keyUp };
    Kind kind = Kind::motion;
    unsigned button = 0; ///< 1 left, 2 middle, 3 right, 4 to 7 scrolling
    Key key{};
    std::uint32_t sequence = 0; ///< its place in the server's stream
    double time = 0;            ///< seconds, the server's clock
    bool stopped = false;       ///< a motion that a barrier ended

    /// The core protocol's mask of the buttons that are down, from what it is on the other side.
    std::uint16_t buttonsAfter(std::uint16_t before) const;
    std::uint16_t buttonsBefore(std::uint16_t after) const;
};

/// The devices' events of the whole session, received also while another client grabs, in their
/// order and with the cursor's place. Nothing here waits for the server: where no barrier has told
/// the place it is asked for, once for all that has come, and they go on when the answer is there.
class RawInput final : private Listener {
  public:
    /// `buttonMask` is the core protocol's, as it was with the event.
    using Receiver =
        std::function<void(const RawEvent& event, Point topLeft, std::uint16_t buttonMask)>;

    /// `arrived` is called when an event has come that will be passed on.
    RawInput(Connection& connection, const Displays& displays, Pointer& pointer, Receiver receiver,
             std::function<void()> arrived);
    ~RawInput();
    RawInput(const RawInput&) = delete;
    RawInput& operator=(const RawInput&) = delete;

    void selectPointer();
    void selectKeys();
    /// Keys that are not modifiers are passed on only after this.
    void wantOtherKeys() { otherKeys = true; }

    /// From here on one more question about the cursor's place may be asked. What comes after it
    /// waits for the next frame: a fast mouse sends something new before each answer.
    void beginFrame();
    void endFrame();
    /// Whether a question is on its way.
    bool waitsForAnswer() const { return asked != 0; }

  private:
    void handle(const xcb_generic_event_t& event) override;
    void handleReply(unsigned sequence, const void* reply) override;
    void batchEnded() override;

    void findClientPointer();
    void select();
    void sendSelection();
    void readButtons();
    unsigned logicalButton(std::uint32_t physical) const;
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
    bool empty() const { return head == pending.size(); }

    Connection& connection;
    const Displays& displays;
    Pointer& pointer;
    Receiver receiver;
    std::function<void()> arrived;
    KeyboardMap keyboard;
    std::array<std::uint8_t, 256> buttonMap{}; ///< by the physical number, 0 for an unknown one
    bool buttonsStale = true;
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
