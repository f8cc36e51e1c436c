#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace platform::session {

/// A key by its place on the keyboard, whatever the layout prints on it.
struct PhysicalKey {
    std::uint16_t virtualCode;
    std::uint8_t evdevCode;
    std::string_view name; ///< of a character key, what the U.S. layout prints on it

    /// The layout decides what it is called.
    bool isCharacter() const { return name.size() == 1; }

    /// XKB numbers the kernel's keys from 8 on, since X has no key code below.
    static constexpr std::uint8_t firstKeycode = 8;
    std::uint8_t keycode() const { return static_cast<std::uint8_t>(evdevCode + firstKeycode); }
};

/// Null for a virtual key code that no keyboard here has, modifiers included.
const PhysicalKey* physicalKey(std::uint16_t virtualCode);

/// Null for a key that has no virtual key code, modifiers included.
const PhysicalKey* physicalKeyAt(std::uint8_t keycode);

/// Whether two names of keys are one to a user: letters of both cases are, and a blank and an
/// underscore.
bool isSameName(std::string_view a, std::string_view b);

} // namespace platform::session
