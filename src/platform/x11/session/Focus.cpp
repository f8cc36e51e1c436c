#include "platform/x11/session/Focus.h"

#include "platform/x11/connection/Ewmh.h"

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

void Focus::activateFrontmostApplication() {
    if (!ownIsActive || foreign == XCB_NONE) return;
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
