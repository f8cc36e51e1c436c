#include "platform/x11/overlay/Compositor.h"

#include <string>
#include <xcb/xfixes.h>

namespace platform::x11 {

Compositor::Compositor(Connection& x)
    : connection(x), selection(x.intern("_NET_WM_CM_S" + std::to_string(x.screenNumber()))) {
    connection.listen(*this, {static_cast<std::uint8_t>(connection.xfixesEvents() +
                                                        XCB_XFIXES_SELECTION_NOTIFY)});
    xcb_xfixes_select_selection_input(connection.xcb(), connection.root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const auto reply = connection.wait(xcb_get_selection_owner(connection.xcb(), selection),
                                       xcb_get_selection_owner_reply);
    if (reply) owner = reply->owner;
}

Compositor::~Compositor() {
    connection.forget(*this);
}

void Compositor::handle(const xcb_generic_event_t& event) {
    const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (notify.selection != selection) return;
    const bool before = isRunning();
    owner = notify.owner;
    if (isRunning() != before && changedHandler) changedHandler();
}

} // namespace platform::x11
