#include "platform/x11/tray/Contrast.h"

#include <algorithm>
#include <span>

namespace platform::x11 {

namespace {

constexpr std::uint32_t mostWindows = 4096, mostTypes = 16;

std::uint32_t channel(std::uint32_t pixel, int shift) {
    return pixel >> shift & 0xff;
}

std::vector<std::uint32_t> list(Connection& connection, xcb_window_t of, xcb_atom_t property,
                                xcb_atom_t type, std::uint32_t most) {
    const auto reply = connection.wait(
        xcb_get_property(connection.xcb(), 0, of, property, type, 0, most), xcb_get_property_reply);
    if (!reply || reply->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

/// Of a window, as much as is on the screen.
std::optional<PixelArea> areaOnScreen(Connection& connection, xcb_window_t window) {
    const auto size =
        connection.wait(xcb_get_geometry(connection.xcb(), window), xcb_get_geometry_reply);
    const auto place = connection.wait(
        xcb_translate_coordinates(connection.xcb(), window, connection.root(), 0, 0),
        xcb_translate_coordinates_reply);
    if (!size || !place) return {};
    const auto screen = connection.wait(xcb_get_geometry(connection.xcb(), connection.root()),
                                        xcb_get_geometry_reply);
    if (!screen) return {};
    const int left = std::max<int>(place->dst_x, 0), top = std::max<int>(place->dst_y, 0);
    const int right = std::min<int>(place->dst_x + size->width, screen->width);
    const int bottom = std::min<int>(place->dst_y + size->height, screen->height);
    if (right <= left || bottom <= top) return {};
    return PixelArea{left, top, right - left, bottom - top};
}

} // namespace

std::optional<TrayColour> contrastTo(const std::vector<std::uint32_t>& background) {
    if (background.empty()) return {};
    std::uint64_t sum = 0;
    for (const std::uint32_t pixel : background)
        sum += 3 * channel(pixel, 16) + 6 * channel(pixel, 8) + channel(pixel, 0);
    const bool isDark = sum < 10 * 128 * background.size();
    return isDark ? TrayColour{255, 255, 255} : TrayColour{0, 0, 0};
}

std::vector<std::uint32_t> readPixels(Connection& connection, xcb_drawable_t from,
                                      const PixelFormat& format, const PixelArea& area) {
    const auto image = connection.wait(
        xcb_get_image(connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, from,
                      static_cast<std::int16_t>(area.left), static_cast<std::int16_t>(area.top),
                      static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), ~std::uint32_t{0}),
        xcb_get_image_reply);
    if (!image || image->depth != format.depth()) return {};
    auto pixels = format.unpack({xcb_get_image_data(image.get()),
                                 static_cast<std::size_t>(xcb_get_image_data_length(image.get()))},
                                area.width);
    const auto wanted =
        static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height);
    if (pixels.size() != wanted) pixels.clear();
    return pixels;
}

std::optional<TrayColour> contrastToPanels(Connection& connection) {
    const auto format = PixelFormat::of(*xcb_get_setup(connection.xcb()), connection.screenInfo(),
                                        connection.screenInfo().root_visual);
    if (!format) return {};
    const xcb_atom_t dock = connection.intern("_NET_WM_WINDOW_TYPE_DOCK");
    const auto windows = list(connection, connection.root(), connection.intern("_NET_CLIENT_LIST"),
                              XCB_ATOM_WINDOW, mostWindows);
    std::vector<std::uint32_t> pixels;
    for (const xcb_window_t window : windows) {
        const auto types = list(connection, window, connection.atom(AtomName::netWmWindowType),
                                XCB_ATOM_ATOM, mostTypes);
        if (std::ranges::find(types, dock) == types.end()) continue;
        const auto area = areaOnScreen(connection, window);
        if (!area) continue;
        const auto seen = readPixels(connection, connection.root(), *format, *area);
        pixels.insert(pixels.end(), seen.begin(), seen.end());
    }
    return contrastTo(pixels);
}

} // namespace platform::x11
