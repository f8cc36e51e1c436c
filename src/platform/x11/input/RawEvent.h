#pragma once

#include "platform/InputEvents.h"
#include "platform/x11/keys/KeyboardMap.h"

#include <optional>

namespace platform::x11 {

constexpr EventMask otherKeyTypes = maskOf(EventType::keyDown) | maskOf(EventType::keyUp);
constexpr EventMask keyTypes = otherKeyTypes | maskOf(EventType::flagsChanged);

/// One event of a device, before it has a place. Masks of buttons are the core protocol's.
struct RawEvent {
    enum class Kind : std::uint8_t { motion, buttonDown, buttonUp, keyDown, keyUp };
    Kind kind = Kind::motion;
    unsigned button = 0; ///< 1 left, 2 middle, 3 right, 4 to 7 scrolling
    xcb_keycode_t keycode = 0;
    Key key{};
    std::uint32_t sequence = 0; ///< its place in the server's stream
    double time = 0;            ///< seconds, the server's clock
    bool stopped = false;       ///< a motion that a barrier ended

    bool isPress() const { return kind == Kind::buttonDown || kind == Kind::keyDown; }

    /// Which buttons are down, from those on the other side of the event.
    std::uint16_t buttonsAfter(std::uint16_t before) const;
    std::uint16_t buttonsBefore(std::uint16_t after) const;

    /// What it is for the program; nothing for the half of a scrolling step.
    std::optional<EventType> type(std::uint16_t buttons) const;
};

} // namespace platform::x11
