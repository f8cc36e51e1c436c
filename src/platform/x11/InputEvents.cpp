#include "platform/x11/InputEvents.h"

#include <optional>

namespace platform::x11 {

namespace {

constexpr EventMask keyTypes =
    maskOf(EventType::keyDown) | maskOf(EventType::keyUp) | maskOf(EventType::flagsChanged);
constexpr EventMask otherKeyTypes = maskOf(EventType::keyDown) | maskOf(EventType::keyUp);

EventType motionType(std::uint16_t buttonMask) {
    if (buttonMask & XCB_BUTTON_MASK_1) return EventType::leftMouseDragged;
    if (buttonMask & XCB_BUTTON_MASK_3) return EventType::rightMouseDragged;
    if (buttonMask & XCB_BUTTON_MASK_2) return EventType::otherMouseDragged;
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

std::optional<EventType> typeOf(const RawEvent& raw, std::uint16_t buttonMask) {
    switch (raw.kind) {
    case RawEvent::Kind::motion:
        return motionType(buttonMask);
    case RawEvent::Kind::buttonDown:
        return buttonType(raw.button, true);
    case RawEvent::Kind::buttonUp:
        return buttonType(raw.button, false);
    case RawEvent::Kind::keyDown:
        return raw.key.modifier ? EventType::flagsChanged : EventType::keyDown;
    case RawEvent::Kind::keyUp:
        return raw.key.modifier ? EventType::flagsChanged : EventType::keyUp;
    }
    return std::nullopt;
}

} // namespace

InputEvents::InputEvents(Connection& connection, const Displays& displays, Pointer& cursor,
                         std::function<bool()> ownActive)
    : pointer(cursor),
      ownWindowActive(std::move(ownActive)),
      source(connection, displays, cursor,
             [this](const RawEvent& raw, Point place, std::uint16_t buttonMask) {
                 receive(raw, place, buttonMask);
             }) {}

void InputEvents::addGlobalMonitor(EventMask mask, Handler handler) {
    add({mask, false, std::move(handler)});
}

void InputEvents::addTap(const TapParameters& parameters, Handler handler) {
    add({parameters.mask, true, std::move(handler)});
}

void InputEvents::add(Consumer consumer) {
    if (consumer.mask & otherKeyTypes) source.wantOtherKeys();
    if (consumer.mask & keyTypes) source.selectKeys();
    if (consumer.mask & ~keyTypes) source.selectPointer();
    consumers.push_back(std::move(consumer));
}

void InputEvents::receive(const RawEvent& raw, Point place, std::uint16_t buttonMask) {
    const std::optional<EventType> type = typeOf(raw, buttonMask);
    if (!type) return;
    const EventMask bit = maskOf(*type);
    const bool isPointers = (bit & keyTypes) == 0;
    const InputEvent event{*type, place, isPointers ? std::uint16_t{0} : raw.key.code, raw.time};
    const Pointer::Handling handling(pointer, place);
    for (std::size_t i = 0; i < consumers.size(); ++i) {
        if (!(consumers[i].mask & bit)) continue;
        const bool withheld =
            isPointers && !consumers[i].isTap && ownWindowActive && ownWindowActive();
        if (!withheld) consumers[i].handler(event);
    }
}

} // namespace platform::x11
