#include "platform/linux/system/DisplayPower.h"
#include "testing/KeptLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace platform::linux {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* displaySleep = "NoDisplaySleepAssertion";
constexpr std::uint32_t on = 255;

struct PowerOfTwoWays : testing::Test {
    DisplayPower::Way way(const char* name, const bool& works) {
        const std::string text = name;
        return {.keep =
                    [this, text, &works](AssertionId wanted, const std::string& reason) {
                        calls.push_back(text + " keeps " + std::to_string(wanted) + " " + reason);
                        return works;
                    },
                .release =
                    [this, text](AssertionId wanted) {
                        calls.push_back(text + " releases " + std::to_string(wanted));
                    },
                .missing = text + " is missing"};
    }

    bool firstWorks = true, secondWorks = true;
    std::vector<std::string> calls;
    testing_support::KeptLog log;
    DisplayPower power{{way("first", firstWorks), way("second", secondWorks)}, log};
    AssertionId id = 77;
};

TEST_F(PowerOfTwoWays, HoldsBothUnderOneNumberAndReleasesBoth) {
    EXPECT_EQ(power.createAssertion(displaySleep, on, "why", id), Power::success);
    EXPECT_EQ(id, 1u);
    EXPECT_EQ(power.releaseAssertion(id), Power::success);
    EXPECT_THAT(calls, ElementsAre("first keeps 1 why", "second keeps 1 why", "first releases 1",
                                   "second releases 1"));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PowerOfTwoWays, GivesASecondAssertionANumberOfItsOwn) {
    power.createAssertion(displaySleep, on, "a", id);
    power.createAssertion(displaySleep, on, "b", id);
    EXPECT_EQ(id, 2u);
    EXPECT_EQ(power.releaseAssertion(id), Power::success);
    EXPECT_EQ(power.releaseAssertion(1), Power::success);
}

TEST_F(PowerOfTwoWays, FailsToReleaseTwice) {
    power.createAssertion(displaySleep, on, "why", id);
    power.releaseAssertion(id);
    calls.clear();
    EXPECT_EQ(power.releaseAssertion(id), DisplayPower::noSuchAssertion);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(PowerOfTwoWays, SucceedsByEitherAloneAndSaysOnceWhatIsMissing) {
    for (bool* broken : {&firstWorks, &secondWorks}) {
        *broken = false;
        EXPECT_EQ(power.createAssertion(displaySleep, on, "why", id), Power::success);
        EXPECT_EQ(power.releaseAssertion(id), Power::success);
        *broken = true;
    }
    firstWorks = false;
    EXPECT_EQ(power.createAssertion(displaySleep, on, "why", id), Power::success);
    EXPECT_THAT(log.lines, ElementsAre("first is missing", "second is missing"));
}

TEST_F(PowerOfTwoWays, FailsWithoutEitherLeavingTheNumberAloneAndNothingHeld) {
    firstWorks = secondWorks = false;
    EXPECT_EQ(power.createAssertion(displaySleep, on, "why", id), DisplayPower::nothingInhibited);
    EXPECT_EQ(id, 77u);
    EXPECT_THAT(calls, ElementsAre("first keeps 1 why", "second keeps 1 why", "first releases 1",
                                   "second releases 1"));
    EXPECT_EQ(power.releaseAssertion(1), DisplayPower::noSuchAssertion);
}

TEST_F(PowerOfTwoWays, RefusesWhatItDoesNotKnow) {
    EXPECT_EQ(power.createAssertion("NoIdleSleepAssertion", on, "why", id),
              DisplayPower::notSupported);
    EXPECT_EQ(power.createAssertion(displaySleep, 0, "why", id), DisplayPower::notSupported);
    EXPECT_THAT(calls, IsEmpty());
}

} // namespace
} // namespace platform::linux
