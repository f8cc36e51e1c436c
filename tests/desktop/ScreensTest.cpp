#include "testing/desktop/Product.h"

#include <algorithm>
#include <gtest/gtest.h>

// Monitors that are not simply side by side: mirrored ones, and ones that do not touch.

namespace desktop {
namespace {

constexpr const char* sideBySide = "1920x1080+0+0,1280x1024+1920+56";
constexpr const char* mirrored = "1920x1080+0+0,1920x1080+0+0";

struct Mirror : testing::Test {
    void changeTo(const std::string& layout) {
        product.layout = support::parseLayout(layout);
        product.desktop.setLayout(layout);
    }
    /// Nothing dark is left, wherever it was.
    bool isLightSoon() const {
        return waitUntil([&] {
            return std::ranges::none_of(
                product.eye.windows(), [](const support::SeenWindow& window) {
                    return window.mapped && window.overrideRedirect && window.area.width > 600;
                });
        });
    }
    bool isSwitchedOffForGood() const {
        return product.storedSettings().find(entry("ATTIVO", flag(false))) != std::string::npos;
    }

    Product product{mirrored};
};

TEST_F(Mirror, IsOneMonitorOfWhichTheProgramWarns) {
    product.desktop.startWindowManager("openbox");
    product.spawn();
    const auto alertIsShown = [&] {
        for (const auto& window : product.eye.windows())
            if (window.mapped && !window.overrideRedirect && window.area.width > 200) return true;
        return false;
    };
    ASSERT_TRUE(waitUntil(alertIsShown)) << product.program->errors();
    ASSERT_TRUE(waitUntil([&] {
        product.hand.type(support::key::enter);
        return !product.program->running();
    }));
    EXPECT_EQ(product.program->wait(), 0);
    EXPECT_TRUE(isSwitchedOffForGood());
}

TEST_F(Mirror, IsLightAndFreeWhereItIsSwitchedOnAndDarkAgainWhenItIsSwitchedOff) {
    changeTo(sideBySide);
    product.start();
    for (const char* mirror : {mirrored, "1920x1080+0+0,1280x1024+0+0"}) {
        changeTo(mirror);
        EXPECT_TRUE(isLightSoon()) << mirror;
        product.moveToMiddle(0);
        product.hand.push(7, 0, 100, mouseRate);
        EXPECT_EQ(product.eye.cursor().x, product.middle(0).x + 700) << mirror;
        EXPECT_TRUE(product.program->running());

        changeTo(sideBySide);
        EXPECT_TRUE(product.coveredSoon(1, 0)) << mirror;
        product.hand.push(7, 0, 300, mouseRate);
        EXPECT_TRUE(product.cursorEndsOn(0)) << mirror;
    }
}

TEST_F(Mirror, OfAMomentAtLoginIsWaitedFor) {
    product.moveToMiddle(0);
    product.spawn({.options = {"--at-login", "--verbose"}});
    ASSERT_TRUE(waitUntil([&] {
        return product.program->errors().find("waiting for a second monitor") != std::string::npos;
    })) << product.program->errors();
    changeTo(sideBySide);
    EXPECT_TRUE(product.coveredSoon(1, 0)) << product.program->errors();
    EXPECT_FALSE(isSwitchedOffForGood());
}

// The other monitor begins higher, so that a point beside the corner is on it.
TEST(UnequalHeights, ASlantingPushAtTheCornerIsPutBackOntoItsOwnMonitor) {
    for (const bool held : {true, false}) {
        Product product("1280x1024+1920+56*,1920x1080+0+0");
        product.start({.hold = held});
        for (const Spot step : {Spot{-7, -7}, Spot{-3, -9}, Spot{-9, -2}}) {
            product.hand.moveTo(1960, 90);
            product.hand.push(step.x, step.y, 100, mouseRate);
            EXPECT_TRUE(product.cursorEndsOn(0))
                << "held: " << held << ", " << product.eye.cursor().x << ", "
                << product.eye.cursor().y;
        }
    }
}

/// Two monitors with two hundred pixels between them that no monitor shows.
struct Gap : testing::Test {
    /// A place in the gap next to the monitor.
    void moveBeside(std::size_t index) { product.hand.moveTo(index == 0 ? 1310 : 1450, 500); }
    void expectHeldOn(std::size_t index) {
        EXPECT_TRUE(product.coveredSoon(1 - index, index)) << product.program->errors();
        EXPECT_TRUE(product.cursorEndsOn(index)) << product.eye.cursor().x;
        const int inwards = index == 0 ? -1 : 1;
        const int before = product.eye.cursor().x;
        product.hand.push(7 * inwards, 0, 50, mouseRate);
        EXPECT_TRUE(waitUntil([&] { return product.eye.cursor().x == before + 350 * inwards; }))
            << product.eye.cursor().x << " from " << before;
    }

    Product product{"1280x1024+0+0,1280x1024+1480+0"};
};

TEST_F(Gap, AtTheStartTheCursorIsPutOntoTheNearestMonitor) {
    for (const std::size_t nearest : {0, 1}) {
        moveBeside(nearest);
        ASSERT_FALSE(product.cursorIsOn(0) || product.cursorIsOn(1)) << "no gap on this server";
        product.spawn();
        expectHeldOn(nearest);
        product.program->end();
    }
}

TEST_F(Gap, WhereTheCombinationIsReleasedTheCursorIsPutOntoTheNearestMonitor) {
    using namespace support::key;
    product.start();
    for (const std::size_t nearest : {1, 0}) {
        for (const auto key : {leftControl, leftAlt, leftSuper})
            product.hand.press(key);
        ASSERT_TRUE(product.nothingCoveredSoon());
        moveBeside(nearest);
        for (const auto key : {leftSuper, leftAlt, leftControl})
            product.hand.release(key);
        expectHeldOn(nearest);
    }
}

TEST_F(Gap, SwitchedOnAgainThereTheCursorIsPutOntoTheNearestMonitor) {
    product.start();
    for (const std::size_t nearest : {1, 0}) {
        product.switchOver();
        ASSERT_TRUE(product.nothingCoveredSoon());
        moveBeside(nearest);
        product.switchOver();
        expectHeldOn(nearest);
    }
}

TEST_F(Gap, IsCrossedByTheHandWhileTheProductIsSwitchedOff) {
    product.start({.active = false});
    product.hand.push(7, 0, 200, mouseRate);
    EXPECT_TRUE(product.cursorIsOn(1)) << product.eye.cursor().x;
}

} // namespace
} // namespace desktop
