#pragma once

#include "platform/Log.h"
#include "platform/Windows.h"
#include "platform/x11/Compositor.h"
#include "platform/x11/Gamma.h"
#include "platform/x11/Stacking.h"

namespace platform::x11 {

class Overlay;

/// Overlays without a toolkit: the server paints their background, so the program holds no pixels.
/// Where a compositor runs they are translucent; where none does, dark ones darken the monitor
/// through its gamma and catch the clicks with an invisible window. They change over by themselves
/// when a compositor comes or goes. Must outlive the windows it makes.
class Windows final : public platform::Windows {
  public:
    /// `applicationName` is the windows' class; `gammaGuard` the path of the helper executable.
    Windows(Connection& connection, Displays& displays, Log& log, std::string applicationName,
            std::string gammaGuard);
    ~Windows();
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;

    std::unique_ptr<platform::Window> create(const WindowStyle& style) override;

  private:
    friend class Overlay;

    /// A visual with an alpha channel; depth 0 when the server has none.
    struct Visual {
        std::uint8_t depth = 0;
        xcb_visualid_t id = 0;
        xcb_colormap_t colormap = XCB_NONE;
    };

    void findTranslucentVisual();
    void visibilityChanged();
    bool canBlend() const { return compositor.isRunning() && translucent.depth != 0; }

    Connection& connection;
    Displays& displays;
    Log& log;
    std::string name;
    Compositor compositor;
    Gamma gamma;
    Stacking stacking;
    Visual translucent;
    std::vector<Overlay*> overlays;
    WindowId lastId = 0;
    bool toldNoImages = false;
};

} // namespace platform::x11
