#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>
#include <xcb/xcb.h>

namespace platform::x11 {

/// How a server keeps the pixels of a visual: 16, 24 or 30 bits deep, for example.
class PixelFormat {
  public:
    /// Nothing where the visual's pixels are not a red, a green and a blue of their own.
    static std::optional<PixelFormat> of(const xcb_setup_t& setup, const xcb_screen_t& screen,
                                         xcb_visualid_t visual);

    std::uint8_t depth() const { return bitDepth; }

    /// Rows of `width` pixels as RGB in 8 bits each, from a Z pixmap of the server; empty where the
    /// bytes do not make whole rows.
    std::vector<std::uint32_t> unpack(std::span<const std::uint8_t> bytes, int width) const;
    /// The other way. Of a visual with bits to spare the highest eight are the opacity.
    std::vector<std::uint8_t> pack(std::span<const std::uint32_t> pixels, int width) const;

  private:
    struct Channel {
        int shift = 0, bits = 0;
        std::uint32_t taken(std::uint32_t pixel) const;
        std::uint32_t put(std::uint32_t value) const;
    };

    static std::optional<Channel> channelOf(std::uint32_t mask);
    std::size_t bytesOfRow(int width) const;

    Channel red, green, blue;
    std::uint8_t bitDepth = 0;
    int bytesOfPixel = 4;
    int rowUnit = 4; ///< bytes
};

} // namespace platform::x11
