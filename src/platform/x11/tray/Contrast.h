#pragma once

#include "platform/TrayWindow.h"
#include "platform/x11/connection/Connection.h"
#include "platform/x11/tray/PixelFormat.h"

#include <optional>
#include <vector>

namespace platform::x11 {

/// Black or white, whichever is read better on the pixels (RGB, 8 bits each); nothing on none.
std::optional<TrayColour> contrastTo(const std::vector<std::uint32_t>& background);

/// What a part of a window, in its own coordinates, shows row by row; empty where that cannot be
/// read. A round trip.
std::vector<std::uint32_t> readPixels(Connection& connection, xcb_drawable_t from,
                                      const PixelFormat& format, const PixelArea& area);

/// The colour that is read on the panels that the window manager knows, as the screen shows them
/// now; nothing where there are none. Waits for the server several times.
std::optional<TrayColour> contrastToPanels(Connection& connection);

} // namespace platform::x11
