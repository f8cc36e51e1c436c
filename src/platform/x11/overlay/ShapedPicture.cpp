#include "platform/x11/overlay/ShapedPicture.h"

#include "platform/x11/overlay/Stacking.h"

#include <xcb/shape.h>

namespace platform::x11 {

// The server keeps the pixmaps that the window needs; the names of them are given back here.
ShapedPicture::ShapedPicture(Connection& x, Picture& picture, const xcb_rectangle_t& area)
    : connection(x), window(xcb_generate_id(x.xcb())) {
    const ShapedPixels pixels = uploadShaped(x, picture, area.width, area.height);
    const std::uint32_t values[] = {pixels.colours.id(), 1};
    xcb_create_window(x.xcb(), x.screenInfo().root_depth, window, x.root(), area.x, area.y,
                      area.width, area.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      x.screenInfo().root_visual, XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT,
                      values);
    xcb_shape_mask(x.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window, 0, 0,
                   pixels.shape.id());
    xcb_shape_rectangles(x.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                         window, 0, 0, 0, nullptr);
}

ShapedPicture::~ShapedPicture() {
    xcb_destroy_window(connection.xcb(), window);
}

void ShapedPicture::show(bool wanted) {
    if (wanted == shown) return;
    shown = wanted;
    if (!shown) {
        xcb_unmap_window(connection.xcb(), window);
        return;
    }
    putOnTop(connection, window);
    xcb_map_window(connection.xcb(), window);
}

void ShapedPicture::moveTo(int x, int y) {
    const std::int32_t values[] = {x, y};
    xcb_configure_window(connection.xcb(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         values);
}

} // namespace platform::x11
