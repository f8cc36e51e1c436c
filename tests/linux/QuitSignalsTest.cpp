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
            loop, [] {}, 1);
        (void)::raise(signal);
        for (;;)
            ::pause();
    };
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        EXPECT_EXIT(askedToEnd(signal), testing::KilledBySignal(SIGALRM), "") << signal;
}

} // namespace
