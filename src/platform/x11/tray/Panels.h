#pragma once

#include "platform/TrayWindow.h"
#include "platform/x11/connection/Connection.h"

#include <optional>
#include <vector>

// All of it waits for the server, and is in the coordinates of the root window.

namespace platform::x11 {

/// Of a window, as much as is on the screen; nothing where none of it is.
std::optional<PixelArea> areaOnScreen(Connection& connection, xcb_window_t window);

/// The child of the root window that holds it, which may be the window itself; XCB_NONE for a
/// window that has gone.
xcb_window_t topLevelOf(Connection& connection, xcb_window_t window);

/// Of the panels that the window manager knows.
std::vector<PixelArea> panelsOnScreen(Connection& connection);

} // namespace platform::x11
