#pragma once

#include "platform/x11/connection/Connection.h"

#include <array>
#include <optional>
#include <vector>

// What the window manager tells and is told through properties of the root window.

namespace platform::x11 {

/// The first 32-bit value of a property; a round trip.
std::optional<std::uint32_t> readCardinal(Connection& connection, xcb_window_t window,
                                          xcb_atom_t property);

/// The value in the reply of a request made by `askCardinal`.
std::optional<std::uint32_t> cardinalOf(const xcb_get_property_reply_t* reply);
xcb_get_property_cookie_t askCardinal(Connection& connection, xcb_window_t window,
                                      xcb_atom_t property);

/// All 32-bit values of a property; none where there is no such property. A round trip.
std::vector<std::uint32_t> readCardinals(Connection& connection, xcb_window_t window,
                                         xcb_atom_t property);

/// Whether a window manager runs and says that it knows of `what`. Three round trips.
bool windowManagerSupports(Connection& connection, xcb_atom_t what);

/// Sends a client message about `window` to the window manager.
void tellWindowManager(Connection& connection, xcb_window_t window, xcb_atom_t type,
                       const std::array<std::uint32_t, 5>& data);

} // namespace platform::x11
