#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

TEST(Markers, CoverEachScreenUntilTheFirstEventAndAreLinesFromThenOn) {
    Program program(variants::crossHair, "1920x1080+0+0,1280x1024+1920+56,800x600+-800+0");
    program.app.applicationDidFinishLaunching();
    ASSERT_THAT(*program.app.aWindowCursorX, SizeIs(3));
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ((*program.app.aWindowCursorX)[i]->frame(),
                  program.platform.displays.screens()[i].frame);
    program.effects();

    program.pointer({2000, 300});
    EXPECT_THAT(program.effects({"windowFrame"}),
                ElementsAre(R"(windowFrame {"id":1,"frame":[0,779,1920,2]})",
                            R"(windowFrame {"id":2,"frame":[1920,779,1280,2]})",
                            R"(windowFrame {"id":3,"frame":[-800,779,800,2]})",
                            R"(windowFrame {"id":4,"frame":[1999,-1080,2,2160]})"));
}

TEST(Markers, LetClicksThroughAndAreHalfTransparentRed) {
    Program program(variants::crossHair);
    program.settled().app.applicationDidFinishLaunching();
    const auto shown = program.effects({"window"});
    ASSERT_THAT(shown, SizeIs(4)) << "one a screen and the two small ones";
    for (const std::string& line : shown) {
        EXPECT_THAT(line, testing::HasSubstr(R"("kind":"marker")"));
        EXPECT_THAT(line, testing::HasSubstr(R"("alpha":0.5)"));
        EXPECT_THAT(line, testing::HasSubstr(R"("background":"red")"));
    }
    for (const auto& window : program.platform.windows.shown())
        EXPECT_THAT(window.text, testing::HasSubstr(R"("ignoresMouse":true)"));
}

TEST(Markers, AreOnlyMadeByTheCrossHair) {
    for (const int variant : {0, 1, 2, 3, 5, 8, 9}) {
        Program program(variant);
        program.launched();
        EXPECT_EQ(program.app.windowCursorX, nullptr) << variant;
        EXPECT_FALSE(program.app.aWindowCursorX.has_value()) << variant;
    }
}

TEST(Markers, ReplaceTheCursorOnlyWhileTheProductIsSwitchedOn) {
    for (const bool active : {true, false}) {
        Program program(variants::crossHair);
        program.setting(keys::ATTIVO, platform::Value{active});
        program.launched();
        for (const bool on : {active, !active, active}) {
            EXPECT_EQ(program.platform.windows.areMarkersSeen(), on);
            EXPECT_EQ(program.platform.cursor.isHidingInForce(), on);
            program.app.enableDisable();
        }
        EXPECT_THAT(program.effects({"windowOut", "windowFrame", "showCursor"}),
                    testing::IsEmpty());
    }
}

TEST(Markers, ThatAreNotMadeYetAreNotMoved) {
    // A tap runs the loop before the first actions.
    Program program(variants::crossHair);
    program.platform.system.setVersion({10, 13, 6});
    bool moved = false;
    program.platform.runLoop.setWhileRunning([&] {
        program.pointer({100, 100});
        moved = true;
        EXPECT_THAT(program.effects({"window", "windowFrame"}), testing::IsEmpty());
    });
    program.settled().app.applicationDidFinishLaunching();
    EXPECT_TRUE(moved);
    EXPECT_THAT(program.effects({"window"}), SizeIs(4));
}

TEST(Markers, FollowAScreenThatCameLaterOnlyAsFarAsTheyWereMade) {
    Program program(variants::crossHair, oneMonitor);
    program.launched();
    program.platform.displays.replace(screensFromLayout(sideBySide));
    program.pointer({100, 100});
    EXPECT_THAT(program.effects({"windowFrame"}), SizeIs(2)) << "one line and the upright";
}

} // namespace
} // namespace palisor
