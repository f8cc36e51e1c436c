#include "platform/x11/session/Focus.h"

#include "platform/x11/connection/Ewmh.h"

#include <algorithm>
#include <span>

namespace platform::x11 {

Focus::Focus(Connection& x, std::uint32_t ownPid) : connection(x), pid(ownPid) {
    connection.listen(*this, {XCB_PROPERTY_NOTIFY});
    connection.selectOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE);
    askActiveWindow();
    connection.flush();
}

Focus::~Focus() {
    connection.forget(*this);
}

void Focus::askActiveWindow() {
    activeAsked =
        askCardinal(connection, connection.root(), connection.atom(AtomName::netActiveWindow))
            .sequence;
    connection.awaitReply(activeAsked, *this);
}

void Focus::handle(const xcb_generic_event_t& event) {
    const auto& changed = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (changed.window != connection.root()) return;
    if (changed.atom == connection.atom(AtomName::netActiveWindow)) askActiveWindow();
}

// Answers to questions that a later one has overtaken are ignored.
void Focus::handleReply(unsigned sequence, const void* reply) {
    const auto value = cardinalOf(static_cast<const xcb_get_property_reply_t*>(reply));
    if (sequence == activeAsked) {
        asked = value.value_or(XCB_NONE);
        if (asked == XCB_NONE) {
            ownIsActive = false;
            return;
        }
        pidAsked = askCardinal(connection, asked, connection.atom(AtomName::netWmPid)).sequence;
        connection.awaitReply(pidAsked, *this);
    } else if (sequence == pidAsked) {
        ownIsActive = value == pid;
        if (!ownIsActive) foreign = asked;
    }
}

bool Focus::isFullScreen(xcb_window_t window) {
    constexpr std::uint32_t longest = 32; // atoms
    const auto reply = connection.wait(xcb_get_property(connection.xcb(), 0, window,
                                                        connection.atom(AtomName::netWmState),
                                                        XCB_ATOM_ATOM, 0, longest),
                                       xcb_get_property_reply);
    if (!reply || reply->format != 32) return false;
    const auto* states = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    const std::span all(states, reply->value_len);
    return std::ranges::count(all, connection.atom(AtomName::netWmStateFullscreen)) != 0;
}

void Focus::activateFrontmostApplication() {
    if (!ownIsActive || foreign == XCB_NONE) return;
    // While it is active such a window lies above everything but what belongs to it.
    if (isFullScreen(foreign)) {
        const auto belongs = xcb_change_property_checked(connection.xcb(), XCB_PROP_MODE_REPLACE,
                                                         asked, XCB_ATOM_WM_TRANSIENT_FOR,
                                                         XCB_ATOM_WINDOW, 32, 1, &foreign);
        xcb_discard_reply(connection.xcb(), belongs.sequence);
    }
    constexpr std::uint32_t sourceIsTheUser = 2;
    tellWindowManager(connection, foreign, connection.atom(AtomName::netActiveWindow),
                      {sourceIsTheUser, XCB_CURRENT_TIME, XCB_NONE, 0, 0});
    // Window managers raise what they activate, and a window that the program has just opened would
    // be covered before the user has seen it. It may also be gone by now, which is nobody's error.
    constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
    const auto raised =
        xcb_configure_window_checked(connection.xcb(), asked, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_discard_reply(connection.xcb(), raised.sequence);
    connection.flush();
}

} // namespace platform::x11
