#pragma once

#include "platform/Descriptors.h"

#include <chrono>
#include <functional>

namespace platform::session {

/// A clock that ticks at the pace of a display, or at another one, on a fixed grid, also while an
/// alert or a menu is open. Stopped it costs nothing. Main thread.
class Pace {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::nanoseconds period{1'000'000'000 / 60};

    /// Ticks that were missed are made up for by one. Where the system refuses a clock, `start`
    /// does nothing and `isRunning` stays false.
    Pace(Descriptors& descriptors, std::function<void()> tick,
         std::chrono::nanoseconds period = Pace::period);
    ~Pace();
    Pace(const Pace&) = delete;
    Pace& operator=(const Pace&) = delete;

    /// The first tick comes a period from now.
    void start();
    void stop();
    /// Also of a clock that runs: the next tick comes a new period from now.
    void setPeriod(std::chrono::nanoseconds period);
    bool isRunning() const { return running; }

  private:
    void set(std::chrono::nanoseconds interval);

    Descriptors& descriptors;
    std::function<void()> handler;
    std::chrono::nanoseconds ownPeriod;
    int descriptor;
    bool running = false;
};

} // namespace platform::session
