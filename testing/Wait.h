#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <poll.h>

namespace support {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// What a wait that must succeed is given: far longer than anything takes, so that it only ends a
/// test that would hang.
inline constexpr milliseconds generous{30'000};

/// From now on, never below nothing, rounded up as poll takes it.
inline int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::max<decltype(left)>(left, 0));
}

/// What a wait does between two looks: it blocks until something may have changed, but not beyond
/// the deadline.
using Pause = std::function<void(Clock::time_point deadline)>;

/// The pause of a wait for what tells nobody that it changes: a file, the cursor, a gamma ramp.
inline void glance(Clock::time_point deadline) {
    constexpr int shortTime = 2;
    poll(nullptr, 0, std::min(shortTime, millisecondsUntil(deadline)));
}

/// Looks at `reached` now and after each pause, for the last time when the limit is up; false when
/// it does not hold then either.
inline bool waitUntil(const std::function<bool()>& reached, milliseconds limit = generous,
                      const Pause& pause = glance) {
    const auto deadline = Clock::now() + limit;
    while (!reached()) {
        if (Clock::now() >= deadline) return false;
        pause(deadline);
    }
    return true;
}

} // namespace support
