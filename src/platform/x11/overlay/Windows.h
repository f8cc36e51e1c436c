#pragma once

#include "platform/Log.h"
#include "platform/Picture.h"
#include "platform/Windows.h"
#include "platform/x11/overlay/Compositor.h"
#include "platform/x11/overlay/Gamma.h"
#include "platform/x11/overlay/GammaOutputs.h"
#include "platform/x11/overlay/Stacking.h"

namespace platform::x11 {

class Overlay;

/// Overlays without a toolkit: the server paints their background, a picture too, so the program
/// holds no pixels. Where a compositor runs they are translucent; where none does, dark ones darken
/// the monitor through its gamma, if its output shows nothing else, pictures are cut out to where
/// they are at least half opaque, and an invisible window catches the clicks. They change over by
/// themselves when a compositor comes or goes. Must outlive the windows it makes.
class Windows final : public platform::Windows {
  public:
    /// `applicationName` is the windows' class. Without a source of pictures, which must outlive
    /// it, the overlays show none.
    Windows(Connection& connection, Displays& displays, Log& log, std::string applicationName,
            GammaMeans gammaMeans, PictureSource* pictures = nullptr);
    ~Windows() override;
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;

    /// Whether what lies below an overlay shines through: it takes a compositor.
    bool canBlend() const { return compositor.isRunning() && translucent.depth != 0; }
    /// Called from the run loop when that has changed.
    void onBlendChange(std::function<void()> handler) { blendChanged = std::move(handler); }

    std::unique_ptr<platform::Window> create(const WindowStyle& style) override;
    void letMarkersBeSeen(bool seen) override;

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
    /// Null when it cannot be shown, which is logged.
    std::unique_ptr<Picture> openPicture(const std::string& image, std::uint8_t depth,
                                         const xcb_rectangle_t& area);

    Connection& connection;
    Displays& displays;
    Log& log;
    std::string name;
    PictureSource* pictures;
    Compositor compositor;
    GammaOutputs outputs;
    Gamma gamma;
    Stacking stacking;
    Visual translucent;
    std::vector<Overlay*> overlays;
    std::function<void()> blendChanged;
    WindowId lastId = 0;
    bool toldNoImages = false;
    bool markersSeen = true;
};

} // namespace platform::x11
