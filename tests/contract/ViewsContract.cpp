#include "platform/memory/Views.h"

#include <algorithm>
#include <gtest/gtest.h>

// What every view and text field promises. No window of the products has any, so that the only ones
// are those in memory.

namespace {

using platform::Image;
using platform::Point;

constexpr std::uint32_t red = 0xffff0000;
constexpr platform::ImageSize size{30, 20};
constexpr Point place{120, 70}; // of the view on the desktop

Image redImage() {
    Image image = Image::ofSize(size);
    std::ranges::fill(image.pixels, red);
    return image;
}

struct MemoryBackend {
    platform::memory::View view{place, redImage()};
    platform::memory::View viewInNoWindow{{}, redImage()};
    platform::memory::TextField field{"text"};
};

template <class Backend>
class ViewsContract : public testing::Test {
  protected:
    Backend backend;
    platform::View& view = backend.view;
};

using Backends = testing::Types<MemoryBackend>;
TYPED_TEST_SUITE(ViewsContract, Backends);

TYPED_TEST(ViewsContract, HasItsBoundsInItsOwnCoordinates) {
    EXPECT_EQ(this->view.bounds(), (platform::Rect{0, 0, 30, 20}));
}

TYPED_TEST(ViewsContract, TakesPointsFromTheDesktop) {
    EXPECT_EQ(this->view.fromDesktop(place), (Point{0, 0}));
    EXPECT_EQ(this->view.fromDesktop({place.x + 29, place.y - 3}), (Point{29, -3}));
}

TYPED_TEST(ViewsContract, HasNoPlaceOnTheDesktopWithoutAWindow) {
    EXPECT_EQ(this->backend.viewInNoWindow.fromDesktop(place), std::nullopt);
}

TYPED_TEST(ViewsContract, ShowsWhatItDraws) {
    EXPECT_EQ(this->view.display(), redImage());
}

TYPED_TEST(ViewsContract, ShowsWhatItDrawsAlsoWhenItIsHiddenAndStaysHidden) {
    this->view.setHidden(true);
    EXPECT_EQ(this->view.display(), redImage());
    EXPECT_TRUE(this->view.isHidden());
}

TYPED_TEST(ViewsContract, HasContentsInItsLayerOnlyWhileItIsVisibleAndHasOne) {
    const Image nothing = Image::ofSize(size);
    EXPECT_FALSE(this->view.wantsLayer());
    EXPECT_EQ(this->view.layerContents(), nothing);
    this->view.setWantsLayer(true);
    EXPECT_EQ(this->view.layerContents(), redImage());
    this->view.setHidden(true);
    EXPECT_EQ(this->view.layerContents(), nothing);
    this->view.setHidden(false);
    EXPECT_EQ(this->view.layerContents(), redImage());
}

TYPED_TEST(ViewsContract, KeepsTheAttributesOfATextUntilTheNextOne) {
    auto& field = this->backend.field;
    EXPECT_EQ(field.attributedText(),
              (platform::AttributedText{.text = "text", .underlined = false}));
    field.setAttributedText({.text = "perch\u00e9", .underlined = true});
    EXPECT_EQ(field.attributedText(),
              (platform::AttributedText{.text = "perch\u00e9", .underlined = true}));
    field.setAttributedText({.text = "plain", .underlined = false});
    EXPECT_EQ(field.attributedText(),
              (platform::AttributedText{.text = "plain", .underlined = false}));
}

} // namespace
