#include "platform/memory/MemoryPlatform.h"

#include <gmock/gmock.h>

namespace platform::memory {
namespace {

using testing::ElementsAre;

/// A loop whose timers note their name and when they fired, in nanoseconds.
struct VirtualTime : testing::Test {
    MemoryPlatform platform;
    RunLoop& loop = platform.runLoop;
    std::vector<std::string> fired;

    std::function<void()> note(const std::string& name) {
        return [this, name] {
            fired.push_back(name + "@" + std::to_string(platform.clock.nanoseconds));
        };
    }
    TimerId once(double seconds, const std::string& name) {
        return loop.schedule(seconds, false, name, note(name));
    }
    TimerId every(double seconds, const std::string& name) {
        return loop.schedule(seconds, true, name, note(name));
    }
};

TEST_F(VirtualTime, FiresByDueTimeThenByMaking) {
    once(2e-9, "late");
    once(1e-9, "first");
    once(1e-9, "second");
    loop.advance(2e-9);
    EXPECT_THAT(fired, ElementsAre("first@1", "second@1", "late@2"));
}

TEST_F(VirtualTime, ARepeatingTimerKeepsItsPlaceInTies) {
    every(1e-9, "old");
    every(2e-9, "young");
    once(2e-9, "youngest");
    loop.advance(2e-9);
    EXPECT_THAT(fired, ElementsAre("old@1", "old@2", "young@2", "youngest@2"));
}

TEST_F(VirtualTime, ARepeatingTimerDoesNotDrift) {
    every(0.1, "tick");
    for (int step = 0; step < 7; ++step)
        loop.advance(0.13);
    EXPECT_EQ(fired.size(), 9u);
    EXPECT_EQ(fired.back(), "tick@900000000");
    EXPECT_EQ(platform.clock.nanoseconds, 910'000'000);
}

TEST_F(VirtualTime, ATimerMadeMeanwhileMayFireInTheSameStep) {
    loop.schedule(1e-9, false, "maker", [this] {
        once(1e-9, "made");
        once(0, "at once");
        once(9e-9, "too late");
    });
    loop.advance(3e-9);
    EXPECT_THAT(fired, ElementsAre("at once@1", "made@2"));
}

TEST_F(VirtualTime, ZeroFiresAtTheNextStepEvenAnEmptyOne) {
    once(0, "zero");
    once(-1, "less");
    EXPECT_TRUE(fired.empty());
    loop.advance(0);
    EXPECT_THAT(fired, ElementsAre("zero@0", "less@0"));
}

TEST_F(VirtualTime, ARepeatingTimerWithoutAnIntervalFiresEveryTenthOfAMillisecond) {
    every(0, "busy");
    loop.advance(0.00025);
    EXPECT_THAT(fired, ElementsAre("busy@100000", "busy@200000"));
}

TEST_F(VirtualTime, NothingFiresWhileAnAlertRuns) {
    once(1, "due");
    every(0.75, "tick");
    platform.alerts.setWhileOpen([this](const Alert&) {
        loop.advance(2);
        EXPECT_TRUE(fired.empty());
    });
    platform.alerts.runModal({});
    EXPECT_TRUE(fired.empty());
    loop.advance(0);
    EXPECT_THAT(fired, ElementsAre("tick@2000000000", "due@2000000000", "tick@2000000000"));
}

TEST_F(VirtualTime, AnInvalidatedTimerDoesNotFireAndDoesNotRun) {
    const TimerId timer = every(1, "gone");
    EXPECT_TRUE(loop.isRunning(timer));
    loop.invalidate(timer);
    loop.invalidate(timer);
    loop.invalidate(TimerId::none);
    EXPECT_FALSE(loop.isRunning(timer));
    EXPECT_FALSE(loop.isRunning(TimerId::none));
    loop.advance(5);
    EXPECT_TRUE(fired.empty());
}

TEST_F(VirtualTime, ATimerMayInvalidateItselfAndMakeAnotherInItsPlace) {
    TimerId timer = TimerId::none;
    timer = loop.schedule(1, true, "self", [&] {
        loop.invalidate(timer);
        once(1, "next");
        fired.push_back("self");
    });
    loop.advance(5);
    EXPECT_THAT(fired, ElementsAre("self", "next@2000000000"));
    EXPECT_TRUE(loop.timers().empty());
}

TEST_F(VirtualTime, ASingleTimerNoLongerRunsWhileItFires) {
    TimerId timer = TimerId::none;
    bool ran = true;
    timer = loop.schedule(1, false, "single", [&] { ran = loop.isRunning(timer); });
    loop.advance(1);
    EXPECT_FALSE(ran);
}

TEST_F(VirtualTime, NumbersOfTimersAreNotUsedAgain) {
    const TimerId first = once(0, "first");
    loop.advance(0);
    const TimerId second = once(0, "second");
    EXPECT_NE(first, second);
    EXPECT_FALSE(loop.isRunning(first));
}

} // namespace
} // namespace platform::memory
