#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

constexpr Colour white{255, 255, 255};

// Of 20. What remains of white is a quarter; blending rounds.
constexpr int level = 15;

bool isAQuarter(const Colour& colour) {
    const auto near = [](int channel) { return channel >= 62 && channel <= 66; };
    return near(colour.red) && near(colour.green) && near(colour.blue);
}

TEST(DarkMonitor, IsSeenInAPictureAtTheLevelThatWasSet) {
    Product product;
    product.desktop.startWindowManager("openbox");
    product.desktop.startCompositor();
    support::TestWindow left(product.desktop.display(), {100, 100, 600, 400}, white);
    support::TestWindow right(product.desktop.display(), {2100, 200, 600, 400}, white);
    product.start({.othersDark = level});
    EXPECT_TRUE(
        product.eye.waitUntilSeen([&] { return isAQuarter(product.eye.colour(2400, 400)); }));
    EXPECT_EQ(product.eye.colour(400, 300), white);
}

TEST(DarkMonitor, IsDarkenedByItsGammaRampWithoutACompositor) {
    Product product;
    ASSERT_TRUE(product.desktop.canGamma());
    const auto before = product.eye.gamma("DUMMY1");
    const auto untouched = product.eye.gamma("DUMMY0");
    product.start({.othersDark = level});
    ASSERT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") != before; }));
    const auto dark = product.eye.gamma("DUMMY1");
    EXPECT_NEAR(dark.red.back(), before.red.back() / 4.0, 64);
    EXPECT_NEAR(dark.blue.back(), before.blue.back() / 4.0, 64);
    EXPECT_EQ(product.eye.gamma("DUMMY0"), untouched);
}

TEST(DarkMonitor, ThatIsAPartOfAnOutputIsBrightWithoutACompositorAndSaysSo) {
    Product product("1920x1080+0+0");
    const auto before = product.eye.gamma("DUMMY0");
    for (const std::vector<std::string>& half :
         {std::vector<std::string>{"left", "960/254x1080/286+0+0", "DUMMY0"},
          {"right", "960/254x1080/286+960+0", "none"}}) {
        std::vector<std::string> arguments{"--setmonitor"};
        arguments.insert(arguments.end(), half.begin(), half.end());
        ASSERT_EQ(product.desktop.spawn("xrandr", arguments)->wait(), 0);
    }
    product.layout = support::parseLayout("960x1080+0+0,960x1080+960+0");
    support::TestWindow beneath(product.desktop.display(), {1100, 200, 600, 400}, white);
    product.start({.othersDark = level});
    EXPECT_TRUE(product.program->waitForText("no output to itself")) << product.program->errors();
    EXPECT_EQ(product.eye.gamma("DUMMY0"), before);
    product.hand.clickAt(1400, 400);
    EXPECT_EQ(beneath.presses(), 0);
}

TEST(DarkMonitor, LetsNoClickReachAnotherWindow) {
    for (const bool compositor : {false, true}) {
        Product product;
        product.desktop.startWindowManager("openbox");
        if (compositor) product.desktop.startCompositor();
        support::TestWindow beneath(product.desktop.display(), {2100, 200, 600, 400}, white);
        product.start();
        // The cursor is taken there and clicks before the program has put it back.
        for (int i = 0; i < 20; ++i) {
            product.hand.moveTo(2400, 400);
            product.hand.click();
        }
        EXPECT_EQ(beneath.presses(), 0) << "compositor: " << compositor;
    }
}

TEST(DarkMonitor, StaysDarkUnderAWindowThatGoesFullScreenLater) {
    Product product;
    product.desktop.startWindowManager("openbox");
    product.desktop.startCompositor();
    product.start({.othersDark = level});
    support::TestWindow window(product.desktop.display(), {2100, 200, 600, 400}, white);
    window.makeFullScreen();
    EXPECT_TRUE(
        product.eye.waitUntilSeen([&] { return isAQuarter(product.eye.colour(2400, 400)); }));
}

TEST(PluggedMonitor, IsDarkAgainAndTheProgramGoesOn) {
    Product product;
    product.start();
    product.desktop.unplug("DUMMY1");
    EXPECT_TRUE(product.nothingCoveredSoon());
    EXPECT_TRUE(product.program->running());
    product.desktop.plug("DUMMY1", "1280x1024+1920+56");
    EXPECT_TRUE(product.coveredSoon(1, 0));
    product.hand.push(7, 0, 300, 1000);
    EXPECT_TRUE(product.cursorEndsOn(0));
}

TEST(MovedMonitor, IsDarkWhereItIsNow) {
    Product product;
    product.start();
    product.desktop.setLayout("1920x1080+0+0,1280x1024+1920+0");
    product.layout[1].area = {1920, 0, 1280, 1024};
    EXPECT_TRUE(product.coveredSoon(1, 0));
}

} // namespace
} // namespace desktop
