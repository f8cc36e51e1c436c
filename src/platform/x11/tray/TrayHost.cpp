#include "platform/x11/tray/TrayHost.h"

#include <string>
#include <xcb/xfixes.h>

// A tray manager takes the selection first, then writes what it says of itself, then announces
// itself with a MANAGER message: only that message tells that its properties can be read. That it
// has gone is told by the selection.

namespace platform::x11 {

namespace {

constexpr std::uint32_t dockRequest = 0; // SYSTEM_TRAY_REQUEST_DOCK
constexpr std::uint32_t coloursLength = 12;

// The owner may vanish at any time, so that errors of requests about it mean nothing.
void ignoreError(Connection& connection, xcb_void_cookie_t checked) {
    xcb_discard_reply(connection.xcb(), checked.sequence);
}

// Foreground, error, warning and success, each red, green and blue in 16 bits.
std::optional<TrayColour> colourIn(const xcb_get_property_reply_t* reply) {
    if (!reply || reply->format != 32 || reply->value_len < coloursLength) return {};
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
    const auto channel = [&](int i) { return static_cast<std::uint8_t>(values[i] >> 8); };
    return TrayColour{channel(0), channel(1), channel(2)};
}

std::uint32_t cardinalIn(const xcb_get_property_reply_t* reply, std::uint32_t absent) {
    if (!reply || reply->format != 32 || reply->value_len == 0) return absent;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
}

} // namespace

TrayHost::TrayHost(Connection& x, Events handlers)
    : connection(x),
      events(std::move(handlers)),
      selection(x.intern("_NET_SYSTEM_TRAY_S" + std::to_string(x.screenNumber()))),
      manager(x.intern("MANAGER")),
      opcode(x.intern("_NET_SYSTEM_TRAY_OPCODE")),
      visualProperty(x.intern("_NET_SYSTEM_TRAY_VISUAL")),
      coloursProperty(x.intern("_NET_SYSTEM_TRAY_COLORS")),
      orientationProperty(x.intern("_NET_SYSTEM_TRAY_ORIENTATION")) {
    connection.listen(*this, {XCB_CLIENT_MESSAGE, XCB_PROPERTY_NOTIFY,
                              static_cast<std::uint8_t>(connection.xfixesEvents() +
                                                        XCB_XFIXES_SELECTION_NOTIFY)});
    connection.selectOnRoot(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    xcb_xfixes_select_selection_input(connection.xcb(), connection.root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const auto reply = connection.wait(xcb_get_selection_owner(connection.xcb(), selection),
                                       xcb_get_selection_owner_reply);
    if (!reply || reply->owner == XCB_NONE) return;
    owner = reply->owner;
    readAll();
}

TrayHost::~TrayHost() {
    connection.forget(*this);
}

void TrayHost::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
    case XCB_CLIENT_MESSAGE:
        noteMessage(reinterpret_cast<const xcb_client_message_event_t&>(event));
        break;
    case XCB_PROPERTY_NOTIFY:
        noteProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
        break;
    default: {
        const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        if (notify.selection == selection) noteOwner(notify.owner);
    }
    }
}

void TrayHost::noteMessage(const xcb_client_message_event_t& message) {
    if (message.type != manager || message.window != connection.root()) return;
    if (message.format != 32 || message.data.data32[1] != selection) return;
    owner = message.data.data32[2];
    readAll();
    events.came();
}

// A new owner is not used before it has announced itself.
void TrayHost::noteOwner(xcb_window_t newOwner) {
    if (newOwner == owner || owner == XCB_NONE) return;
    owner = XCB_NONE;
    colour.reset();
    events.went();
}

void TrayHost::noteProperty(const xcb_property_notify_event_t& notify) {
    if (owner == XCB_NONE || notify.window != owner) return;
    const bool restyles = notify.atom == coloursProperty || notify.atom == orientationProperty;
    if (!restyles && notify.atom != visualProperty) return;
    const xcb_visualid_t before = wantedVisual;
    readAll();
    if (wantedVisual != before)
        events.came();
    else if (restyles)
        events.restyled();
}

void TrayHost::readAll() {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    ignoreError(connection, xcb_change_window_attributes_checked(connection.xcb(), owner,
                                                                 XCB_CW_EVENT_MASK, &mask));
    const auto colours = ask(coloursProperty, XCB_ATOM_CARDINAL);
    const auto visual = ask(visualProperty, XCB_ATOM_VISUALID);
    const auto orientation = ask(orientationProperty, XCB_ATOM_CARDINAL);
    colour = colourIn(connection.wait(colours, xcb_get_property_reply).get());
    wantedVisual = cardinalIn(connection.wait(visual, xcb_get_property_reply).get(),
                              connection.screenInfo().root_visual);
    vertical = cardinalIn(connection.wait(orientation, xcb_get_property_reply).get(), 0) == 1;
}

xcb_get_property_cookie_t TrayHost::ask(xcb_atom_t property, xcb_atom_t type) const {
    return xcb_get_property(connection.xcb(), 0, owner, property, type, 0, coloursLength);
}

void TrayHost::requestDock(xcb_window_t icon) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = owner;
    message.type = opcode;
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = dockRequest;
    message.data.data32[2] = icon;
    ignoreError(connection,
                xcb_send_event_checked(connection.xcb(), 0, owner, XCB_EVENT_MASK_NO_EVENT,
                                       reinterpret_cast<const char*>(&message)));
}

} // namespace platform::x11
