#include "testing/desktop/Product.h"
#include "testing/desktop/Watcher.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

constexpr int displayRate = 60;

/// Motion from the middle of one monitor towards another.
struct Case {
    const char* name;
    const char* layout;
    int direction; ///< 1 to the right of the first monitor, -1 to the left
};

/// On every layout, held by the server and only warped back.
class Hold : public testing::TestWithParam<std::tuple<Case, bool>> {
  protected:
    static const Case& layout() { return std::get<Case>(GetParam()); }
    static bool serverHolds() { return std::get<bool>(GetParam()); }
};

TEST_P(Hold, KeepsTheCursorOnItsMonitorAgainstAThousandStepsASecond) {
    Product product(layout().layout);
    product.start({.hold = serverHolds()});
    support::Watcher watcher(product.desktop.display(), product.monitor(0));
    product.hand.push(7 * layout().direction, 0, 1500, mouseRate);
    const auto report = watcher.finish();
    EXPECT_TRUE(product.cursorEndsOn(0));
    if (serverHolds()) {
        EXPECT_EQ(report.farthestOutside, 0);
    }
}

TEST_P(Hold, LetsAHardPushThroughAndHoldsOnTheOtherSide) {
    Product product(layout().layout);
    product.start({.pushOption = true, .velocity = 25, .hold = serverHolds()});
    const int towards = layout().direction;

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
    testing::Combine(
        testing::Values(Case{"PrimaryOnTheLeft", "1920x1080+0+0,1280x1024+1920+56", 1},
                        Case{"PrimaryOnTheRight", "1920x1080+1280+0*,1280x1024+0+56", -1},
                        Case{"OtherAboveTheOriginOfThePrimary", "1280x1024+1280+300*,1280x1024+0+0",
                             -1},
                        Case{"ThreeInARow", "1280x1024+1280+0*,1280x1024+2560+0,1280x1024+0+0", 1},
                        Case{"OfAnotherHeight", "1920x1080+0+0,1024x768+1920+0", 1}),
        testing::Bool()),
    [](const auto& test) {
        return std::string(std::get<Case>(test.param).name) +
               (std::get<bool>(test.param) ? "Held" : "WarpedBack");
    });

/// What is to be the same whether the server holds the cursor or not.
class EitherWay : public testing::TestWithParam<bool> {};

INSTANTIATE_TEST_SUITE_P(Hold, EitherWay, testing::Bool(),
                         [](const auto& test) { return test.param ? "Held" : "WarpedBack"; });

TEST_P(EitherWay, TheHoldIsLiftedWhileTheLeftHandKeysAreHeldAndAnchorsWhereTheyAreReleased) {
    using namespace support::key;
    Product product;
    product.start({.hold = GetParam()});
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

TEST_P(EitherWay, TheVerboseLogSaysWhyAPushDidNotCrossAndThatOneDid) {
    Product product;
    product.start({.pushOption = true, .hold = GetParam(), .options = {"--verbose"}});
    product.moveNextTo(0, 1);
    product.hand.push(5, 0, 30, displayRate);
    EXPECT_TRUE(product.program->waitForText("held at 1919,"));
    EXPECT_TRUE(product.program->waitForText(" px, 75 needed"));
    product.moveNextTo(0, 1);
    product.hand.push(100, 0, 10, displayRate);
    EXPECT_TRUE(product.program->waitForText("crossed to "));
}

TEST_P(EitherWay, TheHoldIsNotLiftedByTheRightHandKeys) {
    constexpr xcb_keysym_t rightControl = 0xffe4, rightAlt = 0xffea, rightSuper = 0xffec;
    Product product;
    product.start({.hold = GetParam()});
    for (const auto key : {rightControl, rightAlt, rightSuper})
        product.hand.press(key);
    product.hand.push(7, 0, 300, mouseRate);
    EXPECT_TRUE(product.cursorEndsOn(0));
    EXPECT_TRUE(product.isCovered(1));
}

TEST_P(EitherWay, TheHoldDoesNotExistWhileTheProductIsSwitchedOff) {
    Product product;
    product.start({.active = false, .hold = GetParam()});
    product.hand.push(7, 0, 200, mouseRate);
    EXPECT_TRUE(product.cursorIsOn(1));
    EXPECT_TRUE(product.nothingCoveredSoon());
}

TEST_P(EitherWay, APushFasterThanTheThresholdCrossesAtEveryPollingRateAndASlowerOneDoesNot) {
    // 75 pixels a frame.
    constexpr double threshold = 4500, aFrame = 1.0 / 60;
    Product product("1920x1080+0+0,1920x1080+1920+0");
    product.start({.pushOption = true, .velocity = 50, .hold = GetParam()});
    for (const int hz : {125, 500, 1000, 8000}) {
        // Frames of a paced reader hold two or three reports of a slow mouse that is let out.
        if (!GetParam() && hz == 125) continue;
        std::size_t here = 0;
        double speed = 0;
        // A hand that the machine kept waiting leaps, and so does what it pushes: it tries again.
        for (double late = aFrame, tries = 0; late >= aFrame && tries < 20; ++tries) {
            here = product.cursorIsOn(0) ? 0 : 1;
            speed = here == 0 ? threshold : -threshold;
            product.moveToMiddle(here);
            late = product.hand.pushAt(0.6 * speed, 0.5, hz); // 1350 pixels, the edge is after 960
        }
        const std::size_t there = 1 - here;
        EXPECT_TRUE(product.cursorEndsOn(here)) << hz;
        EXPECT_TRUE(product.isCovered(there)) << hz;
        product.hand.pushAt(1.4 * speed, 0.3, hz);
        EXPECT_TRUE(product.coveredSoon(here, there)) << hz;
        EXPECT_TRUE(product.cursorEndsOn(there)) << hz;
    }
}

// The put-back keeps the height of the point outside and takes the left edge.
TEST_P(EitherWay, AVerticalExitIsPutBackToTheLeftEdgeAtItsOwnHeight) {
    for (const char* layout :
         {"1280x1024+0+1024*,1280x1024+0+0", "1280x1024+0+0,1280x1024+0+1024"}) {
        Product product(layout);
        product.start({.hold = GetParam()});
        const support::Area home = product.monitor(0);
        const bool down = product.monitor(1).y > home.y;
        product.hand.moveTo(640, down ? home.y + home.height - 1 : home.y);
        EXPECT_TRUE(product.cursorEndsOn(0));
        product.hand.relative(0, down ? 30 : -30);
        const Spot back{1, down ? home.y + home.height + 29 : home.y - 30};
        EXPECT_TRUE(waitUntil([&] { return product.eye.cursor() == back; })) << layout;
        EXPECT_TRUE(product.isCovered(1)) << layout;
    }
}

TEST(ServerHold, KeepsTheCursorFromLeavingWhileItIsDraggedAndAnotherProgramGrabs) {
    Product product;
    product.desktop.startWindowManager("openbox");
    support::TestWindow window(product.desktop.display(), {100, 100, 600, 400}, {255, 255, 255});
    product.start();
    window.makeFullScreen();
    product.moveNextTo(0, 1);
    support::Watcher watcher(product.desktop.display(), product.monitor(0));
    product.hand.pressButton();
    product.hand.push(7, 1, 300, mouseRate);
    product.hand.releaseButton();
    const support::XConnection other(product.desktop.display());
    ASSERT_TRUE(other.grabPointer());
    product.hand.push(7, -1, 300, mouseRate);
    const auto report = watcher.finish();
    EXPECT_EQ(report.farthestOutside, 0);
    EXPECT_GE(report.rightmost, product.monitor(0).width - 2) << "it was pushed at all";
}

TEST(ServerHold, StandsAgainWhenAMenuIsSeenToBeGone) {
    Product product;
    product.start();
    for (int i = 0; i < 5; ++i) {
        product.moveToMiddle(0);
        product.openMenu();
        product.hand.moveTo(1900, 20); // not on the menu
        product.hand.type(support::key::escape);
        ASSERT_TRUE(waitUntil([&] { return product.menus().empty(); }));
        support::Watcher watcher(product.desktop.display(), product.monitor(0));
        product.hand.relative(200, 0);
        product.hand.relative(0, 1);
        EXPECT_EQ(watcher.finish().farthestOutside, 0);
    }
}

// A crossing that the server would not carry out would darken the game's monitor.
TEST(ServerHold, GrantsNoCrossingToACursorThatAGameConfines) {
    Product product;
    support::TestWindow window(product.desktop.display(), product.monitor(0), {20, 20, 20});
    product.start({.pushOption = true, .velocity = 10});
    const support::XConnection game(product.desktop.display());
    ASSERT_TRUE(game.grabPointer(window.id()));
    product.moveNextTo(0, 1);
    product.hand.push(40, 0, 60, displayRate);
    EXPECT_TRUE(product.cursorEndsOn(0));
    EXPECT_TRUE(product.coveredSoon(1, 0));

    game.ungrabPointer();
    product.hand.push(40, 0, 10, displayRate);
    EXPECT_TRUE(product.cursorEndsOn(1));
    EXPECT_TRUE(product.coveredSoon(0, 1));
}

TEST(ServerHold, LetsAPushThroughWhileAMenuIsOpenOrSomethingIsDragged) {
    for (const bool drags : {false, true}) {
        Product product;
        support::TestWindow window(product.desktop.display(), product.monitor(0), {20, 20, 20});
        product.start({.pushOption = true, .velocity = 10});
        const support::XConnection menu(product.desktop.display());
        if (drags) {
            product.hand.pressButton();
        } else {
            ASSERT_TRUE(menu.grabPointer());
        }
        product.moveNextTo(0, 1);
        product.hand.push(40, 0, 10, displayRate);
        EXPECT_TRUE(product.cursorEndsOn(1));
        EXPECT_TRUE(product.coveredSoon(0, 1));
        if (drags) product.hand.releaseButton();
    }
}

} // namespace
} // namespace desktop
