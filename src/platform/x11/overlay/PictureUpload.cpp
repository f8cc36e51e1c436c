#include "platform/x11/overlay/PictureUpload.h"

#include <algorithm>
#include <bit>
#include <utility>

// A picture goes to the server in strips, each drawn, sent and forgotten, so that the program never
// holds more than one of them.

namespace platform::x11 {

namespace {

constexpr std::uint32_t stripBytes = 256 * 1024;
constexpr std::uint32_t requestHeader = 32; ///< of PutImage, the long form included, rounded up
constexpr std::uint32_t opaqueFrom = 128;

const xcb_format_t* formatOf(const Connection& x, std::uint8_t depth) {
    const xcb_setup_t* setup = xcb_get_setup(x.xcb());
    const xcb_format_t* first = xcb_setup_pixmap_formats(setup);
    const xcb_format_t* last = first + xcb_setup_pixmap_formats_length(setup);
    const auto* found =
        std::find_if(first, last, [depth](const auto& format) { return format.depth == depth; });
    return found == last ? nullptr : found;
}

std::uint16_t rowsAtOnce(const Connection& x, std::uint16_t width) {
    const auto limit = std::uint64_t{4} * xcb_get_maximum_request_length(x.xcb());
    if (limit <= requestHeader) return 0;
    const std::uint64_t bytes = std::min<std::uint64_t>(stripBytes, limit - requestHeader);
    return static_cast<std::uint16_t>(bytes / (std::uint64_t{4} * width));
}

class Graphics {
  public:
    Graphics(Connection& x, const Pixmap& pixmap)
        : c(x.xcb()), target(pixmap.id()), gc(xcb_generate_id(c)) {
        xcb_create_gc(c, gc, target, 0, nullptr);
    }
    ~Graphics() { xcb_free_gc(c, gc); }
    Graphics(const Graphics&) = delete;
    Graphics& operator=(const Graphics&) = delete;

    void put(std::uint8_t depth, std::uint16_t width, std::uint16_t firstRow, std::uint16_t rows,
             std::span<const std::uint8_t> bytes) {
        xcb_put_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, target, gc, width, rows, 0,
                      static_cast<std::int16_t>(firstRow), 0, depth,
                      static_cast<std::uint32_t>(bytes.size()), bytes.data());
    }

  private:
    xcb_connection_t* c;
    xcb_pixmap_t target;
    xcb_gcontext_t gc;
};

std::span<const std::uint8_t> bytesOf(std::span<const std::uint32_t> words) {
    return {reinterpret_cast<const std::uint8_t*>(words.data()), words.size_bytes()};
}

/// Calls `send(firstRow, rows, pixels)` for one strip after the other; it may change the pixels.
template <class Send>
void forEachStrip(const Connection& x, Picture& picture, std::uint16_t width, std::uint16_t height,
                  const Send& send) {
    const std::uint16_t step = std::min(rowsAtOnce(x, width), height);
    std::vector<std::uint32_t> strip(std::size_t{step} * width);
    for (std::uint16_t row = 0; row < height && step > 0;) {
        const std::uint16_t rows = std::min<std::uint16_t>(step, height - row);
        const std::span<std::uint32_t> pixels(strip.data(), std::size_t{rows} * width);
        picture.draw(row, pixels);
        send(row, rows, pixels);
        row = static_cast<std::uint16_t>(row + rows);
    }
}

std::uint32_t fullStrength(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    if (alpha == 0 || alpha == 255) return pixel;
    auto channel = [&](int shift) {
        return std::min((pixel >> shift & 0xff) * 255 / alpha, 255u) << shift;
    };
    return 0xff000000 | channel(16) | channel(8) | channel(0);
}

/// One bit a pixel, in the order that `takesPictures` has asked for.
std::vector<std::uint8_t> shapeOf(std::span<const std::uint32_t> pixels, std::uint16_t width,
                                  std::size_t rowBytes) {
    std::vector<std::uint8_t> bits(pixels.size() / width * rowBytes);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (pixels[i] >> 24 < opaqueFrom) continue;
        const std::size_t x = i % width;
        const unsigned bit =
            std::endian::native == std::endian::little ? 1u << (x % 8) : 0x80u >> (x % 8);
        bits[i / width * rowBytes + x / 8] |= static_cast<std::uint8_t>(bit);
    }
    return bits;
}

} // namespace

Pixmap::Pixmap(Connection& connection, std::uint8_t depth, std::uint16_t width,
               std::uint16_t height)
    : c(connection.xcb()), pixmap(xcb_generate_id(c)) {
    xcb_create_pixmap(c, depth, pixmap, connection.root(), width, height);
}

Pixmap::~Pixmap() {
    if (pixmap != XCB_NONE) xcb_free_pixmap(c, pixmap);
}

Pixmap::Pixmap(Pixmap&& other) noexcept
    : c(other.c), pixmap(std::exchange(other.pixmap, XCB_NONE)) {}

bool takesPictures(const Connection& x, std::uint8_t depth, std::uint16_t width) {
    constexpr auto order = std::endian::native == std::endian::little ? XCB_IMAGE_ORDER_LSB_FIRST
                                                                      : XCB_IMAGE_ORDER_MSB_FIRST;
    const xcb_setup_t* setup = xcb_get_setup(x.xcb());
    const xcb_format_t* format = formatOf(x, depth);
    return setup->image_byte_order == order && setup->bitmap_format_bit_order == order && format &&
           format->bits_per_pixel == 32 && formatOf(x, 1) && rowsAtOnce(x, width) > 0;
}

Pixmap uploadTranslucent(Connection& x, Picture& picture, std::uint16_t width,
                         std::uint16_t height) {
    constexpr std::uint8_t depth = 32;
    Pixmap pixmap(x, depth, width, height);
    Graphics graphics(x, pixmap);
    forEachStrip(x, picture, width, height, [&](auto row, auto rows, auto pixels) {
        graphics.put(depth, width, row, rows, bytesOf(pixels));
    });
    return pixmap;
}

ShapedPixels uploadShaped(Connection& x, Picture& picture, std::uint16_t width,
                          std::uint16_t height) {
    const std::uint8_t depth = x.screenInfo().root_depth;
    const std::size_t pad = formatOf(x, 1)->scanline_pad;
    const std::size_t rowBytes = (width + pad - 1) / pad * pad / 8;
    ShapedPixels sent{Pixmap(x, depth, width, height), Pixmap(x, 1, width, height)};
    Graphics colours(x, sent.colours);
    Graphics shape(x, sent.shape);
    forEachStrip(x, picture, width, height, [&](auto row, auto rows, auto pixels) {
        shape.put(1, width, row, rows, shapeOf(pixels, width, rowBytes));
        std::transform(pixels.begin(), pixels.end(), pixels.begin(), fullStrength);
        colours.put(depth, width, row, rows, bytesOf(pixels));
    });
    return sent;
}

} // namespace platform::x11
