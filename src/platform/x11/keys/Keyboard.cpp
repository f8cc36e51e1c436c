#include "platform/x11/keys/Keyboard.h"

#include "platform/HotKeys.h"
#include "platform/InputEvents.h"
#include "platform/x11/connection/Ewmh.h"
#include "platform/x11/keys/DesktopLayout.h"

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace platform::x11 {

namespace {

/// The first key that means this without Shift; 0 for none.
xcb_keycode_t keycodeOf(xcb_keysym_t wanted, const xcb_get_keyboard_mapping_reply_t& mapping,
                        xcb_keycode_t first) {
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(&mapping);
    const int length = xcb_get_keyboard_mapping_keysyms_length(&mapping);
    for (int i = 0; i < length; i += mapping.keysyms_per_keycode)
        if (keysyms[i] == wanted)
            return static_cast<xcb_keycode_t>(first + i / mapping.keysyms_per_keycode);
    return 0;
}

} // namespace

void Keyboard::postKey(std::uint16_t virtualKeyCode, bool down, std::uint32_t flags) {
    const bool left = virtualKeyCode == keyCodes::leftArrow;
    const bool arrow = left || virtualKeyCode == keyCodes::rightArrow;
    if (arrow && (flags & Shortcut::control)) {
        if (!down)
            release();
        else if (!askWindowManager(left ? -1 : 1))
            press(left ? XKB_KEY_Left : XKB_KEY_Right);
        return;
    }
    if (!toldOtherKey) log.write("keystrokes other than Control with an arrow are not posted");
    toldOtherKey = true;
}

// At the end of a row there is nothing to ask for.
bool Keyboard::askWindowManager(int step) {
    const xcb_window_t root = connection.root();
    const xcb_atom_t currentAtom = connection.atom(AtomName::netCurrentDesktop);
    if (!windowManagerSupports(connection, currentAtom)) return false;
    const auto current = readCardinal(connection, root, currentAtom);
    const auto count =
        readCardinal(connection, root, connection.atom(AtomName::netNumberOfDesktops));
    if (!current || !count) return false;
    const auto layout = DesktopLayout::read(
        readCardinals(connection, root, connection.atom(AtomName::netDesktopLayout)));
    if (const auto wanted = layout.neighbour(*current, *count, step))
        tellWindowManager(connection, root, currentAtom, {*wanted, XCB_CURRENT_TIME, 0, 0, 0});
    return true;
}

void Keyboard::press(xcb_keysym_t arrow) {
    if (!canType()) {
        if (!toldNoDesktops)
            log.write("the desktop cannot be switched: no window manager tells of desktops, and "
                      "the X server lacks the extension XTEST");
        toldNoDesktops = true;
        return;
    }
    xcb_connection_t* c = connection.xcb();
    const xcb_setup_t* setup = xcb_get_setup(c);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto mappingAsked = xcb_get_keyboard_mapping(c, setup->min_keycode, count);
    const auto downAsked = xcb_query_keymap(c);
    const auto mapping = connection.wait(mappingAsked, xcb_get_keyboard_mapping_reply);
    const auto down = connection.wait(downAsked, xcb_query_keymap_reply);
    if (!mapping || !down || mapping->keysyms_per_keycode == 0) return;
    // A key that the user holds himself stays his: it would be let go under his finger.
    const auto isDown = [&](xcb_keycode_t key) { return down->keys[key / 8] >> key % 8 & 1; };
    for (const xcb_keysym_t keysym : {xcb_keysym_t{XKB_KEY_Control_L}, arrow}) {
        const xcb_keycode_t key = keycodeOf(keysym, *mapping, setup->min_keycode);
        if (key == 0 || isDown(key)) continue;
        send(XCB_KEY_PRESS, key);
        held.push_back(key);
    }
    connection.flush();
}

void Keyboard::release() {
    for (; !held.empty(); held.pop_back())
        send(XCB_KEY_RELEASE, held.back());
    connection.flush();
}

// A request of an extension that is not there would close the connection.
bool Keyboard::canType() {
    if (able) return *able;
    const auto* extension = xcb_get_extension_data(connection.xcb(), &xcb_test_id);
    able = extension && extension->present;
    connection.sync(); // waiting may have brought events along
    return *able;
}

void Keyboard::send(std::uint8_t type, xcb_keycode_t keycode) {
    xcb_test_fake_input(connection.xcb(), type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

} // namespace platform::x11
