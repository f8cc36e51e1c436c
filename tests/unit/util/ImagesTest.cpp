#include "platform/memory/Views.h"
#include "unit/Program.h"
#include "util/MacUtils.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Image;
using platform::ImageSize;

constexpr std::uint32_t red = 0xffff0000;

class Images : public testing::Test {
  protected:
    static Image plain(ImageSize size, std::uint32_t colour = red) {
        Image image = Image::ofSize(size);
        std::ranges::fill(image.pixels, colour);
        return image;
    }

    std::optional<Image> scaled(ImageSize size, const Image& image) {
        return MacUtils::imageByScalingProportionallyToSize_image(program.platform.services(), size,
                                                                  image);
    }

    Image rounded(const Image& image, bool isCircle) {
        return MacUtils::roundCorners_isCircle(program.platform.services(), image, isCircle);
    }

    /// The smallest rectangle that holds every pixel that is not transparent.
    static platform::Rect covered(const Image& image) {
        int left = image.size.width, right = 0, top = image.size.height, bottom = 0;
        for (int y = 0; y < image.size.height; ++y)
            for (int x = 0; x < image.size.width; ++x) {
                if (pixel(image, x, y) == 0) continue;
                left = std::min(left, x), right = std::max(right, x + 1);
                top = std::min(top, y), bottom = std::max(bottom, y + 1);
            }
        return {double(left), double(top), double(right - left), double(bottom - top)};
    }

    static std::uint32_t pixel(const Image& image, int x, int y) {
        return image.pixels.at(static_cast<std::size_t>(y) *
                                   static_cast<std::size_t>(image.size.width) +
                               static_cast<std::size_t>(x));
    }

    Program program{variants::barrier};
};

TEST_F(Images, ScaledToTheirOwnSizeAreTheSame) {
    Image image = plain({3, 2});
    image.pixels[4] = 0xff123456;
    EXPECT_EQ(scaled({3, 2}, image), image);
}

TEST_F(Images, WithoutPixelsCannotBeScaled) {
    EXPECT_EQ(scaled({10, 10}, {}), std::nullopt);
    EXPECT_EQ(scaled({0, 0}, {}), std::nullopt) << "though its size is the one asked for";
}

TEST_F(Images, ScaledKeepTheirProportionsInTheMiddleOfTheNewSize) {
    struct Row {
        ImageSize source, target;
        platform::Rect covered;
    };
    for (const Row& row : {Row{{20, 10}, {40, 40}, {0, 10, 40, 20}}, // wide, made larger
                           Row{{10, 20}, {40, 40}, {10, 0, 20, 40}}, // high, made larger
                           Row{{80, 40}, {20, 30}, {0, 10, 20, 10}}, // made smaller
                           Row{{10, 10}, {30, 30}, {0, 0, 30, 30}},  // same proportions
                           Row{{10, 10}, {30, 10}, {10, 0, 10, 10}}}) {
        const auto image = scaled(row.target, plain(row.source));
        ASSERT_TRUE(image);
        EXPECT_EQ(image->size, row.target);
        EXPECT_EQ(covered(*image), row.covered) << row.source.width << 'x' << row.source.height;
        EXPECT_EQ(pixel(*image, row.target.width / 2, row.target.height / 2), red)
            << "at full opacity";
    }
}

TEST_F(Images, ScaledToNothingHaveNoPixels) {
    for (const ImageSize size : {ImageSize{0, 0}, ImageSize{0, 5}, ImageSize{-3, 5}}) {
        const auto image = scaled(size, plain({2, 2}));
        ASSERT_TRUE(image);
        EXPECT_FALSE(image->isValid());
    }
}

TEST_F(Images, HaveCornersRoundedByAQuarterOfTheirSides) {
    const Image image = rounded(plain({80, 40}), false);
    EXPECT_EQ(image.size, (ImageSize{80, 40}));
    EXPECT_EQ(pixel(image, 0, 0), 0u);
    EXPECT_EQ(pixel(image, 79, 39), 0u);
    EXPECT_EQ(pixel(image, 20, 0), red) << "the straight part of the upper side";
    EXPECT_EQ(pixel(image, 0, 10), red) << "and of the left one";
    EXPECT_NE(pixel(image, 12, 0), red);
    EXPECT_NE(pixel(image, 0, 7), red);
}

TEST_F(Images, AsACircleTouchTheMiddleOfTheirSidesOnly) {
    const Image image = rounded(plain({40, 40}), true);
    for (const auto& [x, y] : {std::pair{20, 0}, {20, 39}, {0, 20}, {39, 20}, {20, 20}})
        EXPECT_GT(pixel(image, x, y) >> 24, 0xe0u) << x << ' ' << y;
    for (const auto& [x, y] : {std::pair{4, 4}, {35, 4}, {4, 35}, {35, 35}})
        EXPECT_EQ(pixel(image, x, y), 0u) << x << ' ' << y;
}

TEST_F(Images, WithoutPixelsHaveNoCorners) {
    EXPECT_FALSE(rounded({}, true).isValid());
}

TEST_F(Images, OfAViewShowWhatItShows) {
    platform::memory::View view({}, plain({5, 4}));
    EXPECT_EQ(MacUtils::snapshotForView(view), plain({5, 4}));
}

TEST_F(Images, OfAHiddenViewWithoutALayerShowItAndLeaveItHiddenWithoutOne) {
    platform::memory::View view({}, plain({5, 4}));
    view.setHidden(true);
    EXPECT_EQ(MacUtils::imageRepresentation(view), plain({5, 4}));
    EXPECT_TRUE(view.isHidden());
    EXPECT_FALSE(view.wantsLayer());
}

TEST_F(Images, OfAViewWithALayerLeaveItsLayer) {
    platform::memory::View view({}, plain({5, 4}));
    view.setWantsLayer(true);
    EXPECT_EQ(MacUtils::imageRepresentation(view), plain({5, 4}));
    EXPECT_FALSE(view.isHidden());
    EXPECT_TRUE(view.wantsLayer());
}

TEST_F(Images, ComeFromBase64TextByWayOfAFileInTheDocuments) {
    const std::string bytes("P6 2 1 255\n\xff\x00\x00\x00\x80\xff", 17);
    const auto image =
        MacUtils::fromBase64ToImage(program.platform.services(), "UDYgMiAxIDI1NQr/AAAAgP8=");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size, (ImageSize{2, 1}));
    EXPECT_EQ(image->pixels, (std::vector{red, 0xff0080ffu}));
    EXPECT_EQ(program.platform.files.contents("/memory/home/Documents/tempimage.jpg"), bytes)
        << "every byte as it was";
}

TEST_F(Images, ComeFromBase64TextWithCharactersThatAreNone) {
    EXPECT_EQ(
        MacUtils::fromBase64ToImage(program.platform.services(), "UDYgM \n*iAxIDI1NQr/AAAAgP8="),
        MacUtils::fromBase64ToImage(program.platform.services(), "UDYgMiAxIDI1NQr/AAAAgP8="));
}

TEST_F(Images, DoNotComeFromBase64TextThatIsNoPictureOrWithoutAFolder) {
    const auto services = program.platform.services();
    EXPECT_EQ(MacUtils::fromBase64ToImage(services, ""), std::nullopt);
    EXPECT_EQ(MacUtils::fromBase64ToImage(services, "bm8gcGljdHVyZQ=="), std::nullopt);
    program.platform.files.setHome(std::nullopt);
    EXPECT_EQ(MacUtils::fromBase64ToImage(services, "UDYgMiAxIDI1NQr/AAAAgP8="), std::nullopt);
}

} // namespace
} // namespace palisor
