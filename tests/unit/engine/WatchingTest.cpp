#include "unit/Program.h"

#include <gmock/gmock.h>

// What a desktop is asked to tell, and to do by itself.

namespace palisor {
namespace {

using platform::Rect;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

struct Watched : Program {
    explicit Watched(int variant, std::string_view layout = sideBySide) : Program(variant, layout) {
        launched();
    }

    /// With these sides and no other ones armed: 1 left, 2 top, 3 right, 4 bottom.
    const std::vector<Rect>& strips(std::initializer_list<int> sides,
                                    std::initializer_list<int> corners = {1, 2, 3, 4}) {
        const auto arm = [&](CheckBox& box, bool armed) {
            box.state = armed ? 1 : 0;
            app.valueChange(box);
        };
        int number = 0;
        for (CheckBox* side : {&app.butlato1, &app.butlato2, &app.butlato3, &app.butlato4}) {
            ++number;
            arm(*side, std::ranges::find(sides, number) != sides.end());
        }
        number = 0;
        for (CheckBox* corner :
             {&app.butangolo1, &app.butangolo2, &app.butangolo3, &app.butangolo4}) {
            ++number;
            arm(*corner, std::ranges::find(corners, number) != corners.end());
        }
        return platform.input.watched().strips;
    }
    std::optional<double> rest() const { return platform.cursor.hiddenAfter(); }
};

TEST(WatchedStrips, OfAWrapAroundAreAtTheLeftAndRightEndOfTheDesktop) {
    Watched wrap(variants::wrapAround);
    EXPECT_THAT(wrap.strips({1, 3}), ElementsAre(Rect{0, 0, 2, 1080}, Rect{3198, 56, 2, 1024}));
}

TEST(WatchedStrips, AreAtTheUpperAndLowerSideOfEachMonitor) {
    Watched wrap(variants::wrapAround);
    EXPECT_THAT(wrap.strips({2, 4}),
                ElementsAre(Rect{0, 0, 1920, 2}, Rect{0, 1078, 1920, 2}, Rect{1920, 56, 1280, 2},
                            Rect{1920, 1078, 1280, 2}));
}

TEST(WatchedStrips, AreOnEveryMonitorThatReachesTheEndOfTheDesktop) {
    Watched wrap(variants::wrapAround, "1920x1080+0+0,1920x1080+0+1080,1280x1024+1920+0");
    EXPECT_THAT(wrap.strips({1}), ElementsAre(Rect{0, 0, 2, 1080}, Rect{0, 1080, 2, 1080}));
}

TEST(WatchedStrips, LeaveOutCornersThatAreNotArmed) {
    Watched wrap(variants::wrapAround, oneMonitor);
    // A corner is 257.14 high and 457.14 wide.
    EXPECT_THAT(wrap.strips({1}, {4}), ElementsAre(Rect{0, 258, 2, 822}));
    EXPECT_THAT(wrap.strips({1}, {1}), ElementsAre(Rect{0, 0, 2, 823}));
    EXPECT_THAT(wrap.strips({2}, {}), ElementsAre(Rect{458, 0, 1005, 2}));
}

TEST(WatchedStrips, AreWhereAnEdgeActs) {
    for (const auto& corners : {std::initializer_list<int>{1, 2, 3, 4}, {}, {1, 3}}) {
        Watched wrap(variants::wrapAround);
        const auto strips = wrap.strips({1, 2, 3, 4}, corners);
        const auto isOnStrip = [&](platform::Point at) {
            return std::ranges::any_of(strips, [&](const Rect& one) { return one.contains(at); });
        };
        for (const Rect screen : {Rect{0, 0, 1920, 1080}, Rect{1920, 56, 1280, 1024}})
            for (double x = screen.x; x < screen.x + screen.width; x += x < screen.x + 3 ? 1 : 13)
                for (double y : {screen.y, screen.y + 200, screen.y + 500, screen.y + 1023}) {
                    wrap.pointer({screen.x + 960, screen.y + 540});
                    wrap.effects();
                    wrap.pointer({x, y});
                    if (wrap.effects({"warp"}).empty()) continue;
                    EXPECT_TRUE(isOnStrip({x, y})) << x << ", " << y;
                }
    }
}

TEST(WatchedStrips, OfACursorHiderAreAtEachSideOfEachMonitorWhileItsBordersAreHot) {
    Watched hider(variants::cursorHider);
    EXPECT_THAT(hider.strips({1, 3}), IsEmpty());
    hider.app.pressHotBorders();
    EXPECT_THAT(hider.strips({1, 3}),
                ElementsAre(Rect{0, 0, 2, 1080}, Rect{1918, 0, 2, 1080}, Rect{1920, 56, 2, 1024},
                            Rect{3198, 56, 2, 1024}));
}

TEST(WatchedStrips, AreThereWhileTheProductIsOnAndTellOfPushesWhereItWantsThem) {
    Watched switcher(variants::desktopSwitcher);
    ASSERT_THAT(switcher.strips({1, 3}), testing::SizeIs(2));
    EXPECT_FALSE(switcher.platform.input.watched().pushes);
    switcher.app.pressVelocity();
    EXPECT_TRUE(switcher.platform.input.watched().pushes);
    switcher.app.enableDisable();
    EXPECT_EQ(switcher.platform.input.watched(), platform::PointerWatch());
    switcher.app.enableDisable();
    EXPECT_THAT(switcher.platform.input.watched().strips, testing::SizeIs(2));
}

TEST(WatchedStrips, FollowTheMonitorsWithinThreeSeconds) {
    Watched wrap(variants::wrapAround);
    wrap.strips({1, 3});
    wrap.platform.displays.change(screensFromLayout(oneMonitor));
    wrap.platform.runLoop.advance(3);
    EXPECT_THAT(wrap.platform.input.watched().strips,
                ElementsAre(Rect{0, 0, 2, 1080}, Rect{1918, 0, 2, 1080}));
}

TEST(WatchedStrips, AreNotThereForOtherProducts) {
    for (const int variant : {variants::keepAwake, variants::barrier, variants::calendarAlerts}) {
        Watched other(variant);
        EXPECT_THAT(other.strips({1, 2, 3, 4}), IsEmpty()) << variant;
        EXPECT_FALSE(other.platform.input.watched().motion);
    }
}

TEST(WatchedCrossing, IsAsLongAsAPushOfTheBarrierWhileOneCrosses) {
    Watched barrier(variants::barrier);
    const auto crossing = [&] { return barrier.platform.input.watched().crossing; };
    EXPECT_EQ(crossing(), 0);
    barrier.app.pressVelocity();
    EXPECT_EQ(crossing(), barrier.app.calculatedSettedDistance());
    platform::Slider slider;
    slider.value = 60;
    barrier.app.velocitySliderDidMove(slider);
    EXPECT_EQ(crossing(), 108);
    barrier.app.enableDisable();
    EXPECT_EQ(crossing(), 0);
}

TEST(WatchedMotion, IsThatOfTheCrossHairAndOfACursorHiderWhoseDesktopDoesNotHide) {
    EXPECT_TRUE(Watched(variants::crossHair).platform.input.watched().motion);
    Watched hider(variants::cursorHider);
    EXPECT_TRUE(hider.platform.input.watched().motion);
    hider.app.pressTimeMode();
    EXPECT_FALSE(hider.platform.input.watched().motion);
}

TEST(HidingAtRest, IsAskedOfTheDesktopForTheTimeThatIsSetWhileTheProductIsOn) {
    Watched hider(variants::cursorHider);
    EXPECT_EQ(hider.rest(), 5);
    platform::Slider slider;
    slider.value = 0;
    hider.app.sliderDidMove(slider);
    EXPECT_EQ(hider.rest(), 0.1);
    hider.app.pressTimeMode();
    EXPECT_EQ(hider.rest(), std::nullopt);
    hider.app.pressTimeMode();
    EXPECT_EQ(hider.rest(), 0.1);
    hider.app.enableDisable();
    EXPECT_EQ(hider.rest(), std::nullopt);
}

TEST(HidingAtRest, ByTheDesktopIsNotDoneByATimerOfTheProgramToo) {
    for (const bool byDesktop : {false, true}) {
        Program hider(variants::cursorHider);
        hider.platform.cursor.setHidesAtRest(byDesktop);
        hider.launched();
        hider.pointer({500, 500});
        hider.effects();
        hider.platform.runLoop.advance(6);
        EXPECT_THAT(hider.effects({"hideCursor"}), testing::SizeIs(byDesktop ? 0 : 1));
        EXPECT_EQ(hider.platform.input.watched().motion, !byDesktop);
    }
}

TEST(HidingAtRest, ByTheDesktopLeavesNothingToBeChosenAboutScrolling) {
    for (const bool byDesktop : {false, true}) {
        Program hider(variants::cursorHider);
        hider.platform.cursor.setHidesAtRest(byDesktop);
        hider.launched();
        const auto& items = hider.app.mainMenu->items;
        const auto entry = std::ranges::find(
            items, "SHOW_ON_SCROLL", [](const auto& item) -> const auto& { return item->title; });
        ASSERT_NE(entry, items.end());
        EXPECT_EQ((*entry)->enabled, !byDesktop);
        EXPECT_EQ((*entry)->action.empty(), byDesktop);
    }
}

TEST(CrossHairWithoutThePlace, LeavesTheCursorToBeSeen) {
    for (const bool tells : {true, false}) {
        Program crossHair(variants::crossHair);
        crossHair.platform.input.setTellsMotion(tells);
        crossHair.launched();
        EXPECT_EQ(crossHair.platform.cursor.isHidingInForce(), tells);
        EXPECT_EQ(crossHair.platform.windows.areMarkersSeen(), tells);
    }
}

} // namespace
} // namespace palisor
