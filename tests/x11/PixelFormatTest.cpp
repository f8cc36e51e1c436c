#include "platform/x11/tray/PixelFormat.h"
#include "platform/x11/tray/Contrast.h"

#include <cstring>
#include <gtest/gtest.h>

using platform::x11::PixelFormat;
using Pixels = std::vector<std::uint32_t>;
using Bytes = std::vector<std::uint8_t>;

namespace {

constexpr xcb_visualid_t visualId = 33;

template <class Part>
void append(Bytes& bytes, const Part& part) {
    const auto at = bytes.size();
    bytes.resize(at + sizeof part);
    std::memcpy(&bytes[at], &part, sizeof part);
}

struct Visual {
    std::uint8_t depth;
    std::uint8_t bitsOfPixel;
    std::uint32_t red, green, blue; ///< masks
};

constexpr Visual ofDepth16{16, 16, 0xf800, 0x07e0, 0x001f};
constexpr Visual ofDepth24{24, 32, 0xff0000, 0x00ff00, 0x0000ff};
constexpr Visual ofDepth30{30, 32, 0x3ff00000, 0x000ffc00, 0x000003ff};
constexpr Visual ofDepth32{32, 32, 0xff0000, 0x00ff00, 0x0000ff};

/// As a server with that one visual tells of it; every row fills up to four bytes.
std::optional<PixelFormat> formatOf(const Visual& visual) {
    Bytes setup, screen;
    xcb_setup_t head{};
    head.pixmap_formats_len = 1;
    append(setup, head);
    append(setup, xcb_format_t{visual.depth, visual.bitsOfPixel, 32, {}});
    xcb_screen_t one{};
    one.root_visual = visualId;
    one.allowed_depths_len = 1;
    append(screen, one);
    xcb_depth_t depth{};
    depth.depth = visual.depth;
    depth.visuals_len = 1;
    append(screen, depth);
    xcb_visualtype_t type{};
    type.visual_id = visualId;
    type.red_mask = visual.red;
    type.green_mask = visual.green;
    type.blue_mask = visual.blue;
    append(screen, type);
    return PixelFormat::of(*reinterpret_cast<const xcb_setup_t*>(setup.data()),
                           *reinterpret_cast<const xcb_screen_t*>(screen.data()), visualId);
}

struct Row {
    Visual visual;
    Bytes bytes;   ///< three pixels of the server's: red, a grey, white
    Pixels pixels; ///< as 8 bits each
};

const Row rows[] = {
    {ofDepth16, {0x00, 0xf8, 0x10, 0x84, 0xff, 0xff, 0, 0}, {0xff0000, 0x848284, 0xffffff}},
    {ofDepth24,
     {0x00, 0x00, 0xff, 0, 0x80, 0x80, 0x80, 0, 0xff, 0xff, 0xff, 0},
     {0xff0000, 0x808080, 0xffffff}},
    {ofDepth30,
     {0x00, 0x00, 0xf0, 0x3f, 0x00, 0x02, 0x08, 0x20, 0xff, 0xff, 0xff, 0x3f},
     {0xff0000, 0x808080, 0xffffff}},
    {ofDepth32,
     {0x00, 0x00, 0xff, 0, 0x80, 0x80, 0x80, 0, 0xff, 0xff, 0xff, 0},
     {0xff0000, 0x808080, 0xffffff}},
};

} // namespace

TEST(PixelFormat, ReadsEveryDepth) {
    for (const Row& row : rows) {
        SCOPED_TRACE(int{row.visual.depth});
        const auto format = formatOf(row.visual);
        ASSERT_TRUE(format);
        EXPECT_EQ(format->depth(), row.visual.depth);
        EXPECT_EQ(format->unpack(row.bytes, 3), row.pixels);
    }
}

TEST(PixelFormat, WritesWhatItReads) {
    for (const Row& row : rows) {
        SCOPED_TRACE(int{row.visual.depth});
        const auto format = formatOf(row.visual);
        ASSERT_TRUE(format);
        const Bytes written = format->pack(row.pixels, 3);
        EXPECT_EQ(written.size(), row.bytes.size());
        EXPECT_EQ(format->unpack(written, 3), row.pixels);
    }
}

TEST(PixelFormat, KeepsTheOpacityOfTheVisualThatHasOne) {
    EXPECT_EQ(formatOf(ofDepth32)->pack(Pixels{0x80402010}, 1), (Bytes{0x10, 0x20, 0x40, 0x80}));
    EXPECT_EQ(formatOf(ofDepth24)->pack(Pixels{0x80402010}, 1), (Bytes{0x10, 0x20, 0x40, 0x00}));
    EXPECT_EQ(formatOf(ofDepth30)->pack(Pixels{0xffffffff}, 1), (Bytes{0xff, 0xff, 0xff, 0x3f}));
}

TEST(PixelFormat, IsNoneOfAVisualWithoutChannels) {
    EXPECT_FALSE(formatOf({8, 8, 0, 0, 0}));
    EXPECT_FALSE(formatOf({8, 8, 0xe0, 0x1c, 0x03})) << "one byte a pixel";
}

// Darker than the middle and lighter, by as little as each depth can tell.
TEST(Contrast, IsToldOnEveryDepth) {
    for (const Row& row : rows) {
        SCOPED_TRACE(int{row.visual.depth});
        const auto format = formatOf(row.visual);
        ASSERT_TRUE(format);
        for (const std::uint32_t grey : {0x707070u, 0x909090u}) {
            const Pixels seen = format->unpack(format->pack(Pixels(12, grey), 4), 4);
            const auto text = platform::x11::contrastTo(seen);
            ASSERT_TRUE(text);
            EXPECT_EQ(text->red, grey < 0x808080 ? 255 : 0);
        }
    }
}
