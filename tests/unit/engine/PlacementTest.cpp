#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;

TEST(ForceMouse, PausesOnlyInTheWrapAroundProductAndOnlyWhenAsked) {
    for (int variant = 0; variant < 10; ++variant) {
        for (const bool asked : {false, true}) {
            Program program(variant);
            program.setting(keys::BREAK_AFTER_SWITCH, Value{asked});
            program.app.forceMouseToPoint({12.5, 40});
            const bool pause = asked && variant == variants::wrapAround;
            EXPECT_THAT(program.effects(),
                        ElementsAre(pause ? R"(suppressionInterval {"seconds":0.15})"
                                          : R"(suppressionInterval {"seconds":0})",
                                    R"(warp {"to":[12.5,40]})",
                                    R"(suppressionInterval {"seconds":0.25})"))
                << variant;
        }
    }
}

TEST(PutBack, GoesOnePointInsideTheEdgeByWhichTheCursorLeft) {
    Program program(variants::barrier);
    program.app.switchedScreen = program.screen(1);
    struct {
        double last, now, x;
    } const cases[] = {{2000, 3300, 3199}, {2000, 1900, 1921}, {2000, 2000, 1921}};
    for (const auto& [last, now, x] : cases) {
        program.app.lastCoord = {last, 400};
        program.app.cordmouse = {now, 410.25};
        program.app.forceMouseInCalculatedPoint();
        EXPECT_EQ(program.platform.pointer.location(), (Point{x, 410.25}));
    }
}

TEST(PutBack, PassesThroughSinglePrecision) {
    Program program(variants::barrier);
    program.app.cordmouse = {5, 400.1};
    program.app.forceMouseInCalculatedPoint();
    EXPECT_EQ(program.platform.pointer.location(), (Point{-1, static_cast<double>(400.1F)}));
}

TEST(PutBack, WithoutAScreenUsesAnEmptyFrame) {
    Program program(variants::barrier);
    program.app.cordmouse = {-5, 400};
    program.app.forceMouseInCalculatedPoint();
    EXPECT_EQ(program.platform.pointer.location(), (Point{1, 400}));
}

TEST(RestrictRect, InsetsEverySide) {
    Program program(variants::barrier);
    EXPECT_EQ(program.app.restrictRect_aboutPixel({0, 0, 100, 50}, 2), (Rect{2, 2, 96, 46}));
    EXPECT_EQ(program.app.restrictRect_aboutPixel({-10, 5, 4, 4}, 3), (Rect{-7, 8, -2, -2}));
}

TEST(CentreOfAScreen, IsInTheScreenListsOwnCoordinates) {
    Program program(variants::barrier);
    EXPECT_EQ(program.app.getCenterPointOfScreen(program.screen(1)), (Point{2560, 512}));
    EXPECT_EQ(program.app.getCenterPointOfScreen(ScreenId::none), (Point{0, 0}));
    program.app.moveCursorOnScreen(program.screen(0));
    EXPECT_EQ(program.platform.pointer.location(), (Point{960, 540}));
    program.platform.displays.replace(screensFromLayout("1920x1080+0+0,1280x1024+-1280+-200"));
    EXPECT_EQ(program.app.getCenterPointOfScreen(program.screen(1)), (Point{-640, 768}));
}

TEST(ParkedCursor, GoesToTheMainScreenAndBack) {
    Program program(variants::barrier);
    program.platform.displays.replace(screensFromLayout(sideBySide), 1);
    program.app.savedcoordsMD = {33, 44};
    program.app.moveCursorOnMainScreen();
    EXPECT_TRUE(program.app.JUST_MY_MOVE);
    EXPECT_EQ(program.platform.pointer.location(), (Point{2560, 512}));
    program.app.rimettiCursoreSulleGiusteCoordinate();
    EXPECT_FALSE(program.app.JUST_MY_MOVE);
    EXPECT_EQ(program.platform.pointer.location(), (Point{33, 44}));
}

TEST(PlayTheSound, PlaysTheBundlesSoundAtHalfVolume) {
    Program program(variants::barrier);
    program.app.playTheSound();
    EXPECT_THAT(program.effects(), ElementsAre(R"(sound {"name":"sound","volume":0.5})"));
}

} // namespace
} // namespace palisor
