#include "testing/desktop/XConnection.h"

#include <stdexcept>

namespace support {

XConnection::XConnection(const std::string& display)
    : connection(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        throw std::runtime_error("cannot connect to the X server " + display);
    }
    firstScreen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

XConnection::~XConnection() {
    xcb_disconnect(connection);
}

xcb_atom_t XConnection::atom(std::string_view name) const {
    const auto reply = own(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

bool XConnection::grabPointer(xcb_window_t confineTo) const {
    const auto grab = own(xcb_grab_pointer_reply(
        connection,
        xcb_grab_pointer(connection, 0, root(), XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC, confineTo, XCB_NONE, XCB_CURRENT_TIME),
        nullptr));
    return grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
}

void XConnection::ungrabPointer() const {
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    sync();
}

// Nobody else can act between the two requests, so that asking disturbs nothing.
bool XConnection::keyboardIsGrabbed() const {
    xcb_grab_server(connection);
    const auto reply =
        own(xcb_grab_keyboard_reply(connection,
                                    xcb_grab_keyboard(connection, 0, root(), XCB_CURRENT_TIME,
                                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                    nullptr));
    const bool isFree = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    if (isFree) xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_ungrab_server(connection);
    sync();
    return !isFree;
}

void XConnection::minimiseWindows(int widerThan, int narrowerThan) const {
    constexpr std::uint32_t iconicState = 3, mostWindows = 1024;
    const auto list =
        own(xcb_get_property_reply(connection,
                                   xcb_get_property(connection, 0, root(), atom("_NET_CLIENT_LIST"),
                                                    XCB_ATOM_WINDOW, 0, mostWindows),
                                   nullptr));
    if (!list) return;
    const auto* windows = static_cast<const xcb_window_t*>(xcb_get_property_value(list.get()));
    for (std::uint32_t i = 0; i < list->value_len; ++i) {
        const auto size = own(
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, windows[i]), nullptr));
        if (!size || size->width <= widerThan || size->width >= narrowerThan) continue;
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = windows[i];
        event.type = atom("WM_CHANGE_STATE");
        event.data.data32[0] = iconicState;
        xcb_send_event(connection, 0, root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&event));
    }
    sync();
}

void XConnection::sync() const {
    const auto reply =
        own(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    if (!reply) throw std::runtime_error("the X server is gone");
}

bool XConnection::waitUntil(const std::function<bool()>& reached, milliseconds limit,
                            const std::function<void(const xcb_generic_event_t&)>& seen) const {
    return support::waitUntil(reached, limit, [&](Clock::time_point deadline) {
        xcb_flush(connection);
        // Replies that `reached` waited for may have brought events along: the queue comes first.
        Event event = nextEvent();
        while (!event) {
            if (xcb_connection_has_error(connection) != 0)
                throw std::runtime_error("the X server is gone");
            if (!waitReadable(xcb_get_file_descriptor(connection), deadline)) return;
            event = nextEvent();
        }
        for (; event; event = nextEvent())
            if (seen) seen(*event);
    });
}

} // namespace support
