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
    struct Way final : WakeLock {
        Way(std::string text, std::vector<std::string>& all)
            : name(std::move(text)), calls(all), why(name + " is missing") {}
        bool keep(AssertionId wanted, const std::string& reason) override {
            calls.push_back(name + " keeps " + std::to_string(wanted) + " " + reason);
            return works;
        }
        void release(AssertionId wanted) override {
            calls.push_back(name + " releases " + std::to_string(wanted));
        }
        std::string_view missing() const override { return why; }

        std::string name;
        std::vector<std::string>& calls;
        std::string why;
        bool works = true;
    };

    std::vector<std::string> calls;
    Way first{"first", calls}, second{"second", calls};
    testing_support::KeptLog log;
    DisplayPower power{{&first, &second}, log};
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
    for (bool* broken : {&first.works, &second.works}) {
        *broken = false;
        EXPECT_EQ(power.createAssertion(displaySleep, on, "why", id), Power::success);
        EXPECT_EQ(power.releaseAssertion(id), Power::success);
        *broken = true;
    }
    first.works = false;
    EXPECT_EQ(power.createAssertion(displaySleep, on, "why", id), Power::success);
    EXPECT_THAT(log.lines, ElementsAre("first is missing", "second is missing"));
}

TEST_F(PowerOfTwoWays, FailsWithoutEitherLeavingTheNumberAloneAndNothingHeld) {
    first.works = second.works = false;
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
