#include "platform/x11/keys/Keyboard.h"

#include "platform/HotKeys.h"
#include "platform/InputEvents.h"
#include "platform/x11/connection/Ewmh.h"

namespace platform::x11 {

void Keyboard::postKey(std::uint16_t virtualKeyCode, bool down, std::uint32_t flags) {
    const bool arrow =
        virtualKeyCode == keyCodes::leftArrow || virtualKeyCode == keyCodes::rightArrow;
    if (arrow && (flags & Shortcut::control)) {
        if (down) switchDesktop(virtualKeyCode == keyCodes::leftArrow ? -1 : 1);
        return;
    }
    if (!toldOtherKey) log.write("keystrokes other than Control with an arrow are not posted");
    toldOtherKey = true;
}

void Keyboard::switchDesktop(int step) {
    const xcb_atom_t currentAtom = connection.atom(AtomName::netCurrentDesktop);
    const auto currentAsked = askCardinal(connection, connection.root(), currentAtom);
    const auto count =
        readCardinal(connection, connection.root(), connection.atom(AtomName::netNumberOfDesktops));
    const auto current = cardinalOf(connection.wait(currentAsked, xcb_get_property_reply).get());
    if (!current || !count) {
        if (!toldNoDesktops)
            log.write("the desktop cannot be switched: no window manager tells of desktops");
        toldNoDesktops = true;
        return;
    }
    const std::int64_t wanted = std::int64_t{*current} + step;
    if (wanted < 0 || wanted >= std::int64_t{*count}) return;
    tellWindowManager(connection, connection.root(), currentAtom,
                      {static_cast<std::uint32_t>(wanted), XCB_CURRENT_TIME, 0, 0, 0});
}

} // namespace platform::x11
