#pragma once

#include "platform/x11/connection/Connection.h"

#include <array>
#include <vector>

namespace platform::x11 {

/// What the user has made of the keyboard: the layout, and which bit each modifier has. Masks are
/// the core protocol's, flags those of platform::Shortcut.
class KeyboardMap {
  public:
    /// Asks the server; a round trip. True when a modifier has another bit than before.
    bool read(Connection& connection);

    /// The unshifted keysym of a layout, 0 being the first; 0 where there is none.
    xcb_keysym_t keysym(xcb_keycode_t keycode, unsigned layout) const;

    std::uint16_t maskOf(std::uint32_t flags) const;
    std::uint32_t flagsOf(std::uint16_t mask) const;

    /// Of a modifier key the bits that it sets; 0 for any other key.
    std::uint8_t bitsOfKey(xcb_keycode_t keycode) const { return keyBits[keycode]; }

    /// Every combination of the modifiers that are states of the keyboard and not held keys, none
    /// first: a grab is for one state alone.
    std::vector<std::uint16_t> lockStates() const;

  private:
    struct Bits {
        std::uint16_t option = XCB_MOD_MASK_1;
        std::uint16_t command = XCB_MOD_MASK_4;
        std::uint16_t numLock = 0;
        std::uint16_t scrollLock = 0;
        bool operator==(const Bits&) const = default;
    };

    Bits findBits() const;
    bool sets(std::uint8_t bit, std::initializer_list<xcb_keysym_t> keysyms) const;

    std::vector<xcb_keysym_t> keysyms;
    std::size_t perKey = 0;
    std::size_t firstKeycode = 0;
    std::array<std::uint8_t, 256> keyBits{};
    Bits bits;
};

} // namespace platform::x11
