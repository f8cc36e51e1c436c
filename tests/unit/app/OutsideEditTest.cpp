#include "unit/MenuEntries.h"
#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Writes as another program does, and tells the application object as the settings file would.
void edit(Program& program, std::string_view key, Value value) {
    program.setting(key, std::move(value));
    program.app.settingsEdited({std::string(key)});
}

TEST(OutsideEdit, OfTheSwitchLightensAndDarkensTheOtherMonitors) {
    Program program(variants::barrier);
    program.launched();
    edit(program, keys::ATTIVO, Value{false});
    EXPECT_THAT(program.effects({"window", "windowOut"}), ElementsAre(R"(windowOut {"id":1})"));
    edit(program, keys::ATTIVO, Value{true});
    EXPECT_THAT(program.effects({"window"}), SizeIs(1));
}

TEST(OutsideEdit, OfTheSwitchOnOneMonitorDoesNotEndTheProgram) {
    Program program(variants::barrier);
    program.launched();
    program.platform.displays.replace(screensFromLayout(oneMonitor));
    edit(program, keys::ATTIVO, Value{false});
    edit(program, keys::ATTIVO, Value{true});
    EXPECT_THAT(program.effects({"alert", "window"}), IsEmpty());
}

TEST(OutsideEdit, OfTheDarknessReachesTheWindowsThatAreThere) {
    Program program(variants::barrier);
    program.launched();
    edit(program, keys::OTHERS_DARK, Value{std::int64_t{20}});
    EXPECT_THAT(program.effects({"window", "windowOut", "windowAlpha"}),
                ElementsAre(R"(windowAlpha {"id":1,"alpha":1})"));
}

TEST(OutsideEdit, OfAnyKeyBuildsTheMenuAnewAfterTheEvent) {
    Program program(variants::barrier);
    program.launched();
    edit(program, keys::CTRLALTCMD, Value{false});
    EXPECT_EQ(entry(program, "CTRLALTCMDText").state, 1) << "the menu may be open";
    program.platform.runLoop.advance(0.001);
    EXPECT_EQ(entry(program, "CTRLALTCMDText").state, 0);
}

TEST(OutsideEdit, OfStayingHiddenHidesAndShowsTheCursor) {
    Program program(variants::cursorHider);
    program.launched();
    edit(program, keys::STAY_HIDDEN, Value{true});
    EXPECT_FALSE(program.platform.cursor.isVisible());
    edit(program, keys::ATTIVO, Value{false});
    EXPECT_TRUE(program.platform.cursor.isVisible());
    edit(program, keys::ATTIVO, Value{true});
    EXPECT_FALSE(program.platform.cursor.isVisible());
    edit(program, keys::STAY_HIDDEN, Value{false});
    EXPECT_TRUE(program.platform.cursor.isVisible());
}

TEST(OutsideEdit, OfAnotherKeyLeavesAPendingHideAlone) {
    Program program(variants::cursorHider);
    program.launched();
    program.pointer({100, 100});
    ASSERT_TRUE(program.platform.runLoop.isRunning(program.app.timerSchedule));
    edit(program, keys::SHOW_ON_SCROLL, Value{false});
    EXPECT_TRUE(program.platform.runLoop.isRunning(program.app.timerSchedule));
    edit(program, keys::TIME_MODE, Value{false});
    EXPECT_FALSE(program.platform.runLoop.isRunning(program.app.timerSchedule));
}

TEST(OutsideEdit, OfTheSwitchKeepsTheDisplayAwakeOrLetsItSleep) {
    Program program(variants::keepAwake);
    program.launched();
    edit(program, keys::ATTIVO, Value{false});
    edit(program, keys::ATTIVO, Value{true});
    const Lines effects = program.effects({"assertionCreate", "assertionRelease"});
    ASSERT_THAT(effects, SizeIs(2));
    EXPECT_TRUE(effects[0].starts_with("assertionRelease"));
    EXPECT_TRUE(effects[1].starts_with("assertionCreate"));
    edit(program, keys::CHECK_1, Value{"1"});
    EXPECT_THAT(program.effects({"assertionCreate", "assertionRelease"}), IsEmpty());
}

TEST(OutsideEdit, OfTheSwitchStopsAndStartsThePassesOverTheCalendar) {
    Program program(variants::calendarAlerts);
    program.launched();
    program.platform.runLoop.advance(0.001);
    edit(program, keys::ATTIVO, Value{false});
    EXPECT_FALSE(program.platform.runLoop.isRunning(program.app.customDefaultEventTimer));
    edit(program, keys::ATTIVO, Value{true});
    program.platform.runLoop.advance(0.001);
    EXPECT_TRUE(program.platform.runLoop.isRunning(program.app.customDefaultEventTimer));
}

TEST(OutsideEdit, OfAHotSideTicksItsBox) {
    Program program(variants::wrapAround);
    program.launched();
    edit(program, keys::BUTLATO1, Value{false});
    EXPECT_EQ(program.app.butlato1.state, 0);
    EXPECT_THAT(program.app.AButtonBounds, SizeIs(8));
}

TEST(OutsideEdit, BeforeTheStartDoesNothing) {
    Program program(variants::barrier);
    edit(program, keys::ATTIVO, Value{false});
    EXPECT_THAT(program.effects(), IsEmpty());
}

} // namespace
} // namespace palisor
