#include "unit/MenuEntries.h"
#include "unit/app/Controlled.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>

// Off for a while, and on again.

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Free, LiftsBarrierAndDarknessForThatLong) {
    Controlled program;
    program.effects();
    control::free(program.app, 10);
    EXPECT_THAT(program.effects({"window", "windowOut"}), ElementsAre(R"(windowOut {"id":1})"));
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    program.pointer({2000, 500});
    EXPECT_THAT(program.effects({"warp"}), IsEmpty());
    program.platform.advance(9.9);
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    program.platform.advance(0.1);
    EXPECT_EQ(program.platform.pointer.heldInside(), right) << "where the cursor is now";
    EXPECT_TRUE(program.state().monitors[0].dark);
    EXPECT_EQ(program.state().freed, 0);
}

TEST(Free, TellsTheSecondsThatAreLeftRoundedUp) {
    Controlled program;
    control::free(program.app, 10);
    EXPECT_EQ(program.state().freed, 10);
    program.platform.advance(0.5);
    EXPECT_EQ(program.state().freed, 10);
    program.platform.advance(9);
    EXPECT_EQ(program.state().freed, 1);
    program.platform.advance(0.5);
    EXPECT_EQ(program.state().freed, 0);
}

TEST(Free, ShowsInTheMenuAndTheIconAndIsActiveOnlyToTheSettings) {
    Controlled program;
    control::free(program.app, 10);
    program.platform.advance(0.001);
    EXPECT_NO_THROW(entry(program, "ABILITA"));
    EXPECT_TRUE(program.state().active);
    program.platform.advance(10);
    EXPECT_NO_THROW(entry(program, "DISABILITA"));
}

// Whatever ends the program, the next start finds it switched on.
TEST(Free, WritesNothingToTheSettings) {
    Controlled program;
    program.effects();
    control::free(program.app, 10);
    EXPECT_THAT(program.writesOf(keys::ATTIVO), IsEmpty());
    EXPECT_TRUE(program.stored(keys::ATTIVO));
    EXPECT_THROW(program.app.quit(), platform::memory::ProgramEnded);
    EXPECT_THAT(program.writesOf(keys::ATTIVO), IsEmpty());
}

TEST(Free, AgainStartsTheTimeAfresh) {
    Controlled program;
    control::free(program.app, 10);
    program.platform.advance(8);
    program.effects();
    control::free(program.app, 5);
    EXPECT_THAT(program.effects({"window", "windowOut"}), IsEmpty());
    EXPECT_EQ(program.state().freed, 5);
    program.platform.advance(4);
    EXPECT_EQ(program.state().freed, 1);
    program.platform.advance(1);
    EXPECT_EQ(program.platform.pointer.heldInside(), left);
}

TEST(Free, ForNoTimeEndsItAtOnce) {
    for (const double none : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        Controlled program;
        control::free(program.app, 10);
        control::free(program.app, none);
        EXPECT_EQ(program.state().freed, 0);
        EXPECT_EQ(program.platform.pointer.heldInside(), left);
        program.effects();
        program.platform.advance(20);
        EXPECT_THAT(program.effects({"window", "windowOut"}), IsEmpty());
        control::free(program.app, none);
        EXPECT_THAT(program.effects(), IsEmpty()) << "not freed";
    }
}

TEST(Free, LastsADayAtMost) {
    Controlled program;
    control::free(program.app, std::numeric_limits<double>::infinity());
    EXPECT_EQ(program.state().freed, 24 * 60 * 60);
}

TEST(Free, OfAProductThatIsOffIsNothing) {
    Controlled program;
    control::setActive(program.app, false);
    program.effects();
    control::free(program.app, 10);
    EXPECT_EQ(program.state().freed, 0);
    program.platform.advance(20);
    EXPECT_THAT(program.effects({"window"}), IsEmpty());
    EXPECT_FALSE(program.state().active);
}

TEST(Free, BeforeTheStartIsNothing) {
    Program program(variants::barrier);
    control::free(program.app, 10);
    EXPECT_EQ(control::state(program.app).freed, 0);
}

TEST(Free, EndsWhenTheUserSwitchesOn) {
    const std::function<void(Controlled&)> ways[] = {
        [](Controlled& program) { program.app.enableDisable(); },
        [](Controlled& program) { control::setActive(program.app, true); },
        [](Controlled& program) { control::setSetting(program.app, "active", "on"); },
        [](Controlled& program) {
            program.platform.advance(0.001);
            choose(program, "ABILITA");
        },
    };
    for (const auto& switchOn : ways) {
        Controlled program;
        control::free(program.app, 10);
        switchOn(program);
        EXPECT_EQ(program.state().freed, 0);
        EXPECT_TRUE(program.state().active);
        EXPECT_EQ(program.platform.pointer.heldInside(), left);
        program.app.enableDisable();
        program.platform.advance(20);
        EXPECT_FALSE(program.state().active) << "no timer is left to switch it on";
        EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    }
}

TEST(Free, EndsWhenTheUserSwitchesOffAndItStaysOff) {
    const std::function<void(Controlled&)> ways[] = {
        [](Controlled& program) { control::setActive(program.app, false); },
        [](Controlled& program) { control::setSetting(program.app, "active", "off"); },
        [](Controlled& program) {
            program.setting(keys::ATTIVO, Value{false});
            program.app.settingsEdited({std::string(keys::ATTIVO)});
        },
    };
    for (const auto& switchOff : ways) {
        Controlled program;
        control::free(program.app, 10);
        program.effects();
        switchOff(program);
        EXPECT_THAT(program.effects({"window"}), IsEmpty()) << "nothing darkens for a moment";
        EXPECT_EQ(program.state().freed, 0);
        EXPECT_FALSE(program.state().active);
        program.platform.advance(20);
        EXPECT_FALSE(program.state().active);
        EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    }
}

TEST(Free, IsNotEndedByTheCombinationAndGoesOnWhileItIsHeld) {
    using namespace platform::keyCodes;
    const auto three = {command, option, platform::keyCodes::control};
    Controlled program;
    control::free(program.app, 10);
    for (const auto key : three)
        program.modifier(key);
    for (const auto key : three)
        program.modifier(key);
    EXPECT_EQ(program.state().freed, 10);
    for (const auto key : three)
        program.modifier(key);
    program.effects();
    program.platform.advance(10);
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt) << "held down";
    EXPECT_THAT(program.effects({"window"}), IsEmpty());
    program.modifier(command);
    EXPECT_EQ(program.platform.pointer.heldInside(), left);
    EXPECT_TRUE(program.state().active);
}

TEST(Free, OutlivesAnotherLayoutAndEndsOnIt) {
    Controlled program;
    control::free(program.app, 10);
    program.effects();
    program.plug("1920x1080+0+0,1920x1080+1920+0");
    program.plug(sideBySide);
    EXPECT_THAT(program.effects({"window"}), IsEmpty());
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    program.platform.advance(10);
    EXPECT_EQ(program.platform.pointer.heldInside(), left);
}

// Monitors go to sleep and are unplugged meanwhile; the program stays.
TEST(Free, ThatEndsOnOneMonitorHoldsNothingAndAsksNothing) {
    Controlled program;
    control::free(program.app, 10);
    program.plug(oneMonitor);
    program.effects();
    program.platform.advance(10);
    EXPECT_THAT(program.effects({"alert", "window"}), IsEmpty());
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    EXPECT_TRUE(program.state().active);
    program.plug(sideBySide);
    EXPECT_EQ(program.platform.pointer.heldInside(), left);
}

TEST(Free, OnOneMonitorIsFreedToo) {
    Controlled program;
    program.plug(oneMonitor);
    control::free(program.app, 10);
    EXPECT_EQ(program.state().freed, 10);
    program.plug(sideBySide);
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
}

TEST(Free, EndsAfterAnAlertThatWasOpenMeanwhile) {
    Controlled program;
    control::free(program.app, 10);
    program.platform.alerts.setWhileOpen([&](const platform::Alert&) {
        program.platform.advance(20);
        EXPECT_EQ(program.state().freed, 0);
        EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    });
    program.app.showStayHiddenWarning();
    program.platform.advance(0.001);
    EXPECT_EQ(program.platform.pointer.heldInside(), left);
}

TEST(Free, WhoseTimeIsOverWhileAnAlertIsOpenCanStillBeMadeOff) {
    Controlled program;
    control::free(program.app, 10);
    program.platform.alerts.setWhileOpen([&](const platform::Alert&) {
        program.platform.advance(20);
        control::setActive(program.app, false);
    });
    program.app.showStayHiddenWarning();
    program.platform.advance(1);
    EXPECT_FALSE(program.state().active);
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
}

TEST(Free, CrossesWithoutHolding) {
    Controlled program;
    control::free(program.app, 10);
    EXPECT_TRUE(control::crossTo(program.app, "Screen-2"));
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    EXPECT_EQ(program.state().held, "");
    program.platform.advance(10);
    EXPECT_EQ(program.state().held, "Screen-2");
    EXPECT_THAT(program.crossings, ElementsAre("Screen-1 to Screen-2"));
}

TEST(Free, LetsTheOtherProductsRestToo) {
    Controlled awake(variants::keepAwake);
    awake.effects();
    control::free(awake.app, 10);
    control::free(awake.app, 10);
    EXPECT_EQ(awake.effects({"assertionCreate", "assertionRelease"}).size(), 1U);
    awake.platform.advance(10);
    EXPECT_EQ(awake.effects({"assertionCreate"}).size(), 1U);

    control::free(awake.app, 10);
    awake.effects();
    control::setActive(awake.app, false);
    EXPECT_THAT(awake.effects({"assertionCreate", "assertionRelease"}), IsEmpty());

    Controlled hider(variants::cursorHider);
    ASSERT_EQ(control::setSetting(hider.app, "stay-hidden", "on"), control::Refusal::none);
    ASSERT_FALSE(hider.platform.cursor.isVisible());
    control::free(hider.app, 10);
    EXPECT_TRUE(hider.platform.cursor.isVisible());
    hider.platform.advance(10);
    EXPECT_FALSE(hider.platform.cursor.isVisible());
}

} // namespace
} // namespace palisor
