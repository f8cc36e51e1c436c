#pragma once

#include "platform/InputEvents.h"
#include "platform/x11/keys/KeyboardMap.h"

#include <optional>
#include <xcb/xproto.h>

namespace platform::x11 {

constexpr EventMask otherKeyTypes = maskOf(EventType::keyDown) | maskOf(EventType::keyUp);
constexpr EventMask keyTypes = otherKeyTypes | maskOf(EventType::flagsChanged);

/// In a mask of buttons, which is the core protocol's and has a bit for each of the first five: any
/// of those behind them.
constexpr std::uint16_t otherButtons = XCB_BUTTON_MASK_5 << 1;

/// One event of a device, mostly before it has a place. Of the fingers on a touch screen it is the
/// one alone that moves the cursor.
struct RawEvent {
    enum class Kind : std::uint8_t {
        motion,
        buttonDown,
        buttonUp,
        keyDown,
        keyUp,
        fingerDown,
        fingerMoved,
        fingerUp
    };
    Kind kind = Kind::motion;
    unsigned button = 0; ///< 1 left, 2 middle, 3 right, 4 to 7 scrolling
    xcb_keycode_t keycode = 0;
    Key key{};
    std::uint32_t sequence = 0;         ///< its place in the server's stream
    double time = 0;                    ///< seconds, the server's clock
    bool stopped = false;               ///< a motion that a barrier ended
    std::optional<xcb_point_t> place{}; ///< root coordinates, where the device has told it

    bool isMotion() const { return kind == Kind::motion || kind == Kind::fingerMoved; }
    bool isPress() const { return kind == Kind::buttonDown || kind == Kind::keyDown; }

    /// Which buttons are down, from those on the other side of the event.
    std::uint16_t buttonsAfter(std::uint16_t before) const;
    std::uint16_t buttonsBefore(std::uint16_t after) const;

    /// What it is for the program; nothing for the half of a scrolling step.
    std::optional<EventType> type(std::uint16_t buttons) const;
};

} // namespace platform::x11
