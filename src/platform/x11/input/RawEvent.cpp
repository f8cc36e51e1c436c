#include "platform/x11/input/RawEvent.h"

namespace platform::x11 {

namespace {

std::uint16_t maskWith(std::uint16_t mask, unsigned button, bool down) {
    if (button < 1 || button > 5) return mask;
    const auto bit = static_cast<std::uint16_t>(XCB_BUTTON_MASK_1 << (button - 1));
    return static_cast<std::uint16_t>(down ? mask | bit : mask & ~bit);
}

EventType motionType(std::uint16_t buttons) {
    if (buttons & XCB_BUTTON_MASK_1) return EventType::leftMouseDragged;
    if (buttons & XCB_BUTTON_MASK_3) return EventType::rightMouseDragged;
    if (buttons & (XCB_BUTTON_MASK_2 | otherButtons)) return EventType::otherMouseDragged;
    return EventType::mouseMoved;
}

// A step of the wheel is a press and a release of a button; one of them is enough.
std::optional<EventType> buttonType(unsigned button, bool down) {
    if (button == 1) return down ? EventType::leftMouseDown : EventType::leftMouseUp;
    if (button == 3) return down ? EventType::rightMouseDown : EventType::rightMouseUp;
    if (button < 4 || button > 7) return down ? EventType::otherMouseDown : EventType::otherMouseUp;
    if (down) return EventType::scrollWheel;
    return std::nullopt;
}

} // namespace

// The server counts the finger that moves the cursor as the first button.
std::uint16_t RawEvent::buttonsAfter(std::uint16_t before) const {
    if (kind == Kind::fingerDown || kind == Kind::fingerUp)
        return maskWith(before, 1, kind == Kind::fingerDown);
    if (kind != Kind::buttonDown && kind != Kind::buttonUp) return before;
    return maskWith(before, button, kind == Kind::buttonDown);
}

std::uint16_t RawEvent::buttonsBefore(std::uint16_t after) const {
    if (kind == Kind::fingerDown || kind == Kind::fingerUp)
        return maskWith(after, 1, kind == Kind::fingerUp);
    if (kind != Kind::buttonDown && kind != Kind::buttonUp) return after;
    return maskWith(after, button, kind == Kind::buttonUp);
}

std::optional<EventType> RawEvent::type(std::uint16_t buttons) const {
    switch (kind) {
    case Kind::motion:
        return motionType(buttons);
    case Kind::buttonDown:
    case Kind::buttonUp:
        return buttonType(button, kind == Kind::buttonDown);
    case Kind::fingerDown:
        return EventType::leftMouseDown;
    case Kind::fingerMoved:
        return EventType::leftMouseDragged;
    case Kind::fingerUp:
        return EventType::leftMouseUp;
    case Kind::keyDown:
    case Kind::keyUp:
        break;
    }
    if (key.modifier) return EventType::flagsChanged;
    return kind == Kind::keyDown ? EventType::keyDown : EventType::keyUp;
}

} // namespace platform::x11
