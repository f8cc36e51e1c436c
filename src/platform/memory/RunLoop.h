#pragma once

#include "platform/RunLoop.h"
#include "platform/memory/Effects.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace platform::memory {

/// A loop over virtual time, which passes only in `advance`.
///
/// Due timers fire in the order of their due time, then of their making. The nth firing of a
/// repeating timer is due n intervals after its making, so it neither drifts nor loses its place
/// among timers that are due together. A single firing after zero or less is due at once, and fires
/// at the next step of time.
class RunLoop final : public platform::RunLoop {
  public:
    RunLoop(Effects& stream, Clock& virtualClock) : effects(stream), clock(virtualClock) {}

    TimerId schedule(double seconds, bool repeats, std::string_view selector,
                     std::function<void()> fire) override;
    void invalidate(TimerId timer) override;
    bool isRunning(TimerId timer) const override;
    double now() const override;

    /// Calls what `setWhileRunning` was given, and returns with it.
    void run() override;
    void setWhileRunning(std::function<void()> happens) { whileRunning = std::move(happens); }

    /// In place when waiting; otherwise it waits for `performPending`, which a step of time begins
    /// with.
    void performOnMainThread(std::function<void()> work, bool waitUntilDone) override;
    /// Does what was left for the main thread to do, also what is left meanwhile.
    void performPending();

    /// In place.
    void detachNewThread(std::function<void()> work) override { work(); }

    /// Lets time pass and fires what comes due, also what is made meanwhile.
    void advance(double seconds);
    void advanceNanoseconds(std::int64_t span);

    struct Timer {
        TimerId id = TimerId::none;
        std::string selector;
        double seconds = 0; ///< as asked for
        bool repeats = false;
        std::int64_t due = 0;    ///< nanoseconds since the start
        std::int64_t period = 0; ///< nanoseconds
        std::function<void()> fire;
    };

    /// The timers that will fire, in the order in which they will. Valid until the next call.
    std::vector<const Timer*> timers() const;

    /// While one exists time may pass, but no timer fires.
    class Modal {
      public:
        explicit Modal(RunLoop& owner) : loop(owner) { ++loop.modals; }
        ~Modal() { --loop.modals; }
        Modal(const Modal&) = delete;
        Modal& operator=(const Modal&) = delete;

      private:
        RunLoop& loop;
    };

  private:
    Timer* find(TimerId id);
    Timer* nextDue(std::int64_t limit);
    void fire(Timer& timer);

    Effects& effects;
    Clock& clock;
    std::vector<Timer> slots; ///< a slot is used again, with what it has allocated
    std::uint64_t made = 0;
    int modals = 0;
    std::deque<std::function<void()>> pending;
    std::function<void()> whileRunning;
};

} // namespace platform::memory
