#include "platform/memory/Effects.h"
#include "platform/memory/RunLoop.h"
#include "platform/qt/loop/QtRunLoop.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

// What every run loop promises. The order of events is asserted, never a time: the real loop runs
// until the last awaited one has come.

namespace {

using platform::TimerId;

struct MemoryLoop {
    platform::memory::Clock clock;
    platform::memory::Effects effects{clock};
    platform::memory::RunLoop loop{effects, clock};
    bool ended = false;

    platform::RunLoop& get() { return loop; }
    void runUntilEnd() {
        for (int step = 0; !ended && step < 10000; ++step)
            loop.advance(0.001);
    }
    void end() { ended = true; }
    auto modal() { return std::make_unique<platform::memory::RunLoop::Modal>(loop); }
    void letTimePass(double seconds) { loop.advance(seconds); }
};

struct RealLoop {
    platform::qt::QtRunLoop loop;

    platform::RunLoop& get() { return loop; }
    void runUntilEnd() { loop.run(); }
    void end() { loop.stop(); }
    auto modal() { return std::make_unique<platform::qt::QtRunLoop::ModalScope>(loop); }
    /// As an alert does: a loop of its own inside the current call.
    void letTimePass(double seconds) {
        QEventLoop alert;
        QTimer::singleShot(static_cast<int>(seconds * 1000), Qt::PreciseTimer, &alert,
                           &QEventLoop::quit);
        alert.exec();
    }
};

template <class Backend>
class RunLoopContract : public testing::Test {
  protected:
    void note(char event) { events += event; }
    TimerId schedule(double seconds, bool repeats, std::function<void()> fire) {
        return loop.schedule(seconds, repeats, "test", std::move(fire));
    }
    TimerId noteAfter(double seconds, char event) {
        return schedule(seconds, false, [this, event] { note(event); });
    }
    void endAfter(double seconds) {
        schedule(seconds, false, [this] { backend.end(); });
    }

    Backend backend;
    platform::RunLoop& loop = backend.get();
    std::string events;
};

using Backends = testing::Types<MemoryLoop, RealLoop>;
TYPED_TEST_SUITE(RunLoopContract, Backends);

TYPED_TEST(RunLoopContract, FiresInTheOrderOfDueTimesNotOfMaking) {
    this->noteAfter(0.03, 'c');
    this->noteAfter(0.01, 'a');
    this->noteAfter(0.02, 'b');
    this->endAfter(0.04);
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "abc");
}

TYPED_TEST(RunLoopContract, FiresASingleTimerOnceAndNeverFromInsideSchedule) {
    const TimerId timer = this->noteAfter(0, 'a');
    EXPECT_EQ(this->events, "");
    EXPECT_TRUE(this->loop.isRunning(timer));
    this->endAfter(0.02);
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "a");
    EXPECT_FALSE(this->loop.isRunning(timer));
}

TYPED_TEST(RunLoopContract, HasAClockThatTimersGoBy) {
    const double before = this->loop.now();
    double atFiring = before;
    this->schedule(0.02, false, [&] {
        atFiring = this->loop.now();
        this->backend.end();
    });
    this->backend.runUntilEnd();
    EXPECT_GE(atFiring, before + 0.02 - 1e-6);
}

TYPED_TEST(RunLoopContract, HasAClockThatGoesOnWhileAnAlertIsOpen) {
    const auto alert = this->backend.modal();
    const double before = this->loop.now();
    this->backend.letTimePass(0.02);
    EXPECT_GT(this->loop.now(), before);
}

TYPED_TEST(RunLoopContract, ATimeBelowZeroIsTheNextTurn) {
    this->noteAfter(-1, 'a');
    this->noteAfter(0.01, 'b');
    this->endAfter(0.02);
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "ab");
}

TYPED_TEST(RunLoopContract, ASingleTimerIsOverWhileItFires) {
    TimerId timer = TimerId::none;
    std::optional<bool> running;
    timer = this->schedule(0, false, [&] {
        running = this->loop.isRunning(timer);
        this->backend.end();
    });
    this->backend.runUntilEnd();
    EXPECT_EQ(running, false);
}

TYPED_TEST(RunLoopContract, ARepeatingTimerFiresUntilItInvalidatesItself) {
    TimerId timer = TimerId::none;
    int count = 0;
    timer = this->schedule(0.002, true, [&] {
        EXPECT_TRUE(this->loop.isRunning(timer));
        if (++count < 3) return;
        this->loop.invalidate(timer);
        this->endAfter(0.01);
    });
    this->backend.runUntilEnd();
    EXPECT_EQ(count, 3);
    EXPECT_FALSE(this->loop.isRunning(timer));
}

TYPED_TEST(RunLoopContract, AnInvalidatedTimerDoesNotFire) {
    const TimerId timer = this->noteAfter(0.01, 'x');
    this->loop.invalidate(timer);
    EXPECT_FALSE(this->loop.isRunning(timer));
    this->endAfter(0.02);
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "");
}

TYPED_TEST(RunLoopContract, ATimerMayInvalidateAnotherThatIsDueWithIt) {
    TimerId other = TimerId::none;
    this->schedule(0, false, [&] { this->loop.invalidate(other); });
    other = this->noteAfter(0, 'x');
    this->endAfter(0.01);
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "");
}

TYPED_TEST(RunLoopContract, InvalidatingNoneOrAnEndedTimerDoesNothing) {
    const TimerId ended = this->noteAfter(0, 'a');
    this->endAfter(0.01);
    this->backend.runUntilEnd();
    this->loop.invalidate(ended);
    this->loop.invalidate(TimerId::none);
    EXPECT_FALSE(this->loop.isRunning(TimerId::none));
    EXPECT_EQ(this->events, "a");
}

TYPED_TEST(RunLoopContract, NumbersAreNotUsedAgain) {
    const TimerId first = this->noteAfter(1, 'x');
    this->loop.invalidate(first);
    const TimerId second = this->noteAfter(1, 'x');
    EXPECT_NE(first, second);
    EXPECT_FALSE(this->loop.isRunning(first));
    this->loop.invalidate(second);
}

TYPED_TEST(RunLoopContract, NothingFiresWhileAModalLoopRunsAndAllInOrderAfterwards) {
    this->noteAfter(0.02, 'b');
    this->noteAfter(0.01, 'a');
    {
        const auto alert = this->backend.modal();
        this->noteAfter(0.015, 'm');
        this->backend.letTimePass(0.04);
        EXPECT_EQ(this->events, "");
    }
    EXPECT_EQ(this->events, "");
    this->endAfter(0.01);
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "amb");
}

TYPED_TEST(RunLoopContract, AnAlertOpenedByATimerHoldsBackWhatWasDueWithIt) {
    this->schedule(0.001, false, [this] {
        const auto alert = this->backend.modal();
        this->note('(');
        this->backend.letTimePass(0.02);
        this->note(')');
    });
    this->noteAfter(0.001, 'a');
    this->noteAfter(0.01, 'b');
    this->endAfter(0.05);
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "()ab");
}

TYPED_TEST(RunLoopContract, TheEndOfAnInnerModalLoopDoesNotEndTheOuterOne) {
    this->noteAfter(0.001, 'a');
    {
        const auto menu = this->backend.modal();
        { const auto alert = this->backend.modal(); }
        this->backend.letTimePass(0.01);
        EXPECT_EQ(this->events, "");
    }
    this->endAfter(0.01);
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "a");
}

// Of the real loop alone: virtual time never misses a firing.
TEST(QtRunLoop, ARepeatingTimerMakesUpForAWholeAlertWithOneFiring) {
    RealLoop backend;
    int count = 0;
    const TimerId timer = backend.loop.schedule(0.005, true, "test", [&] { ++count; });
    {
        const auto alert = backend.modal();
        backend.letTimePass(0.1);
    }
    backend.loop.schedule(0, false, "end", [&] { backend.end(); });
    backend.runUntilEnd();
    EXPECT_EQ(count, 1);
    backend.loop.invalidate(timer);
}

TEST(QtRunLoop, ALoopRunFromInsideACallFiresTimers) {
    RealLoop backend;
    std::string events;
    backend.loop.schedule(0, false, "outer", [&] {
        backend.loop.schedule(0, false, "inner", [&] {
            events += 'i';
            backend.end();
        });
        backend.loop.run();
        events += 'o';
        backend.end();
    });
    backend.runUntilEnd();
    EXPECT_EQ(events, "io");
}

TYPED_TEST(RunLoopContract, HandsWorkToTheMainThreadInTheOrderOfAsking) {
    this->loop.performOnMainThread([this] { this->note('b'); }, false);
    this->loop.performOnMainThread([this] { this->note('c'); }, false);
    this->note('a');
    this->endAfter(0.01);
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "abc");
}

TYPED_TEST(RunLoopContract, DoesTheWorkAtOnceWhenTheMainThreadItselfWaits) {
    this->loop.performOnMainThread([this] { this->note('a'); }, true);
    this->note('b');
    EXPECT_EQ(this->events, "ab");
}

TYPED_TEST(RunLoopContract, AWaitingThreadGoesOnWhenTheMainThreadHasDoneTheWork) {
    this->loop.detachNewThread([this] {
        this->loop.performOnMainThread([this] { this->note('a'); }, true);
        this->note('b'); // nobody else writes here: the main thread has yet to be told to end
        this->loop.performOnMainThread(
            [this] {
                this->note('c');
                this->backend.end();
            },
            false);
    });
    this->backend.runUntilEnd();
    EXPECT_EQ(this->events, "abc");
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication toolkit(argc, argv);
    return RUN_ALL_TESTS();
}
