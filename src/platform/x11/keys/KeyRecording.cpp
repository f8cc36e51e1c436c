#include "platform/x11/keys/KeyRecording.h"

#include "platform/session/PhysicalKeys.h"

#include <utility>

namespace platform::x11 {
using session::PhysicalKey;
using session::physicalKey;
using session::physicalKeyAt;

KeyRecording::~KeyRecording() {
    giveBack();
}

bool KeyRecording::start(Handler pressed, std::function<void()> left) {
    if (!grabbed) {
        const auto reply = connection.wait(xcb_grab_keyboard(connection.xcb(), 0, connection.root(),
                                                             XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                                             XCB_GRAB_MODE_ASYNC),
                                           xcb_grab_keyboard_reply);
        if (!reply || reply->status != XCB_GRAB_STATUS_SUCCESS) {
            if (!std::exchange(toldTaken, true))
                log.write("no shortcut can be recorded: another program has the keyboard");
            return false;
        }
        grabbed = true;
    }
    lastPressed = 0;
    taker = std::make_shared<Taker>(Taker{std::move(pressed), std::move(left)});
    const auto focus =
        connection.wait(xcb_get_input_focus(connection.xcb()), xcb_get_input_focus_reply);
    focused = focus ? focus->focus : static_cast<xcb_window_t>(XCB_NONE);
    watchFocus(true);
    return true;
}

void KeyRecording::stop() {
    if (isOn()) watchFocus(false);
    taker = nullptr;
    if (lastPressed == 0) giveBack();
}

void KeyRecording::handle(const xcb_key_press_event_t& event, bool down) {
    const std::uint8_t own = map.bitsOfKey(event.detail);
    if (own != 0) {
        const unsigned state = event.state;
        tell({{}, map.flagsOf(static_cast<std::uint16_t>(down ? state | own : state & ~own))});
        return;
    }
    if (!down) {
        // The repetition of a held key reports a release before each press.
        if (event.detail != lastPressed || isDown(lastPressed)) return;
        lastPressed = 0;
        if (!isOn()) giveBack();
        return;
    }
    const bool repetition = event.detail == lastPressed;
    lastPressed = event.detail;
    const PhysicalKey* key = physicalKeyAt(event.detail);
    if (repetition) return;
    const std::uint32_t flags = map.flagsOf(event.state);
    tell(key != nullptr ? Stroke{key->virtualCode, flags} : Stroke{{}, flags, true});
}

void KeyRecording::tell(const Stroke& stroke) {
    if (!taker) return;
    // What ends the recording meanwhile ends this too.
    later([known = std::weak_ptr<Taker>(taker), stroke] {
        if (const auto still = known.lock()) still->pressed(stroke);
    });
}

/// The window is another client's, or of another connection, and may be gone.
void KeyRecording::watchFocus(bool on) {
    if (focused <= XCB_INPUT_FOCUS_POINTER_ROOT) return;
    const std::uint32_t mask = on ? XCB_EVENT_MASK_FOCUS_CHANGE : XCB_EVENT_MASK_NO_EVENT;
    const auto cookie =
        xcb_change_window_attributes_checked(connection.xcb(), focused, XCB_CW_EVENT_MASK, &mask);
    xcb_discard_reply(connection.xcb(), cookie.sequence);
    connection.flush();
}

/// The recording's own grab is reported as a loss of the focus too.
void KeyRecording::focusLeft(const xcb_focus_out_event_t& event) {
    if (!taker || event.event != focused || event.mode == XCB_NOTIFY_MODE_GRAB ||
        event.mode == XCB_NOTIFY_MODE_UNGRAB || event.detail == XCB_NOTIFY_DETAIL_INFERIOR)
        return;
    later([known = std::weak_ptr<Taker>(taker)] {
        if (const auto still = known.lock()) still->left();
    });
}

bool KeyRecording::isDown(xcb_keycode_t keycode) {
    const auto keymap = connection.wait(xcb_query_keymap(connection.xcb()), xcb_query_keymap_reply);
    constexpr unsigned bitsInByte = 8;
    return keymap && (keymap->keys[keycode / bitsInByte] >> (keycode % bitsInByte) & 1) != 0;
}

void KeyRecording::giveBack() {
    if (!grabbed) return;
    grabbed = false;
    xcb_ungrab_keyboard(connection.xcb(), XCB_CURRENT_TIME);
    connection.flush();
}

} // namespace platform::x11
