#include "desktop/Product.h"
#include "support/Watcher.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

constexpr int mouseRate = 1000;
constexpr int displayRate = 60;

/// Motion from the middle of one monitor towards another.
struct Case {
    const char* name;
    const char* layout;
    int direction; ///< 1 to the right of the first monitor, -1 to the left
};

class Hold : public testing::TestWithParam<Case> {};

TEST_P(Hold, KeepsTheCursorOnItsMonitorAgainstAThousandStepsASecond) {
    Product product(GetParam().layout);
    product.start();
    product.hand.push(7 * GetParam().direction, 0, 2500, mouseRate);
    EXPECT_TRUE(product.cursorEndsOn(0));
}

TEST_P(Hold, LetsAHardPushThroughAndHoldsOnTheOtherSide) {
    Product product(GetParam().layout);
    product.start({.pushOption = true, .velocity = 25});
    const int towards = GetParam().direction;

    product.moveNextTo(0, towards);
    product.hand.push(towards, 0, 90, displayRate);
    EXPECT_TRUE(product.cursorEndsOn(0)) << "steps of one pixel are no push";
    EXPECT_TRUE(product.isCovered(1));

    product.moveNextTo(0, towards);
    product.hand.push(40 * towards, 0, 10, displayRate);
    EXPECT_TRUE(product.cursorEndsOn(1));
    EXPECT_TRUE(product.coveredSoon(0, 1));

    product.moveNextTo(1, -towards);
    product.hand.push(-towards, 0, 90, displayRate);
    EXPECT_TRUE(product.cursorEndsOn(1)) << "it is held on the other side";
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, Hold,
    testing::Values(Case{"PrimaryOnTheLeft", "1920x1080+0+0,1280x1024+1920+56", 1},
                    Case{"PrimaryOnTheRight", "1920x1080+1280+0*,1280x1024+0+56", -1},
                    Case{"OtherAboveTheOriginOfThePrimary", "1280x1024+1280+300*,1280x1024+0+0",
                         -1},
                    Case{"ThreeInARow", "1280x1024+1280+0*,1280x1024+2560+0,1280x1024+0+0", 1},
                    Case{"OfAnotherHeight", "1920x1080+0+0,1024x768+1920+0", 1}),
    [](const auto& layout) { return layout.param.name; });

TEST(Hold, IsLiftedWhileTheLeftHandKeysAreHeldAndAnchorsWhereTheyAreReleased) {
    using namespace support::key;
    Product product;
    product.start();
    product.hand.press(leftControl);
    product.hand.press(leftAlt);
    product.hand.press(leftSuper);
    EXPECT_TRUE(product.nothingCoveredSoon());
    product.hand.push(7, 0, 200, mouseRate);
    EXPECT_TRUE(product.cursorIsOn(1));
    product.hand.release(leftSuper);
    product.hand.release(leftAlt);
    product.hand.release(leftControl);
    EXPECT_TRUE(product.coveredSoon(0, 1));
    product.hand.push(-7, 0, 400, mouseRate);
    EXPECT_TRUE(product.cursorEndsOn(1));
}

TEST(Hold, IsNotLiftedByTheRightHandKeys) {
    constexpr xcb_keysym_t rightControl = 0xffe4, rightAlt = 0xffea, rightSuper = 0xffec;
    Product product;
    product.start();
    for (const auto key : {rightControl, rightAlt, rightSuper})
        product.hand.press(key);
    product.hand.push(7, 0, 300, mouseRate);
    EXPECT_TRUE(product.cursorEndsOn(0));
    EXPECT_TRUE(product.isCovered(1));
}

TEST(Hold, DoesNotExistWhileTheProductIsSwitchedOff) {
    Product product;
    product.start({.active = false});
    product.hand.push(7, 0, 200, mouseRate);
    EXPECT_TRUE(product.cursorIsOn(1));
    EXPECT_TRUE(product.nothingCoveredSoon());
}

} // namespace
} // namespace desktop
