#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace platform {

/// Names a scheduled timer. Numbers are not used again.
enum class TimerId : std::uint64_t { none = 0 };

/// The main run loop: the only source of time, and the way between threads. Main thread only,
/// except where an operation says otherwise.
class RunLoop {
  public:
    virtual ~RunLoop() = default;

    /// Calls `fire` after `seconds`, or every `seconds` while `repeats`; a single firing at the
    /// next turn for zero or less. `selector` names the operation for logs. The loop
    /// keeps the timer until it has fired for the last time or is invalidated. While a modal alert
    /// runs or a menu is open nothing fires; what came due fires, in order, once that has ended.
    /// On a real desktop one firing may stand for several that missed their time, or that follow
    /// each other faster than a monitor shows.
    virtual TimerId schedule(double seconds, bool repeats, std::string_view selector,
                             std::function<void()> fire) = 0;

    /// Stops a timer. One that has ended, and none, are ignored.
    virtual void invalidate(TimerId timer) = 0;

    /// Whether the timer will still fire.
    virtual bool isRunning(TimerId timer) const = 0;

    /// Seconds since some moment, on the clock that timers go by: it stands still in no alert and
    /// is never set back.
    virtual double now() const = 0;

    /// Runs the loop from inside the current call, and returns when the loop is stopped.
    virtual void run() = 0;

    /// Has the main thread do the work: at its next turn, in the order of asking. With
    /// `waitUntilDone` the call returns when the work is done, and on the main thread it is done at
    /// once. A waiting thread stays where it is should the process end meanwhile. Any thread.
    virtual void performOnMainThread(std::function<void()> work, bool waitUntilDone) = 0;

    /// Does the work on a thread of its own, which nobody waits for and which ends with it.
    virtual void detachNewThread(std::function<void()> work) = 0;
};

} // namespace platform
