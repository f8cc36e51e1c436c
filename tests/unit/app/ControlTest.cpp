#include "unit/app/Controlled.h"

#include <gmock/gmock.h>

// What is seen and done from outside.

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SeenState, NamesTheMonitorsTheHeldAndTheDarkOnes) {
    Controlled program;
    program.platform.displays.setScale(1, 1.5);
    EXPECT_EQ(program.state(),
              (control::State{
                  .active = true,
                  .held = "Screen-1",
                  .freed = 0,
                  .monitors = {{.name = "Screen-1", .frame = left, .primary = true, .held = true},
                               {.name = "Screen-2", .frame = right, .scale = 1.5, .dark = true}},
                  .shortcut = "⌃⌘K"}));
}

TEST(SeenState, OfADarknessOfNothingHasNoDarkMonitor) {
    Controlled program;
    ASSERT_EQ(control::setSetting(program.app, "darkness", "0"), control::Refusal::none);
    EXPECT_FALSE(program.state().monitors[1].dark);
}

TEST(SeenState, SwitchedOffHoldsNothingAndDarkensNothing) {
    Controlled program;
    control::setActive(program.app, false);
    const control::State state = program.state();
    EXPECT_FALSE(state.active);
    EXPECT_EQ(state.held, "");
    EXPECT_FALSE(state.monitors[0].held);
    EXPECT_FALSE(state.monitors[1].dark);
}

TEST(SeenState, OnOneMonitorHoldsNothing) {
    Controlled program;
    program.plug(oneMonitor);
    const control::State state = program.state();
    EXPECT_TRUE(state.active);
    EXPECT_EQ(state.held, "");
    ASSERT_EQ(state.monitors.size(), 1U);
    EXPECT_FALSE(state.monitors[0].held || state.monitors[0].dark);
}

TEST(SeenState, OfAnotherProductHoldsNothing) {
    Controlled program(variants::wrapAround);
    EXPECT_TRUE(program.state().active);
    EXPECT_EQ(program.state().held, "");
}

TEST(SeenState, HasNoShortcutThatCannotBeUsed) {
    Controlled program;
    program.setting(keys::customShortcut, platform::Shortcut{40, 0}.toValue());
    EXPECT_EQ(program.state().shortcut, "");
}

TEST(SeenState, BeforeTheStartHoldsNothingYet) {
    Program program(variants::barrier);
    const control::State state = control::state(program.app);
    EXPECT_EQ(state.held, "");
    EXPECT_EQ(state.monitors.size(), 2U);
}

TEST(SetActive, DoesNothingWhereItIsSoAlready) {
    Controlled program;
    program.effects();
    control::setActive(program.app, true);
    EXPECT_THAT(program.effects(), IsEmpty());
}

TEST(SetActive, DoesWhatTheMenuDoes) {
    Controlled asked, chosen;
    for (const bool on : {false, true}) {
        asked.effects();
        chosen.effects();
        control::setActive(asked.app, on);
        chosen.app.enableDisable();
        EXPECT_EQ(asked.effects(), chosen.effects());
        EXPECT_EQ(asked.stored(keys::ATTIVO), on);
    }
}

TEST(SetActive, BeforeTheStartDoesNothing) {
    Program program(variants::barrier);
    control::setActive(program.app, false);
    EXPECT_THAT(program.effects(), IsEmpty());
}

TEST(CrossTo, PutsTheCursorIntoTheMiddleAndHoldsItThere) {
    Controlled program;
    program.effects();
    EXPECT_TRUE(control::crossTo(program.app, "Screen-2"));
    EXPECT_THAT(program.effects({"warp"}), ElementsAre(R"(warp {"to":[2560,568]})"));
    EXPECT_EQ(program.platform.pointer.heldInside(), right);
    EXPECT_EQ(program.state().held, "Screen-2");
    EXPECT_TRUE(program.state().monitors[0].dark);
    EXPECT_FALSE(program.state().monitors[1].dark);
    EXPECT_THAT(program.crossings, ElementsAre("Screen-1 to Screen-2"));
}

TEST(CrossTo, LeavesTheBarrierStandingAroundTheOtherMonitor) {
    Controlled program;
    control::crossTo(program.app, "Screen-2");
    program.effects();
    program.pointer({1900, 600});
    EXPECT_THAT(program.effects({"warp"}), ElementsAre(R"(warp {"to":[1921,600]})"));
}

// The way there was not the hand's.
TEST(CrossTo, IsNotTakenForAPushBack) {
    Controlled program;
    program.setting(keys::VELOCITY_OPTION, Value{true});
    program.pointer({100, 500});
    control::crossTo(program.app, "Screen-2");
    program.pointer({1915, 568}); // 645 from the middle
    EXPECT_EQ(program.state().held, "Screen-1") << "that is a push";
    control::crossTo(program.app, "Screen-2");
    program.pointer({1925, 568});
    program.pointer({1915, 568});
    EXPECT_EQ(program.state().held, "Screen-2") << "and this is none";
}

TEST(CrossTo, TheSameMonitorCrossesNothing) {
    Controlled program;
    EXPECT_TRUE(control::crossTo(program.app, "Screen-1"));
    EXPECT_THAT(program.crossings, IsEmpty());
    EXPECT_EQ(program.state().held, "Screen-1");
}

TEST(CrossTo, AnUnknownMonitorIsRefusedAndNothingMoves) {
    Controlled program;
    program.effects();
    EXPECT_FALSE(control::crossTo(program.app, "Screen-3"));
    EXPECT_FALSE(control::crossTo(program.app, ""));
    EXPECT_THAT(program.effects(), IsEmpty());
}

TEST(CrossTo, SwitchedOffOnlyMovesTheCursor) {
    Controlled program;
    control::setActive(program.app, false);
    EXPECT_TRUE(control::crossTo(program.app, "Screen-2"));
    EXPECT_EQ(program.platform.pointer.location(), (Point{2560, 568}));
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    EXPECT_FALSE(program.state().monitors[0].dark);
}

TEST(CrossTo, InAnotherProductOnlyMovesTheCursor) {
    Controlled program(variants::wrapAround);
    program.effects();
    EXPECT_TRUE(control::crossTo(program.app, "Screen-2"));
    EXPECT_THAT(program.effects({"warp", "window"}), ElementsAre(R"(warp {"to":[2560,568]})"));
}

TEST(CrossTo, BeforeTheStartIsRefused) {
    Program program(variants::barrier);
    EXPECT_FALSE(control::crossTo(program.app, "Screen-2"));
}

TEST(Watcher, IsToldOfEveryChangeThatCanBeSeen) {
    Controlled program;
    const auto expectTold = [&](const char* what, const std::function<void()>& change) {
        const control::State before = program.state();
        program.toldOfChanges();
        change();
        EXPECT_NE(program.state(), before) << what;
        EXPECT_TRUE(program.toldOfChanges()) << what;
    };
    expectTold("off", [&] { program.app.enableDisable(); });
    expectTold("on", [&] { program.app.enableDisable(); });
    expectTold("off in the file", [&] {
        program.setting(keys::ATTIVO, Value{false});
        program.app.settingsEdited({std::string(keys::ATTIVO)});
    });
    control::setActive(program.app, true);
    expectTold("freed", [&] { control::free(program.app, 10); });
    expectTold("freed for longer", [&] { control::free(program.app, 20); });
    expectTold("freed no longer", [&] { program.platform.advance(20); });
    expectTold("another monitor", [&] { program.plug("1920x1080+0+0,1920x1080+1920+0"); });
    expectTold("one monitor", [&] { program.plug(oneMonitor); });
    expectTold("two monitors", [&] { program.plug(sideBySide); });
    expectTold("crossed", [&] { control::crossTo(program.app, "Screen-2"); });
    expectTold("no darkness", [&] { control::setSetting(program.app, "darkness", "0"); });
    expectTold("another shortcut", [&] {
        control::setSetting(program.app, "shortcut", "Ctrl+Alt+J");
        program.platform.advance(0.2);
    });
}

TEST(Watcher, IsToldOfTheCrossingsThatAPushMakes) {
    Controlled program;
    program.setting(keys::VELOCITY_OPTION, Value{true});
    program.pointer({1900, 500});
    program.pointer({2100, 500});
    program.pointer({2000, 500});
    program.pointer({1800, 500});
    EXPECT_THAT(program.crossings, ElementsAre("Screen-1 to Screen-2", "Screen-2 to Screen-1"));
}

TEST(Watcher, IsToldOfNoCrossingWhenTheHeldMonitorHasGone) {
    Controlled program;
    control::crossTo(program.app, "Screen-2");
    program.crossings.clear();
    program.platform.pointer.place({960, 500});
    program.plug(oneMonitor);
    program.plug(sideBySide);
    EXPECT_EQ(program.state().held, "Screen-1");
    EXPECT_THAT(program.crossings, ElementsAre("Screen-2 to Screen-1"))
        << "plugged in again, it is left for the other one";
    program.crossings.clear();
    program.plug("1920x1080+0+0,1280x1024+1920+56,1280x1024+-1280+0");
    control::crossTo(program.app, "Screen-3");
    program.crossings.clear();
    program.platform.pointer.place({960, 500});
    program.plug(sideBySide);
    EXPECT_EQ(program.state().held, "Screen-1");
    EXPECT_THAT(program.crossings, IsEmpty());
}

TEST(Watcher, IsToldOfNoCrossingWhileTheProductIsOnlySwitched) {
    Controlled program;
    program.app.enableDisable();
    program.app.enableDisable();
    EXPECT_THAT(program.crossings, IsEmpty());
}

TEST(Watcher, ThatWasTakenAwayIsToldNothing) {
    Controlled program;
    control::watch(program.app, nullptr);
    program.toldOfChanges();
    program.app.enableDisable();
    control::crossTo(program.app, "Screen-2");
    EXPECT_FALSE(program.toldOfChanges());
    EXPECT_THAT(program.crossings, IsEmpty());
}

} // namespace
} // namespace palisor
