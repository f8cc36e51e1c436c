#include "platform/linux/system/QuitSignals.h"

#include <csignal>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

using platform::linux::QuitSignals;

/// A run loop that waits for somebody and does not turn.
struct StillLoop final : platform::Descriptors {
    void watchReadable(int, std::function<void()>) override {}
    void unwatch(int) override {}
};

TEST(QuitSignals, EndTheProcessAlsoWhereItsLoopDoesNotTurn) {
    const auto askedToEnd = [](int signal) {
        StillLoop loop;
        const QuitSignals signals(
            loop, [] {}, [] {}, 1);
        (void)::raise(signal);
        for (;;)
            ::pause();
    };
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        EXPECT_EXIT(askedToEnd(signal), testing::KilledBySignal(SIGALRM), "") << signal;
}

struct KeptDescriptors final : platform::Descriptors {
    void watchReadable(int, std::function<void()> operation) override { readable = operation; }
    void unwatch(int) override {}
    std::function<void()> readable;
};

TEST(QuitSignals, TellAnEndFromAStartOfAnotherVersion) {
    KeptDescriptors loop;
    int ends = 0, starts = 0;
    const QuitSignals signals(
        loop, [&ends] { ++ends; }, [&starts] { ++starts; }, platform::linux::never);
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(::raise(SIGUSR1), 0);
        loop.readable();
    }
    EXPECT_EQ(starts, 2);
    EXPECT_EQ(ends, 0);
    ASSERT_EQ(::raise(SIGUSR1), 0);
    ASSERT_EQ(::raise(SIGTERM), 0);
    loop.readable();
    EXPECT_EQ(starts, 2) << "who is to end does not start again";
    EXPECT_EQ(ends, 1);
}

} // namespace
