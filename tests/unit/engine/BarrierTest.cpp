#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

/// The barrier on the left of two monitors, the cursor last seen at (1900, 500).
struct Barrier : Program {
    explicit Barrier(std::string_view layout = sideBySide) : Program(variants::barrier, layout) {
        platform.pointer.place({960, 500});
        launched();
        pointer({1900, 500});
        effects();
    }
};

TEST(Barrier, LeavesTheCursorAloneInsideItsScreen) {
    Barrier barrier;
    barrier.pointer({1910, 510});
    EXPECT_THAT(barrier.effects(), IsEmpty());
    EXPECT_EQ(barrier.app.cordmouse, (Point{1910, 510}));
    EXPECT_EQ(barrier.app.oldcordmouse, (Point{1910, 510}));
    EXPECT_EQ(barrier.app.oldoldcordmouse, (Point{1900, 500}));
    EXPECT_EQ(barrier.app.lastCoord, (Point{1910, 510}));
}

TEST(Barrier, PutsTheCursorBackOnePointInsideTheEdgeItCrossed) {
    struct {
        const char* layout;
        Point outside, putBack;
    } const cases[] = {
        {sideBySide, {1925, 510}, {1919, 510}},
        {sideBySide, {3000, 510}, {1919, 510}},
        {"1920x1080+0+0,1280x1024+-1280+0", {-40, 700}, {1, 700}},
        // A vertical exit keeps its height and counts as one to the left.
        {"1920x1080+0+0,1920x1080+0+1080", {1900, 1100}, {1, 1100}},
        {"1920x1080+0+0,1920x1080+0+1080", {1901, 1100}, {1919, 1100}},
    };
    for (const auto& [layout, outside, putBack] : cases) {
        Barrier barrier(layout);
        barrier.pointer(outside);
        EXPECT_EQ(barrier.platform.pointer.location(), putBack) << outside.x << "," << outside.y;
        EXPECT_EQ(barrier.app.lastCoord, (Point{1900, 500}));
        EXPECT_EQ(barrier.app.oldcordmouse, (Point{1900, 500}));
    }
}

TEST(Barrier, WarpsBetweenTwoSuppressionIntervals) {
    Barrier barrier;
    barrier.pointer({1925, 510});
    EXPECT_THAT(barrier.effects(),
                ElementsAre(R"(suppressionInterval {"seconds":0})", R"(warp {"to":[1919,510]})",
                            R"(suppressionInterval {"seconds":0.25})"));
}

TEST(Barrier, NeverLetsAPushThroughWhileThePushOptionIsOff) {
    Barrier barrier;
    barrier.setting(keys::VELOCITY, Value{std::int64_t{0}});
    barrier.pointer({3000, 500});
    EXPECT_EQ(barrier.app.switchedScreen, barrier.screen(0));
    EXPECT_EQ(barrier.platform.pointer.location(), (Point{1919, 500}));
}

TEST(Barrier, IsCrossedByAFastSidewaysStepAndThenHoldsOnTheOtherSide) {
    Barrier barrier;
    barrier.setting(keys::VELOCITY_OPTION, Value{true});
    barrier.setting(keys::VELOCITY, Value{std::int64_t{10}}); // more than 3 points
    barrier.pointer({1940, 500});
    EXPECT_EQ(barrier.app.switchedScreen, barrier.screen(1));
    EXPECT_EQ(barrier.platform.pointer.location(), (Point{1940, 500}));
    EXPECT_THAT(
        barrier.effects({"window", "windowOut"}),
        ElementsAre(
            R"(windowOut {"id":1})",

            R"(window {"id":2,"kind":"dark","frame":[0,0,1920,1080],"alpha":0.75,"level":21,"behaviour":4369,"ignoresMouse":false,"background":"black","image":null})"));
    barrier.setting(keys::VELOCITY_OPTION, Value{false});
    barrier.pointer({1915, 500});
    EXPECT_EQ(barrier.platform.pointer.location(), (Point{1921, 500}));
}

TEST(Barrier, MeasuresAPushFromThePreviousPlaceAndNotFromTheLastOneInsideTheScreen) {
    // Right after a crossing the two are on different monitors.
    struct {
        Point back;
        std::size_t screen;
        Point ends;
    } const cases[] = {
        {{1902, 500}, 1, {1921, 500}}, // 2 points from (1900, 500), 38 from (1940, 500)
        {{1897, 500}, 1, {1921, 500}},
        {{1896.9, 500}, 0, {1896.9, 500}},
        {{1903.1, 500}, 0, {1903.1, 500}},
        {{1890, 501}, 1, {1921, 501}}, // too steep for 10 points, not for 50
    };
    for (const auto& [back, screen, ends] : cases) {
        Barrier barrier;
        barrier.setting(keys::VELOCITY_OPTION, Value{true});
        barrier.setting(keys::VELOCITY, Value{std::int64_t{10}}); // more than 3 points
        barrier.pointer({1940, 500});
        ASSERT_EQ(barrier.app.oldcordmouse, (Point{1900, 500}));
        ASSERT_EQ(barrier.app.lastCoord, (Point{1940, 500}));
        barrier.pointer(back);
        EXPECT_EQ(barrier.app.switchedScreen, barrier.screen(screen)) << back.x;
        EXPECT_EQ(barrier.platform.pointer.location(), ends) << back.x;
    }
}

TEST(Barrier, HoldsAgainstStepsThatAreTooSlowOrTooSteep) {
    for (const Point outside : {Point{1921, 500}, Point{1940, 504}, Point{1940, 600}}) {
        Barrier barrier;
        barrier.setting(keys::VELOCITY_OPTION, Value{true});
        barrier.setting(keys::VELOCITY, Value{std::int64_t{27}}); // more than 21.87 points
        barrier.pointer(outside);
        EXPECT_EQ(barrier.app.switchedScreen, barrier.screen(0));
        EXPECT_EQ(barrier.platform.pointer.location(), (Point{1919, outside.y}));
    }
}

TEST(Barrier, SkipsThePushTestWhileTheCombinationIsHeld) {
    Barrier barrier;
    barrier.setting(keys::VELOCITY_OPTION, Value{true});
    barrier.setting(keys::VELOCITY, Value{std::int64_t{0}});
    barrier.app.combo = true;
    barrier.pointer({2400, 500});
    EXPECT_EQ(barrier.platform.pointer.location(), (Point{1919, 500}));
    EXPECT_EQ(barrier.app.switchedScreen, barrier.screen(0));
}

TEST(Barrier, DoesNothingAtAllWhileSwitchedOff) {
    Barrier barrier;
    barrier.setting(keys::ATTIVO, Value{false});
    barrier.pointer({2400, 500});
    EXPECT_THAT(barrier.effects(), IsEmpty());
    EXPECT_EQ(barrier.app.cordmouse, (Point{1900, 500}));
    EXPECT_EQ(barrier.app.oldcordmouse, (Point{1900, 500}));
}

TEST(PointerEvents, AreIgnoredWhileTheProgramHasParkedTheCursorItself) {
    Barrier barrier;
    barrier.app.savedcoordsMD = {70, 80};
    barrier.app.moveCursorOnMainScreen();
    barrier.effects();
    barrier.pointer({2400, 500});
    EXPECT_THAT(barrier.effects(), IsEmpty());
    barrier.app.rimettiCursoreSulleGiusteCoordinate();
    EXPECT_EQ(barrier.platform.pointer.location(), (Point{70, 80}));
    barrier.pointer({2400, 500});
    EXPECT_EQ(barrier.platform.pointer.location(), (Point{1919, 500}));
}

TEST(History, ShiftsForEveryEventOfTheOtherProductsEvenWhenSwitchedOff) {
    for (const int variant : {0, 1, 2, 3, 5, 7}) {
        Program program(variant);
        program.launched();
        program.pointer({10, 500});
        program.pointer({20, 500});
        program.setting(keys::ATTIVO, Value{false});
        program.pointer({30, 500});
        EXPECT_EQ(program.app.cordmouse, (Point{20, 500})) << variant;
        EXPECT_EQ(program.app.oldcordmouse, (Point{20, 500})) << variant;
        EXPECT_EQ(program.app.oldoldcordmouse, (Point{10, 500})) << variant;
        program.pointer({40, 500});
        EXPECT_EQ(program.app.oldoldcordmouse, (Point{20, 500})) << variant;
    }
}

} // namespace
} // namespace palisor
