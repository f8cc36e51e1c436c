#include "platform/x11/overlay/Windows.h"

#include "platform/x11/overlay/Overlay.h"

#include <algorithm>

namespace platform::x11 {

Windows::Windows(Connection& x, Displays& screens, Log& writer, std::string applicationName,
                 GammaMeans gammaMeans, PictureSource* source)
    : connection(x),
      displays(screens),
      log(writer),
      name(std::move(applicationName)),
      pictures(source),
      compositor(x),
      outputs(x, screens),
      gamma(x, std::move(gammaMeans), writer),
      stacking(x, [this](std::vector<xcb_window_t>& shown) {
          for (const Overlay* overlay : overlays)
              if (overlay->isSeen()) overlay->addHandles(shown);
      }) {
    findTranslucentVisual();
    compositor.onChange([this] {
        for (Overlay* overlay : overlays)
            overlay->changeOver();
        connection.flush();
        if (blendChanged) blendChanged();
    });
    displays.onLayout(this, [this] {
        outputs.layoutChanged();
        for (Overlay* overlay : overlays)
            overlay->place();
    });
}

Windows::~Windows() {
    displays.onLayout(this, {});
    if (translucent.colormap != XCB_NONE) xcb_free_colormap(connection.xcb(), translucent.colormap);
}

void Windows::findTranslucentVisual() {
    for (auto depth = xcb_screen_allowed_depths_iterator(&connection.screenInfo()); depth.rem;
         xcb_depth_next(&depth)) {
        if (depth.data->depth != 32) continue;
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem;
             xcb_visualtype_next(&visual)) {
            if (visual.data->_class != XCB_VISUAL_CLASS_TRUE_COLOR) continue;
            translucent = {32, visual.data->visual_id, xcb_generate_id(connection.xcb())};
            xcb_create_colormap(connection.xcb(), XCB_COLORMAP_ALLOC_NONE, translucent.colormap,
                                connection.root(), translucent.id);
            return;
        }
    }
}

void Windows::visibilityChanged() {
    stacking.setActive(std::any_of(overlays.begin(), overlays.end(),
                                   [](const Overlay* overlay) { return overlay->isSeen(); }));
}

std::unique_ptr<Picture> Windows::openPicture(const std::string& image, std::uint8_t depth,
                                              const xcb_rectangle_t& area) {
    if (pictures != nullptr && takesPictures(connection, depth, area.width))
        return pictures->picture(image, area.width, area.height);
    if (!toldNoImages) log.write("overlays show no pictures here; '" + image + "' is left out");
    toldNoImages = true;
    return nullptr;
}

void Windows::letMarkersBeSeen(bool seen) {
    if (markersSeen == seen) return;
    markersSeen = seen;
    visibilityChanged();
    for (Overlay* overlay : overlays)
        overlay->markersChanged();
    connection.flush();
}

std::unique_ptr<platform::Window> Windows::create(const WindowStyle& style) {
    return std::make_unique<Overlay>(*this, style);
}

} // namespace platform::x11
