#include "platform/x11/input/InputEvents.h"

#include <utility>

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

InputEvents::InputEvents(Connection& connection, Descriptors& descriptors, const Displays& displays,
                         Pointer& cursor, std::function<bool()> ownActive)
    : pointer(cursor),
      ownWindowActive(std::move(ownActive)),
      source(
          connection, displays, cursor,
          [this](const RawEvent& raw, Point place, std::uint16_t buttonMask) {
              receive(raw, place, buttonMask);
          },
          [this] { reader.arrived(); }),
      reader(connection, descriptors, [this] { return source.waitsForAnswer(); },
             {[this] {
                  ownWindowChanged();
                  source.beginFrame();
              },
              [this] { source.endFrame(); }}) {}

// An alert or a menu of the program may be on another monitor.
void InputEvents::ownWindowChanged() {
    pointer.hold().suspend(ownWindowActive && ownWindowActive());
}

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
    const bool isPointers = (maskOf(*type) & keyTypes) == 0;
    const InputEvent event{*type, place, isPointers ? std::uint16_t{0} : raw.key.code, raw.time};
    if (raw.kind == RawEvent::Kind::motion)
        receiveMotion(event);
    else
        deliver(event);
}

void InputEvents::receiveMotion(InputEvent event) {
    Hold& hold = pointer.hold();
    const auto back = std::exchange(putBack, std::nullopt);
    if (const auto push = hold.takePush(event.location)) {
        deliverPush(event, *push);
        return;
    }
    // Nothing held it: it was warped back, and has been pushed out again from there.
    if (back && hold.isBeyond(event.location)) {
        InputEvent held = event;
        held.location = *back;
        deliver(held);
    }
    const unsigned before = pointer.warps();
    deliver(event);
    const bool isBack = pointer.warps() != before && !hold.isBeyond(pointer.lastPut());
    if (isBack) putBack = pointer.lastPut();
}

// The cursor is still inside, and the answer to the point outside is carried out.
void InputEvents::deliverPush(InputEvent event, const Hold::Push& push) {
    event.location = push.held;
    deliver(event);
    event.location = push.beyond;
    deliver(event, true);
}

void InputEvents::deliver(const InputEvent& event, bool isHeldBack) {
    const EventMask bit = maskOf(event.type);
    const bool isPointers = (bit & keyTypes) == 0;
    const Pointer::Handling handling(pointer, event.location, isHeldBack);
    for (std::size_t i = 0; i < consumers.size(); ++i) {
        if (!(consumers[i].mask & bit)) continue;
        const bool withheld =
            isPointers && !consumers[i].isTap && ownWindowActive && ownWindowActive();
        if (!withheld) consumers[i].handler(event);
    }
}

} // namespace platform::x11
