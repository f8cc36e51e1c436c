#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using testing::ElementsAre;

struct Extent {
    const char* name;
    const char* layout;
    float minX, maxX, maxW, minY, maxY, maxH;
    std::size_t screenMax, screenMaxH;
};

class ExtentOfTheDesktop : public testing::TestWithParam<Extent> {};

TEST_P(ExtentOfTheDesktop, IsThatOfAllScreens) {
    const Extent& expected = GetParam();
    Program program(variants::barrier, expected.layout);
    program.app.updateScreensSize();
    EXPECT_EQ(program.app.MIN_X, expected.minX);
    EXPECT_EQ(program.app.MAX_X, expected.maxX);
    EXPECT_EQ(program.app.MAX_W, expected.maxW);
    EXPECT_EQ(program.app.MIN_Y, expected.minY);
    EXPECT_EQ(program.app.MAX_Y, expected.maxY);
    EXPECT_EQ(program.app.MAX_H, expected.maxH);
    EXPECT_EQ(program.app.screenMax, program.screen(expected.screenMax));
    EXPECT_EQ(program.app.screenMaxH, program.screen(expected.screenMaxH));
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, ExtentOfTheDesktop,
    testing::Values(Extent{"AlignedAtTheBottom", sideBySide, 0, 1920, 3200, 0, 56, 1080, 1, 1},
                    Extent{"LeftOfThePrimary", "1920x1080+0+0,1280x1024+-1280+0", -1280, 0, 1920, 0,
                           0, 1080, 0, 0},
                    Extent{"AboveThePrimary", "1920x1080+0+0,1280x1024+0+-1024", 0, 0, 1920, -1024,
                           0, 1080, 0, 0},
                    Extent{"ThreeInARow", "1920x1080+0+0,800x600+1920+480,1024x768+2720+0", 0, 2720,
                           3744, 0, 480, 1080, 2, 1},
                    Extent{"MirroredKeepsTheFirst", "1920x1080+0+0,1920x1080+0+0", 0, 0, 1920, 0, 0,
                           1080, 0, 0}),
    [](const auto& extent) { return extent.param.name; });

TEST(Screens, AnEmptyListLeavesTheSentinels) {
    Program program(variants::barrier);
    program.app.updateScreensSize();
    program.platform.displays.replace({});
    program.app.updateScreensSize();
    EXPECT_EQ(program.app.MIN_X, 999999.0F);
    EXPECT_EQ(program.app.MAX_X, -999999.0F);
    EXPECT_EQ(program.app.MIN_Y, 999999.0F);
    EXPECT_EQ(program.app.MAX_Y, -999999.0F);
    EXPECT_EQ(program.app.MAX_W, 0);
    EXPECT_EQ(program.app.MAX_H, 0);
}

TEST(Screens, TheCrossHairTakesTheHeightOfTheFirstScreenAndTheOthersThatOfTheMainOne) {
    for (const auto& [variant, height] :
         {std::pair{variants::crossHair, 1080.0F}, std::pair{variants::barrier, 1024.0F}}) {
        Program program(variant);
        program.platform.displays.replace(screensFromLayout(sideBySide), 1);
        program.app.updateScreensSize();
        EXPECT_EQ(program.app.MAX_H, height) << variant;
    }
}

TEST(Screens, TheRefreshTimerPicksUpAChangedLayoutWithinItsPeriod) {
    for (const auto& [variant, period] :
         {std::pair{variants::barrier, 3.0}, std::pair{variants::crossHair, 0.1}}) {
        Program program(variant);
        program.launched();
        program.platform.displays.replace(screensFromLayout("1920x1080+0+0,1280x1024+-1280+0"));
        EXPECT_EQ(program.app.MIN_X, 0) << variant;
        program.platform.runLoop.advance(period);
        EXPECT_EQ(program.app.MIN_X, -1280) << variant;
    }
}

TEST(CurrentScreen, IsTheOneThatContainsTheCursor) {
    Program program(variants::barrier);
    program.platform.pointer.place({2000, 60});
    program.app.detectCurrentScreen();
    EXPECT_EQ(program.app.switchedScreen, program.screen(1));
    EXPECT_EQ(program.app.switchedScreenRect, (Rect{1920, 56, 1280, 1024}));
    EXPECT_EQ(program.app.lastCoord, (Point{2000, 60}));
    EXPECT_EQ(program.app.cordmouse, (Point{2000, 60}));
}

TEST(CurrentScreen, ExcludesItsRightAndLowerEdge) {
    Program program(variants::barrier, "1920x1080+0+0,1280x1024+3000+0");
    program.platform.pointer.place({1919, 1079});
    program.app.detectCurrentScreen();
    ASSERT_EQ(program.app.lastCoord, (Point{1919, 1079}));
    for (const Point outside : {Point{1920, 500}, Point{500, 1080}}) {
        program.platform.pointer.place(outside);
        program.app.detectCurrentScreen();
        EXPECT_EQ(program.app.cordmouse, outside);
        EXPECT_EQ(program.app.lastCoord, (Point{1919, 1079}));
        EXPECT_EQ(program.app.switchedScreen, program.screen(0));
    }
}

TEST(CurrentScreen, OfMirroredScreensIsTheLastInTheList) {
    Program program(variants::barrier, "1920x1080+0+0,1920x1080+0+0");
    program.platform.pointer.place({5, 5});
    program.app.detectCurrentScreen();
    EXPECT_EQ(program.app.switchedScreen, program.screen(1));
}

TEST(OneMonitor, AtTheStartOfTheBarrierWarnsAndEndsWithTheBarrierOff) {
    Program program(variants::barrier, oneMonitor);
    EXPECT_THROW(program.app.applicationDidFinishLaunching(), platform::memory::ProgramEnded);
    EXPECT_THAT(
        program.effects({"alert", "terminate", "exit"}),
        ElementsAre(
            R"(alert {"message":"WARNING","informative":"As described on the Mac App Store, the app is useful for multi monitor users only and without Mirror Displays mode.","buttons":["OK"],"accessory":null,"code":1})",
            "terminate {}", R"(exit {"status":0})"));
    EXPECT_FALSE(program.platform.settings.boolForKey(keys::ATTIVO));
}

TEST(OneMonitor, IsNoReasonToEndForTheOtherProducts) {
    for (const int variant : {0, 1, 2, 3, 5, 7, 9}) {
        Program program(variant, oneMonitor);
        EXPECT_NO_THROW(program.app.applicationDidFinishLaunching()) << variant;
        EXPECT_THAT(program.effects({"alert", "exit"}), testing::IsEmpty()) << variant;
    }
}

TEST(ScreenChange, AnchorsTheBarrierAfresh) {
    Program program(variants::barrier);
    program.launched();
    program.platform.pointer.place({2000, 500});
    program.platform.displays.change(screensFromLayout("800x600+0+0,1280x1024+800+0"));
    EXPECT_EQ(program.app.switchedScreen, program.screen(1));
    EXPECT_THAT(program.effects({"window"}), testing::SizeIs(1));
}

TEST(ScreenChange, ToOneMonitorLightensAndGoesOn) {
    Program program(variants::barrier);
    program.launched();
    program.platform.displays.change(screensFromLayout(oneMonitor));
    EXPECT_THAT(program.effects(), ElementsAre(R"(windowOut {"id":1})"));
    EXPECT_TRUE(program.platform.settings.boolForKey(keys::ATTIVO));
    EXPECT_TRUE(program.app.AWindowsDark->empty());
}

TEST(ScreenChange, ToOneMonitorFindsTheScreenOfTheCursorAgain) {
    Program program(variants::barrier);
    program.launched();
    program.platform.pointer.place({2000, 1200});
    program.platform.displays.change(screensFromLayout("2560x1440+0+0"));
    EXPECT_EQ(program.app.switchedScreen, program.screen(0));
    EXPECT_EQ(program.app.switchedScreenRect, (Rect{0, 0, 2560, 1440}));
    EXPECT_EQ(program.app.cordmouse, (Point{2000, 1200}));
    EXPECT_EQ(program.app.lastCoord, (Point{2000, 1200}));
}

TEST(ScreenChange, DoesNothingInTheOtherProducts) {
    for (const int variant : {0, 1, 2, 3, 5, 7, 9}) {
        Program program(variant);
        program.launched();
        for (const char* layout : {"1280x1024+0+0,1920x1080+1280+0", oneMonitor}) {
            program.platform.displays.change(screensFromLayout(layout));
            EXPECT_THAT(program.effects(), testing::IsEmpty()) << variant;
            EXPECT_EQ(program.app.switchedScreen, ScreenId::none) << variant;
            EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt) << variant;
        }
    }
}

} // namespace
} // namespace palisor
