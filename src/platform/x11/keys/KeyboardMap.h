#pragma once

#include "platform/session/PhysicalKeys.h"
#include "platform/x11/connection/Connection.h"

#include <xkbcommon/xkbcommon.h>

namespace platform::x11 {
using session::PhysicalKey;
using session::physicalKey;
using session::physicalKeyAt;

/// What a virtual key code is and whether it is that of a modifier.
struct Key {
    std::uint16_t code = unknown; ///< `unknown` when the key has none
    bool modifier = false;
    static constexpr std::uint16_t unknown = 0xffff;
};

/// What the user has made of the keyboard, as it is now: the layouts, which of them is in use, and
/// which bit each modifier has. Masks are the core protocol's, flags those of platform::Shortcut.
/// Nothing but the constructor and the server's news of another map waits for the server.
class KeyboardMap final : private Listener {
  public:
    /// `changed` is called while the connection is drained, after keys have got other labels; with
    /// true when a modifier has another bit than before.
    using Changed = std::function<void(bool modifiersMoved)>;
    KeyboardMap(Connection& connection, Changed changed);
    ~KeyboardMap();
    KeyboardMap(const KeyboardMap&) = delete;
    KeyboardMap& operator=(const KeyboardMap&) = delete;

    /// False where the server lacks XKB: then the keys are those of a plain U.S. keyboard for ever.
    bool isServers() const { return firstEvent != 0; }

    /// What the layout in use prints on the key without Shift, in upper case and UTF-8; what the
    /// first layout does where it prints nothing, else the key's name.
    std::string label(const PhysicalKey& key) const;

    /// The key with that label, upper and lower case of A to Z being one, and blank and underscore;
    /// else the one on which a layout has the keysym of that name, the layout in use first; else
    /// the one that is called so on a U.S. keyboard. Null for none.
    const PhysicalKey* keyNamed(std::string_view name) const;

    Key key(xcb_keycode_t keycode) const;

    std::uint16_t maskOf(std::uint32_t flags) const;
    std::uint32_t flagsOf(std::uint16_t mask) const;

    /// Of a modifier key the bits that it sets; 0 for any other key.
    std::uint8_t bitsOfKey(xcb_keycode_t keycode) const { return keyBits[keycode]; }

    /// Every combination of the modifiers that are states of the keyboard and not held keys, none
    /// first: a grab is for one state alone.
    std::vector<std::uint16_t> lockStates() const;

  private:
    struct Held {
        std::uint32_t flag;
        std::uint16_t mask;
        bool operator==(const Held&) const = default;
    };
    struct Unref {
        void operator()(xkb_keymap* map) const { xkb_keymap_unref(map); }
    };
    using Keymap = std::unique_ptr<xkb_keymap, Unref>;

    void handle(const xcb_generic_event_t& event) override;
    void batchEnded() override;

    void selectEvents();
    void read();
    Keymap compile() const;
    xkb_keysym_t keysym(xcb_keycode_t keycode, unsigned layout, unsigned level = 0) const;
    std::uint16_t bitOf(std::initializer_list<xkb_keysym_t> keys, unsigned otherwise) const;

    Connection& connection;
    Changed changed;
    std::uint8_t firstEvent = 0; ///< of XKB, 0 where the server lacks it
    Keymap keymap;               ///< null where none can be had
    unsigned layout = 0;
    bool mapStale = false;
    std::array<std::uint8_t, 256> keyBits{};
    std::array<Held, 4> held{};
    std::array<std::uint16_t, 3> locks{}; ///< bits, 0 for a key that there is not
};

} // namespace platform::x11
