#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* created =
    R"(assertionCreate {"type":"NoDisplaySleepAssertion","level":255,"name":"Describe Activity Type","id":1})";

TEST(NoSleep, MakesOneAssertionAndLogsSuccess) {
    Program program(variants::keepAwake);
    program.app.noSleep();
    EXPECT_THAT(program.effects(), ElementsAre(R"(log {"text":"noSleep"})", created,
                                               R"(log {"text":"kIOReturnSuccess"})"));
    EXPECT_EQ(program.app.assertionID, 1U);
}

TEST(NoSleep, LogsTheResultOfAFailureAndKeepsTheLastIdentifier) {
    Program program(variants::keepAwake);
    program.app.noSleep();
    program.effects();
    program.platform.power.fail(-536870206);
    program.app.noSleep();
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(log {"text":"noSleep"})",
                            R"(log {"text":"sometimes wrong on NO SLEEP success:-536870206"})"));
    EXPECT_EQ(program.app.assertionID, 1U);
}

TEST(ReadyToSleep, LogsItsMessageOnSuccessAndNothingOnFailure) {
    Program program(variants::keepAwake);
    program.app.noSleep();
    program.effects();
    program.app.readyToSleep();
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(log {"text":"readyToSleep"})", R"(assertionRelease {"id":1})",
                            R"(log {"text":"sometimes wrong ON READY FOR SLEEP success:0"})"));
    EXPECT_EQ(program.app.assertionID, 1U) << "it is not cleared";
    program.app.readyToSleep();
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(log {"text":"readyToSleep"})", R"(assertionRelease {"id":1})"));
}

TEST(KeepAwake, HoldsAnAssertionFromItsStartUntilItIsSwitchedOff) {
    Program program(variants::keepAwake);
    program.launched();
    EXPECT_THAT(program.platform.power.assertions(), ElementsAre(1U));
    program.app.enableDisable();
    EXPECT_THAT(program.platform.power.assertions(), IsEmpty());
    program.app.enableDisable();
    EXPECT_THAT(program.platform.power.assertions(), ElementsAre(2U));
}

TEST(KeepAwake, StartedSwitchedOffHoldsNone) {
    Program program(variants::keepAwake);
    program.setting(keys::ATTIVO, Value{false});
    program.launched();
    EXPECT_THAT(program.platform.power.assertions(), IsEmpty());
}

TEST(KeepAwake, IsTheOnlyProductThatHoldsOne) {
    for (const int variant : {0, 1, 2, 4, 5, 7, 8, 9}) {
        Program program(variant);
        program.launched();
        program.app.enableDisable();
        program.app.enableDisable();
        EXPECT_THAT(program.effects({"assertionCreate", "assertionRelease"}), IsEmpty()) << variant;
    }
}

} // namespace
} // namespace palisor
