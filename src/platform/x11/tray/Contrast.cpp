#include "platform/x11/tray/Contrast.h"

#include "platform/x11/tray/Panels.h"

namespace platform::x11 {

namespace {

std::uint32_t channel(std::uint32_t pixel, int shift) {
    return pixel >> shift & 0xff;
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
    std::vector<std::uint32_t> pixels;
    for (const PixelArea& area : panelsOnScreen(connection)) {
        const auto seen = readPixels(connection, connection.root(), *format, area);
        pixels.insert(pixels.end(), seen.begin(), seen.end());
    }
    return contrastTo(pixels);
}

} // namespace platform::x11
