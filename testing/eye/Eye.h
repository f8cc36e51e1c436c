#pragma once

#include "testing/desktop/XConnection.h"
#include "testing/eye/Picture.h"

#include <functional>

namespace support {

struct Spot {
    int x = 0, y = 0; ///< X root coordinates
    bool operator==(const Spot&) const = default;
};

struct GammaRamp {
    std::vector<std::uint16_t> red, green, blue;
    bool operator==(const GammaRamp&) const = default;
};

struct SeenWindow {
    xcb_window_t id;
    Area area;
    std::string title; ///< empty where it has none; the frame of a managed window has none
    bool mapped, overrideRedirect, inputOnly;
    double opacity; ///< _NET_WM_WINDOW_OPACITY, 1 where it has none
};

/// Sees what a user of the private desktop would see, and what the server knows. One thread.
class Eye {
  public:
    explicit Eye(const std::string& display);

    Spot cursor() const;

    /// What the screen shows, with what the compositor painted; without the cursor.
    Picture picture() const;
    Picture picture(const Area& area) const;
    Colour colour(int x, int y) const { return picture({x, y, 1, 1}).at(x, y); }
    /// The whole screen as a PNG file.
    void screenshot(const std::filesystem::path& path) const { picture().writePng(path); }

    /// Looks now and after each change of the screen; false when the time is up. `expected` may
    /// ask this object.
    bool waitUntilSeen(const std::function<bool()>& expected, milliseconds limit = generous);
    /// The same for one point.
    bool waitForColour(int x, int y, const Colour& colour, milliseconds limit = generous);

    /// The ramp of the output's CRTC. Throws std::runtime_error where it has none.
    GammaRamp gamma(const std::string& output) const;

    /// The children of the root window, lowest first.
    std::vector<SeenWindow> windows() const;

  private:
    SeenWindow describe(xcb_window_t window) const;

    XConnection server;
};

} // namespace support
