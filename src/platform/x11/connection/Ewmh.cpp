#include "platform/x11/connection/Ewmh.h"

#include <algorithm>

namespace platform::x11 {

xcb_get_property_cookie_t askCardinal(Connection& connection, xcb_window_t window,
                                      xcb_atom_t property) {
    return xcb_get_property(connection.xcb(), 0, window, property, XCB_ATOM_ANY, 0, 1);
}

std::optional<std::uint32_t> cardinalOf(const xcb_get_property_reply_t* reply) {
    if (!reply || reply->format != 32 || reply->value_len < 1) return std::nullopt;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
}

std::optional<std::uint32_t> readCardinal(Connection& connection, xcb_window_t window,
                                          xcb_atom_t property) {
    const auto reply =
        connection.wait(askCardinal(connection, window, property), xcb_get_property_reply);
    return cardinalOf(reply.get());
}

std::vector<std::uint32_t> readCardinals(Connection& connection, xcb_window_t window,
                                         xcb_atom_t property) {
    constexpr std::uint32_t longest = 1024;
    const auto reply = connection.wait(
        xcb_get_property(connection.xcb(), 0, window, property, XCB_ATOM_ANY, 0, longest),
        xcb_get_property_reply);
    if (!reply || reply->format != 32) return {};
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

// What a window manager that has died leaves behind still names its window, which is gone.
bool windowManagerSupports(Connection& connection, xcb_atom_t what) {
    const xcb_atom_t check = connection.atom(AtomName::netSupportingWmCheck);
    const auto window = readCardinal(connection, connection.root(), check);
    if (!window || readCardinal(connection, *window, check) != window) return false;
    const auto supported =
        readCardinals(connection, connection.root(), connection.atom(AtomName::netSupported));
    return std::ranges::find(supported, what) != supported.end();
}

void tellWindowManager(Connection& connection, xcb_window_t window, xcb_atom_t type,
                       const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(connection.xcb(), 0, connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    connection.flush();
}

} // namespace platform::x11
