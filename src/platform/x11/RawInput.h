#pragma once

#include "platform/x11/KeyTable.h"
#include "platform/x11/Pointer.h"

#include <bitset>

namespace platform::x11 {

/// One event of a device, before it has a place.
struct RawEvent {
    enum class Kind : std::uint8_t { motion, buttonDown, buttonUp, keyDown, keyUp };
    Kind kind;
    unsigned button; ///< 1 left, 2 middle, 3 right, 4 to 7 scrolling
    Key key;
    std::uint32_t sequence; ///< its place in the server's stream
    double time;            ///< seconds, the server's clock
};

/// The devices' events of the whole session, received also while another client grabs, in their
/// order and with the cursor's place. Nothing here waits for the server: the place is asked for
/// once for all that has come, and they go on when the answer is there.
class RawInput final : private Listener {
  public:
    /// `buttonMask` is the core protocol's, as it was with the event.
    using Receiver =
        std::function<void(const RawEvent& event, Point topLeft, std::uint16_t buttonMask)>;

    RawInput(Connection& connection, const Displays& displays, Pointer& pointer, Receiver receiver);
    ~RawInput();
    RawInput(const RawInput&) = delete;
    RawInput& operator=(const RawInput&) = delete;

    void selectPointer();
    void selectKeys();
    /// Keys that are not modifiers are passed on only after this.
    void wantOtherKeys() { otherKeys = true; }

  private:
    void handle(const xcb_generic_event_t& event) override;
    void handleReply(unsigned sequence, const void* reply) override;
    void batchEnded() override;

    void select();
    void add(const RawEvent& event);
    void addKey(std::uint32_t keycode, bool down, RawEvent event);
    void ask();
    std::uint16_t buttonsBefore(std::size_t index, std::uint16_t mask) const;
    bool empty() const { return head == pending.size(); }

    Connection& connection;
    const Displays& displays;
    Pointer& pointer;
    Receiver receiver;
    KeyTable table;
    bool tableStale = true;
    bool pointerSelected = false;
    bool keysSelected = false;
    bool otherKeys = false;
    std::bitset<256> down;

    std::vector<RawEvent> pending; ///< from `head` on
    std::size_t head = 0;
    std::size_t covered = 0; ///< of `pending`, those that came before the question in flight
    unsigned asked = 0;      ///< its sequence, 0 for none
    unsigned warpsWhenAsked = 0;
    std::uint32_t lastTime = 0;
    double timeBase = 0;
};

} // namespace platform::x11
