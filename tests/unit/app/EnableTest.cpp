#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;

TEST(EnableDisable, WritesTheNegationAndSynchronises) {
    for (int variant = 0; variant < 10; ++variant) {
        Program program(variant);
        program.launched();
        for (const char* written : {R"(write {"key":"ATTIVO","value":false})",
                                    R"(write {"key":"ATTIVO","value":true})"}) {
            program.app.enableDisable();
            const Lines effects = program.effects({"write", "synchronize"});
            ASSERT_GE(effects.size(), 2U) << variant;
            EXPECT_EQ(effects[0], written) << variant;
            EXPECT_EQ(effects[1], "synchronize {}") << variant;
        }
    }
}

TEST(EnableDisable, OfTheBarrierLightensAndDarkensAfresh) {
    Program program(variants::barrier);
    program.launched();
    program.app.enableDisable();
    EXPECT_THAT(program.effects({"window", "windowOut"}), ElementsAre(R"(windowOut {"id":1})"));
    program.platform.pointer.place({2000, 500});
    program.app.enableDisable();
    EXPECT_EQ(program.app.switchedScreen, program.screen(1));
    EXPECT_THAT(program.effects({"window"}), testing::SizeIs(1));
}

TEST(EnableDisable, OfTheBarrierOnOneMonitorEndsTheProgramInBothDirections) {
    for (const bool active : {true, false}) {
        Program program(variants::barrier);
        program.launched();
        program.setting(keys::ATTIVO, Value{active});
        program.platform.displays.replace(screensFromLayout(oneMonitor));
        EXPECT_THROW(program.app.enableDisable(), platform::memory::ProgramEnded);
        EXPECT_THAT(program.effects({"alert"}), testing::SizeIs(1));
        EXPECT_FALSE(program.platform.settings.boolForKey(keys::ATTIVO));
    }
}

TEST(EnableDisable, HidesAtOnceOnlyWhenTheCursorHiderStaysHiddenAndIsNowOn) {
    Program program(variants::cursorHider);
    program.launched();
    program.setting(keys::STAY_HIDDEN, Value{true});
    program.setting(keys::ATTIVO, Value{false});
    program.app.enableDisable();
    EXPECT_FALSE(program.platform.cursor.isVisible());
    program.app.enableDisable();
    EXPECT_TRUE(program.platform.cursor.isVisible());
}

TEST(EnableDisable, HidesNothingInAnotherProductThatWasToldToStayHidden) {
    for (const int variant : {0, 2, 3, 5, 7, 8, 9}) {
        Program program(variant);
        program.setting(keys::STAY_HIDDEN, Value{true});
        program.launched();
        program.app.enableDisable();
        program.app.enableDisable();
        EXPECT_THAT(program.effects({"hideCursor", "showCursor"}), testing::IsEmpty()) << variant;
    }
}

TEST(EnableDisable, ForgetsThePendingHideOfTheHidingProducts) {
    for (const int variant : {variants::cursorHider, variants::crossHair}) {
        Program program(variant);
        program.launched();
        program.pointer({100, 100});
        ASSERT_TRUE(program.platform.runLoop.isRunning(program.app.timerSchedule)) << variant;
        program.app.enableDisable();
        EXPECT_FALSE(program.platform.runLoop.isRunning(program.app.timerSchedule)) << variant;
    }
}

TEST(EnableDisable, DoesItsThingsInOrder) {
    struct {
        int variant;
        Lines off, on; ///< between the write of the state and the menu
        Lines built;   ///< what building the menu tells
        Lines thenOff, thenOn;
    } const cases[] = {
        {8,
         {"windowOut"},
         {"window", "frontmostActivated"},
         {"statusImage", "label", "write", "synchronize", "label"},
         {},
         {}},
        {3,
         {"log", "assertionRelease", "log"},
         {"log", "assertionCreate", "log"},
         {"statusImage"},
         {},
         {}},
        {1,
         {},
         {},
         {"statusImage", "write", "synchronize", "label"},
         {"showCursor"},
         {"timer", "hideCursor"}},
        {7, {}, {}, {"statusImage"}, {}, {}},
        {0, {}, {}, {"statusImage"}, {}, {}},
        {2, {}, {}, {"statusImage", "write", "synchronize", "label"}, {}, {}},
    };
    for (const auto& [variant, off, on, built, thenOff, thenOn] : cases) {
        Program program(variant);
        program.setting(keys::STAY_HIDDEN, Value{variant == variants::cursorHider});
        program.launched();
        for (const bool switchedOn : {false, true}) {
            program.app.enableDisable();
            Lines expected = {"write", "synchronize"};
            for (const Lines& part : {switchedOn ? on : off, built, switchedOn ? thenOn : thenOff})
                expected.insert(expected.end(), part.begin(), part.end());
            Lines names = program.effects();
            for (std::string& line : names)
                line.resize(line.find(' '));
            EXPECT_EQ(names, expected) << variant << (switchedOn ? " on" : " off");
        }
    }
}

TEST(Quit, EndsTheProcessEvenWhenTerminationReturns) {
    Program program(variants::barrier);
    EXPECT_THROW(program.app.quit(), platform::memory::ProgramEnded);
    EXPECT_THAT(program.effects(), ElementsAre("terminate {}", R"(exit {"status":0})"));
}

TEST(KillApp, LogsNotifiesAndQuits) {
    Program program(variants::barrier);
    EXPECT_THROW(program.app.killapp(), platform::memory::ProgramEnded);
    EXPECT_THAT(
        program.effects(),
        ElementsAre(
            R"(log {"text":"CHIUSURA DI SICUREZZA!!"})",
            R"(notification {"title":"CHIUSURA DI SICUREZZA!!","text":null,"sound":"default","identifier":null})",
            "terminate {}", R"(exit {"status":0})"));
}

} // namespace
} // namespace palisor
