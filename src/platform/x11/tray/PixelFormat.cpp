#include "platform/x11/tray/PixelFormat.h"

#include <bit>
#include <cstring>

namespace platform::x11 {

namespace {

struct Found {
    const xcb_visualtype_t* visual;
    std::uint8_t depth;
};

std::optional<Found> find(const xcb_screen_t& screen, xcb_visualid_t id) {
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem != 0;
         xcb_depth_next(&depth))
        for (auto one = xcb_depth_visuals_iterator(depth.data); one.rem != 0;
             xcb_visualtype_next(&one))
            if (one.data->visual_id == id) return Found{one.data, depth.data->depth};
    return {};
}

} // namespace

std::optional<PixelFormat> PixelFormat::of(const xcb_setup_t& setup, const xcb_screen_t& screen,
                                           xcb_visualid_t visual) {
    const auto found = find(screen, visual);
    if (!found) return {};
    const auto red = channelOf(found->visual->red_mask);
    const auto green = channelOf(found->visual->green_mask);
    const auto blue = channelOf(found->visual->blue_mask);
    if (!red || !green || !blue) return {};
    for (auto one = xcb_setup_pixmap_formats_iterator(&setup); one.rem != 0; xcb_format_next(&one))
        if (one.data->depth == found->depth) {
            PixelFormat format;
            format.red = *red;
            format.green = *green;
            format.blue = *blue;
            format.bitDepth = found->depth;
            format.bytesOfPixel = one.data->bits_per_pixel / 8;
            format.rowUnit = one.data->scanline_pad / 8;
            if (format.bytesOfPixel == 2 || format.bytesOfPixel == 4) return format;
        }
    return {};
}

std::optional<PixelFormat::Channel> PixelFormat::channelOf(std::uint32_t mask) {
    if (mask == 0) return {};
    return Channel{std::countr_zero(mask), std::popcount(mask)};
}

std::uint32_t PixelFormat::Channel::taken(std::uint32_t pixel) const {
    const std::uint32_t most = (1u << bits) - 1;
    return ((pixel >> shift & most) * 255 + most / 2) / most;
}

std::uint32_t PixelFormat::Channel::put(std::uint32_t value) const {
    const std::uint32_t most = (1u << bits) - 1;
    return (value * most + 127) / 255 << shift;
}

std::size_t PixelFormat::bytesOfRow(int width) const {
    const int used = width * bytesOfPixel;
    return static_cast<std::size_t>((used + rowUnit - 1) / rowUnit * rowUnit);
}

std::vector<std::uint32_t> PixelFormat::unpack(std::span<const std::uint8_t> bytes,
                                               int width) const {
    std::vector<std::uint32_t> pixels;
    const std::size_t row = bytesOfRow(width);
    if (width <= 0 || bytes.empty() || bytes.size() % row != 0) return pixels;
    for (std::size_t at = 0; at < bytes.size(); at += row)
        for (int x = 0; x < width; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, &bytes[at + static_cast<std::size_t>(x * bytesOfPixel)],
                        static_cast<std::size_t>(bytesOfPixel));
            pixels.push_back(red.taken(pixel) << 16 | green.taken(pixel) << 8 | blue.taken(pixel));
        }
    return pixels;
}

std::vector<std::uint8_t> PixelFormat::pack(std::span<const std::uint32_t> pixels,
                                            int width) const {
    const std::size_t row = bytesOfRow(width);
    const auto length = static_cast<std::size_t>(width);
    std::vector<std::uint8_t> bytes(length == 0 ? 0 : pixels.size() / length * row);
    const bool isOpaque = bitDepth < 32;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::uint32_t rgb = pixels[i];
        const std::uint32_t pixel = red.put(rgb >> 16 & 0xff) | green.put(rgb >> 8 & 0xff) |
                                    blue.put(rgb & 0xff) | (isOpaque ? 0 : rgb & 0xff000000);
        std::memcpy(&bytes[i / length * row + i % length * static_cast<std::size_t>(bytesOfPixel)],
                    &pixel, static_cast<std::size_t>(bytesOfPixel));
    }
    return bytes;
}

} // namespace platform::x11
