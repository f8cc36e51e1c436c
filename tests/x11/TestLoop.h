#pragma once

#include "platform/Descriptors.h"
#include "platform/RunLoop.h"
#include "testing/Wait.h"

#include <map>

namespace x11tests {

/// A run loop on real time over poll(), as small as the X11 services need it.
class TestLoop final : public platform::RunLoop, public platform::Descriptors {
  public:
    using Clock = support::Clock;

    platform::TimerId schedule(double seconds, bool repeats, std::string_view selector,
                               std::function<void()> fire) override;
    void invalidate(platform::TimerId timer) override { timers.erase(timer); }
    bool isRunning(platform::TimerId timer) const override { return timers.contains(timer); }
    double now() const override {
        return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
    }
    void run() override;
    /// The X11 services have no other thread, so neither has this loop.
    void performOnMainThread(std::function<void()> work, bool waitUntilDone) override;
    void detachNewThread(std::function<void()> work) override { work(); }

    void watchReadable(int fd, std::function<void()> ready) override;
    void unwatch(int fd) override { watches.erase(fd); }

    /// Runs until `reached`, which is looked at after each turn and, since it may be the server's
    /// state, every few milliseconds; false when the time is up.
    bool runUntil(const std::function<bool()>& reached,
                  support::milliseconds limit = support::generous);

  private:
    struct Timer {
        Clock::time_point due;
        double interval;
        bool repeats;
        std::function<void()> fire;
    };

    void turn(Clock::time_point deadline);
    void fireDueTimers();

    std::map<int, std::function<void()>> watches;
    std::map<platform::TimerId, Timer> timers;
    std::uint64_t lastTimer = 0;
};

} // namespace x11tests
