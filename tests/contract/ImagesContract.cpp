#include "platform/memory/Images.h"
#include "platform/qt/pictures/QtImages.h"
#include "testing/TempFolder.h"

#include <QImage>
#include <algorithm>
#include <gtest/gtest.h>

// What every drawer and reader of images promises.

namespace {

using namespace std::string_literals;
using platform::Drawing;
using platform::Image;

constexpr std::uint32_t red = 0xffff0000;
constexpr std::uint32_t blue = 0xff0000ff;

struct MemoryBackend {
    testing_support::TempFolder folder;
    platform::memory::Images images{[this](const std::string& path) {
        return std::optional(folder.read(path.substr(path.rfind('/') + 1)));
    }};
};

struct RealBackend {
    testing_support::TempFolder folder;
    platform::qt::QtImages images;
};

template <class Backend>
class ImagesContract : public testing::Test {
  protected:
    Image load(const std::string& contents, const std::string& name = "picture.jpg") {
        backend.folder.write(name, contents);
        return images.load(backend.folder.path(name));
    }

    Backend backend;
    platform::Images& images = backend.images;
};

using Backends = testing::Types<MemoryBackend, RealBackend>;
TYPED_TEST_SUITE(ImagesContract, Backends);

Image plain(platform::ImageSize size, std::uint32_t colour) {
    Image image = Image::ofSize(size);
    std::ranges::fill(image.pixels, colour);
    return image;
}

std::uint32_t at(const Image& image, int x, int y) {
    return image.pixels.at(static_cast<std::size_t>(y) *
                               static_cast<std::size_t>(image.size.width) +
                           static_cast<std::size_t>(x));
}

unsigned alphaAt(const Image& image, int x, int y) {
    return at(image, x, y) >> 24;
}

TYPED_TEST(ImagesContract, ReadsAPictureByItsContentsWhateverItsEnding) {
    const Image image = this->load("P6 2 1 255\n\xff\x00\x00\x00\x00\xff"s);
    EXPECT_EQ(image.size, (platform::ImageSize{2, 1}));
    EXPECT_EQ(image.pixels, (std::vector{red, blue}));
}

TYPED_TEST(ImagesContract, GivesNoImageForAFileThatIsMissingCutOffOrNoPicture) {
    EXPECT_FALSE(this->images.load(this->backend.folder.path("missing")).isValid());
    EXPECT_FALSE(this->load("").isValid());
    EXPECT_FALSE(this->load("no picture").isValid());
    EXPECT_FALSE(this->load("P6 2 1 255\n\xff"s).isValid());
    EXPECT_FALSE(this->load("P6 -2 1 255\n\xff\xff\xff"s).isValid());
}

TYPED_TEST(ImagesContract, StretchesTheSourceOverTheFrameAndLeavesTheRestTransparent) {
    const Image drawn =
        this->images.drawn(plain({3, 3}, red), {.canvas = {40, 20}, .frame = {10, 5, 20, 10}});
    EXPECT_EQ(drawn.size, (platform::ImageSize{40, 20}));
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(at(drawn, x, y), x >= 10 && x < 30 && y >= 5 && y < 15 ? red : 0u)
                << x << ' ' << y;
}

TYPED_TEST(ImagesContract, KeepsTheSourceUpright) {
    Image source = plain({20, 20}, red);
    std::fill(source.pixels.begin() + 200, source.pixels.end(), blue);
    for (const int side : {10, 20, 40}) {
        const Image drawn = this->images.drawn(
            source, {.canvas = {side, side}, .frame = {0, 0, 1.0 * side, 1.0 * side}});
        EXPECT_EQ(at(drawn, side / 2, 1), red) << side;
        EXPECT_EQ(at(drawn, side / 2, side - 2), blue) << side;
    }
}

TYPED_TEST(ImagesContract, AveragesWhatItMakesSmaller) {
    Image stripes = plain({64, 64}, 0xff000000);
    for (std::size_t pixel = 0; pixel < stripes.pixels.size(); pixel += 2)
        stripes.pixels[pixel] = 0xffffffff;
    const Image drawn = this->images.drawn(stripes, {.canvas = {16, 16}, .frame = {0, 0, 16, 16}});
    for (const std::uint32_t pixel : drawn.pixels)
        ASSERT_NEAR(pixel & 0xff, 0x80, 2) << std::hex << pixel;
}

TYPED_TEST(ImagesContract, KeepsTransparency) {
    const Image drawn =
        this->images.drawn(plain({4, 4}, 0x80400000), {.canvas = {8, 8}, .frame = {0, 0, 8, 8}});
    for (const std::uint32_t pixel : drawn.pixels) {
        ASSERT_NEAR(pixel >> 24, 0x80, 1);
        ASSERT_NEAR(pixel >> 16 & 0xff, 0x40, 1);
    }
}

TYPED_TEST(ImagesContract, LeavesTheCornersOfARoundedFrameFreeAndItsSidesWhole) {
    const Image drawn = this->images.drawn(
        plain({100, 60}, red),
        {.canvas = {100, 60}, .frame = {0, 0, 100, 60}, .radiusX = 25, .radiusY = 15});
    for (const int x : {0, 99})
        for (const int y : {0, 59})
            EXPECT_EQ(alphaAt(drawn, x, y), 0u) << x << ' ' << y;
    for (int x = 25; x < 75; ++x) {
        EXPECT_EQ(at(drawn, x, 0), red) << x;
        EXPECT_EQ(at(drawn, x, 59), red) << x;
    }
    for (int y = 15; y < 45; ++y) {
        EXPECT_EQ(at(drawn, 0, y), red) << y;
        EXPECT_EQ(at(drawn, 99, y), red) << y;
    }
    // The corner is a quarter of an ellipse: at 45 degrees it lies at 1 - 1/sqrt(2) of the radii.
    EXPECT_EQ(alphaAt(drawn, 5, 3), 0u);
    EXPECT_EQ(at(drawn, 9, 6), red);
}

TYPED_TEST(ImagesContract, HasSmoothRoundedEdges) {
    const Image drawn = this->images.drawn(
        plain({64, 64}, red),
        {.canvas = {64, 64}, .frame = {0, 0, 64, 64}, .radiusX = 32, .radiusY = 32});
    const auto between = std::ranges::count_if(
        drawn.pixels, [](std::uint32_t pixel) { return pixel >> 24 > 0x10 && pixel >> 24 < 0xf0; });
    EXPECT_GT(between, 60);
    const double area = 3.14159265 / 4;
    double covered = 0;
    for (const std::uint32_t pixel : drawn.pixels)
        covered += (pixel >> 24) / 255.0;
    EXPECT_NEAR(covered / (64 * 64), area, 0.01);
}

TYPED_TEST(ImagesContract, HoldsRadiiAtHalfTheFrame) {
    const auto circle = [this](double radius) {
        return this->images.drawn(
            plain({30, 30}, red),
            {.canvas = {30, 30}, .frame = {0, 0, 30, 30}, .radiusX = radius, .radiusY = radius});
    };
    EXPECT_EQ(circle(1000), circle(15));
}

TYPED_TEST(ImagesContract, DrawsNothingWithoutASourceOrACanvas) {
    const Drawing drawing{.canvas = {4, 4}, .frame = {0, 0, 4, 4}};
    EXPECT_FALSE(this->images.drawn({}, drawing).isValid());
    EXPECT_FALSE(this->images.drawn(plain({4, 4}, red), {.canvas = {0, 4}, .frame = {0, 0, 0, 4}})
                     .isValid());
    EXPECT_FALSE(this->images.drawn(plain({4, 4}, red), {.canvas = {-4, 4}, .frame = {0, 0, 4, 4}})
                     .isValid());
}

TYPED_TEST(ImagesContract, DrawsNothingOnAFrameWithoutAnArea) {
    const Image drawn =
        this->images.drawn(plain({4, 4}, red), {.canvas = {4, 4}, .frame = {2, 2, 0, 0}});
    EXPECT_EQ(drawn, Image::ofSize({4, 4}));
}

TEST(QtImages, ReadsPngAndJpegWhateverTheEnding) {
    for (const char* format : {"PNG", "JPEG"}) {
        RealBackend backend;
        const auto path = backend.folder.path("picture.gif");
        QImage picture(16, 8, QImage::Format_RGB32);
        picture.fill(Qt::red);
        ASSERT_TRUE(picture.save(QString::fromStdString(path), format));
        const Image image = backend.images.load(path);
        ASSERT_EQ(image.size, (platform::ImageSize{16, 8})) << format;
        EXPECT_GT(at(image, 8, 4) >> 16 & 0xff, 0xf0u) << format;
        EXPECT_LT(at(image, 8, 4) & 0xff, 0x10u) << format;
    }
}

} // namespace
