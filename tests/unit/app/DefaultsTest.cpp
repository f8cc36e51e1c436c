#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

const Lines firstRunWrites = {
    R"(write {"key":"CHECK_0","value":"0"})",      "synchronize {}",
    R"(write {"key":"CHECK_1","value":"0"})",      "synchronize {}",
    R"(write {"key":"SCHEDULE","value":"5"})",     "synchronize {}",
    R"(write {"key":"HOT_BOUNDS","value":"0"})",   "synchronize {}",
    R"(write {"key":"PRIMOACCESSO","value":"1"})", "synchronize {}",
};

TEST(FirstRun, WritesTheStringDefaultsEachWithItsOwnSynchronise) {
    Program program(variants::barrier);
    program.app.initiailValuesForUserDefaults();
    EXPECT_EQ(program.effects({"write", "synchronize"}), firstRunWrites);
}

TEST(FirstRun, OfTheCursorHiderWritesTheHoldTimeTwice) {
    Program program(variants::cursorHider);
    program.app.initiailValuesForUserDefaults();
    Lines expected = firstRunWrites;
    expected.insert(expected.end(),
                    {R"(write {"key":"SCHEDULE","value":"5"})", "synchronize {}",
                     R"(write {"key":"PRIMOACCESSOCONSLIDER","value":"1"})", "synchronize {}"});
    EXPECT_EQ(program.effects({"write", "synchronize"}), expected);
}

TEST(SecondRun, WritesNothing) {
    for (int variant = 0; variant < 10; ++variant) {
        Program program(variant);
        program.app.initiailValuesForUserDefaults();
        program.effects();
        program.app.initiailValuesForUserDefaults();
        EXPECT_THAT(program.effects({"write", "synchronize", "timer"}), IsEmpty()) << variant;
    }
}

TEST(FirstRun, IsAnyRunWhoseMarkerIsNotTheTextOne) {
    for (const Value& marker : {Value{"0"}, Value{std::int64_t{1}}, Value{true}, Value{"1 "}}) {
        Program program(variants::barrier);
        program.setting(keys::PRIMOACCESSO, marker);
        program.app.initiailValuesForUserDefaults();
        EXPECT_EQ(program.effects({"write", "synchronize"}), firstRunWrites);
    }
}

TEST(TimeSliderMigration, ResetsAnEarlierHoldTimeOnceAndOnlyForTheCursorHider) {
    Program program(variants::cursorHider);
    program.setting(keys::PRIMOACCESSO, Value{"1"});
    program.setting(keys::SCHEDULE, Value{"20"});
    program.app.initiailValuesForUserDefaults();
    EXPECT_EQ(program.platform.settings.stringForKey(keys::SCHEDULE), "5");

    program.setting(keys::SCHEDULE, Value{"20"});
    program.app.initiailValuesForUserDefaults();
    EXPECT_EQ(program.platform.settings.stringForKey(keys::SCHEDULE), "20");

    Program other(variants::barrier);
    other.setting(keys::PRIMOACCESSO, Value{"1"});
    other.setting(keys::SCHEDULE, Value{"20"});
    other.app.initiailValuesForUserDefaults();
    EXPECT_EQ(other.platform.settings.stringForKey(keys::SCHEDULE), "20");
}

TEST(RegisteredDefaults, ComeInTheirOrderAndForTheirProducts) {
    const Lines common = {
        R"(register {"key":"ATTIVO","value":true})",
        R"(register {"key":"SHOW_ON_SCROLL","value":true})",
        R"(register {"key":"CTRLALTCMD","value":true})",
        R"(register {"key":"VELOCITY_OPTION","value":false})",
        R"(register {"key":"VELOCITY","value":50})",
        R"(register {"key":"BREAK_AFTER_SWITCH","value":false})",
        R"(register {"key":"OFFSET","value":0})",
        R"(register {"key":"ALARM_SOUND","value":"Pop"})",
        R"(register {"key":"TIME_MODE","value":true})",
    };
    for (int variant = 0; variant < 10; ++variant) {
        Lines expected;
        if (variant == 1 || variant == 2 || variant == 5)
            expected = {R"(register {"key":"BUTLATO1","value":true})",
                        R"(register {"key":"BUTLATO3","value":true})"};
        expected.insert(expected.end(), common.begin(), common.end());
        if (variant == 1) expected.push_back(R"(register {"key":"STAY_HIDDEN","value":false})");
        if (variant == 8) expected.push_back(R"(register {"key":"OTHERS_DARK","value":15})");

        Program program(variant);
        program.app.initiailValuesForUserDefaults();
        EXPECT_EQ(program.effects({"register"}), expected) << variant;
    }
}

TEST(RegisteredDefaults, OfTheKeepAwakeProductLeaveSidesStayHiddenAndDarknessUnset) {
    Program program(variants::keepAwake);
    program.app.initiailValuesForUserDefaults();
    const auto& settings = program.platform.settings;
    EXPECT_FALSE(settings.boolForKey(keys::BUTLATO1));
    EXPECT_FALSE(settings.boolForKey(keys::BUTLATO3));
    EXPECT_FALSE(settings.boolForKey(keys::STAY_HIDDEN));
    EXPECT_EQ(settings.integerForKey(keys::OTHERS_DARK), 0);
}

TEST(RegisteredDefaults, GiveTheBarrierADarknessOfFifteenUntilOneIsStored) {
    Program program(variants::barrier);
    program.app.initiailValuesForUserDefaults();
    EXPECT_EQ(program.platform.settings.integerForKey(keys::OTHERS_DARK), 15);
    program.setting(keys::OTHERS_DARK, Value{std::int64_t{3}});
    EXPECT_EQ(program.platform.settings.integerForKey(keys::OTHERS_DARK), 3);
}

} // namespace
} // namespace palisor
