#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* rehideTimer =
    R"(timer {"selector":"hidecursor2","interval":0.005,"repeats":true})";

TEST(Hiding, TwiceLeavesOneRehideTimerAndOneRequest) {
    Program program(variants::cursorHider);
    program.launched();
    program.app.hidecursor();
    program.app.hidecursor();
    EXPECT_THAT(program.effects(), ElementsAre(rehideTimer, "hideCursor {}", rehideTimer));
    program.platform.cursor.show(); // somebody else
    program.effects();
    program.platform.runLoop.advance(0.005);
    EXPECT_THAT(program.effects(), ElementsAre("hideCursor {}"));
}

TEST(Hiding, OfTheCrossHairPilesUpRequests) {
    Program program(variants::crossHair);
    program.app.hidecursor();
    program.platform.runLoop.advance(0.01);
    EXPECT_THAT(program.effects({"hideCursor"}), testing::SizeIs(3));
}

TEST(Showing, EndsTheRehidingAndShowsOnce) {
    Program program(variants::cursorHider);
    program.launched();
    program.app.hidecursor();
    program.effects();
    program.app.showcursor();
    program.app.showcursor();
    program.platform.runLoop.advance(1);
    EXPECT_THAT(program.effects({"showCursor", "hideCursor"}), ElementsAre("showCursor {}"));
    EXPECT_FALSE(program.app.cursorMustToBeHidden);
}

TEST(Showing, IsRefusedByTheCursorHiderThatStaysHiddenWhileOn) {
    Program program(variants::cursorHider);
    program.launched();
    program.setting(keys::STAY_HIDDEN, Value{true});
    program.app.hidecursor();
    program.app.showcursor();
    EXPECT_FALSE(program.platform.cursor.isVisible());
    program.setting(keys::ATTIVO, Value{false});
    program.app.showcursor();
    EXPECT_TRUE(program.platform.cursor.isVisible());
}

TEST(Showing, StopsTheCrossHairsTimerButLeavesItsCursorHidden) {
    Program program(variants::crossHair);
    program.app.hidecursor();
    program.app.showcursor();
    program.effects();
    program.platform.runLoop.advance(1);
    EXPECT_THAT(program.effects({"hideCursor", "showCursor"}), IsEmpty());
    EXPECT_FALSE(program.platform.cursor.isVisible());
}

TEST(IdleHide, ComesAfterTheHoldTimeWithoutMovement) {
    Program program(variants::cursorHider);
    program.launched();
    program.setting(keys::SCHEDULE, Value{"2"});
    program.pointer({100, 100});
    program.platform.runLoop.advance(1.5);
    program.pointer({101, 100});
    program.platform.runLoop.advance(1.5);
    EXPECT_TRUE(program.platform.cursor.isVisible());
    program.platform.runLoop.advance(0.5);
    EXPECT_FALSE(program.platform.cursor.isVisible());
    program.pointer({102, 100});
    EXPECT_TRUE(program.platform.cursor.isVisible());
}

TEST(IdleHide, WithAHoldTimeOfNoneTakesATenthOfASecondAndFourInTheCrossHair) {
    for (const auto& [variant, interval] :
         {std::pair{variants::cursorHider, "0.1"}, std::pair{variants::crossHair, "0.4"}}) {
        Program program(variant);
        program.launched();
        program.setting(keys::SCHEDULE, Value{"0"});
        program.pointer({100, 100});
        EXPECT_THAT(program.effects({"timer"}),
                    ElementsAre(std::string(R"(timer {"selector":"hidecursor","interval":)") +
                                interval + R"(,"repeats":false})"));
    }
}

TEST(IdleHide, IsNotArmedWhileTimeModeIsOff) {
    Program program(variants::cursorHider);
    program.launched();
    program.setting(keys::TIME_MODE, Value{false});
    program.pointer({100, 100});
    EXPECT_THAT(program.effects(), IsEmpty());
}

TEST(RetardedHide, CancelsTheIdleHideAndIsPostponedByTheNext) {
    Program program(variants::cursorHider);
    program.launched();
    program.setting(keys::SCHEDULE, Value{"0"});
    program.pointer({100, 100});
    program.app.hidecursorwithRetard();
    program.platform.runLoop.advance(0.15);
    program.app.hidecursorwithRetard();
    program.platform.runLoop.advance(0.15);
    EXPECT_TRUE(program.platform.cursor.isVisible());
    program.platform.runLoop.advance(0.05);
    EXPECT_FALSE(program.platform.cursor.isVisible());
}

TEST(KillTimer, ForgetsTheIdleHideAndShows) {
    Program program(variants::cursorHider);
    program.launched();
    program.pointer({100, 100});
    program.app.hidecursor();
    program.app.killTimer();
    program.platform.runLoop.advance(60);
    EXPECT_TRUE(program.platform.cursor.isVisible());
}

TEST(ScrollEvents, ShowAHiddenCursorOnlyWhenTheUserWantsThat) {
    for (const bool wanted : {false, true}) {
        Program program(variants::cursorHider);
        program.launched();
        program.setting(keys::SHOW_ON_SCROLL, Value{wanted});
        program.app.hidecursor();
        program.pointer({100, 100}, platform::EventType::scrollWheel);
        EXPECT_EQ(program.platform.cursor.isVisible(), wanted);
    }
}

} // namespace
} // namespace palisor
