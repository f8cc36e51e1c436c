#pragma once

#include "platform/x11/connection/Connection.h"

#include <array>

namespace platform::x11 {

/// What a virtual key code is and whether it is that of a modifier.
struct Key {
    std::uint16_t code = 0xffff; ///< `unknown` when the key has none
    bool modifier = false;
    static constexpr std::uint16_t unknown = 0xffff;
};

Key keyOfKeysym(xcb_keysym_t keysym);

/// The keyboard's keys by the server's key codes, and its buttons by their physical numbers.
class KeyTable {
  public:
    /// Asks the server; a round trip.
    void read(Connection& connection);

    Key key(std::uint32_t keycode) const { return keycode < keys.size() ? keys[keycode] : Key{}; }
    /// Raw events carry the physical number, from before the user's swapping of the buttons.
    unsigned button(unsigned physical) const {
        return physical >= 1 && physical < buttons.size() && buttons[physical] ? buttons[physical]
                                                                               : physical;
    }

  private:
    std::array<Key, 256> keys{};
    std::array<std::uint8_t, 256> buttons{};
};

} // namespace platform::x11
