#include "platform/memory/RunLoop.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace platform::memory {

namespace {

constexpr double nanosecondsInASecond = 1e9;
constexpr double periodForZero = 0.0001; // what a repeating timer without an interval gets

// Far beyond any scenario, and far enough from the limit for two such times to be added.
constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max() / 2;

std::int64_t toNanoseconds(double seconds) {
    if (!(seconds > 0)) return 0;
    const double exact = seconds * nanosecondsInASecond;
    return exact < static_cast<double>(never) ? std::llround(exact) : never;
}

} // namespace

TimerId RunLoop::schedule(double seconds, bool repeats, std::string_view selector,
                          std::function<void()> fire) {
    effects.emit("timer", Member{"selector", selector}, Member{"interval", seconds},
                 Member{"repeats", repeats});
    auto slot = std::ranges::find(slots, TimerId::none, &Timer::id);
    if (slot == slots.end()) slot = slots.emplace(slots.end());
    slot->id = TimerId{++made};
    slot->selector.assign(selector);
    slot->seconds = seconds;
    slot->repeats = repeats;
    slot->period = toNanoseconds(repeats && !(seconds > 0) ? periodForZero : seconds);
    if (repeats) slot->period = std::max<std::int64_t>(slot->period, 1);
    slot->due = std::min(clock.nanoseconds + slot->period, never);
    slot->fire = std::move(fire);
    return slot->id;
}

RunLoop::Timer* RunLoop::find(TimerId id) {
    if (id == TimerId::none) return nullptr;
    const auto found = std::ranges::find(slots, id, &Timer::id);
    return found == slots.end() ? nullptr : &*found;
}

void RunLoop::invalidate(TimerId timer) {
    Timer* const found = find(timer);
    if (found == nullptr) return;
    found->id = TimerId::none;
    found->fire = nullptr;
}

bool RunLoop::isRunning(TimerId timer) const {
    return timer != TimerId::none && std::ranges::find(slots, timer, &Timer::id) != slots.end();
}

double RunLoop::now() const {
    return static_cast<double>(clock.nanoseconds) / 1e9;
}

void RunLoop::run() {
    if (whileRunning) whileRunning();
}

void RunLoop::performOnMainThread(std::function<void()> work, bool waitUntilDone) {
    if (waitUntilDone)
        work();
    else
        pending.push_back(std::move(work));
}

void RunLoop::performPending() {
    while (!pending.empty()) {
        const auto work = std::move(pending.front());
        pending.pop_front();
        work();
    }
}

void RunLoop::advance(double seconds) {
    advanceNanoseconds(toNanoseconds(seconds));
}

void RunLoop::advanceNanoseconds(std::int64_t span) {
    performPending();
    const std::int64_t end = std::min(clock.nanoseconds + span, never);
    if (modals == 0)
        while (Timer* const timer = nextDue(end))
            fire(*timer);
    clock.nanoseconds = std::max(clock.nanoseconds, end);
}

RunLoop::Timer* RunLoop::nextDue(std::int64_t limit) {
    Timer* next = nullptr;
    for (Timer& timer : slots) {
        if (timer.id == TimerId::none || timer.due > limit || timer.due == never) continue;
        if (next == nullptr || std::pair(timer.due, timer.id) < std::pair(next->due, next->id))
            next = &timer;
    }
    return next;
}

void RunLoop::fire(Timer& timer) {
    clock.nanoseconds = std::max(clock.nanoseconds, timer.due);
    // The operation may schedule, which moves the slots, may invalidate its own timer, and may end
    // the program by an exception.
    struct Running {
        RunLoop& loop;
        TimerId id;
        std::function<void()> operation;
        ~Running() {
            if (Timer* const still = loop.find(id)) still->fire = std::move(operation);
        }
    } running{*this, timer.id, std::move(timer.fire)};
    if (timer.repeats)
        timer.due = std::min(timer.due + timer.period, never);
    else
        timer.id = TimerId::none;
    running.operation();
}

std::vector<const RunLoop::Timer*> RunLoop::timers() const {
    std::vector<const Timer*> running;
    for (const Timer& timer : slots)
        if (timer.id != TimerId::none) running.push_back(&timer);
    std::ranges::sort(running, {},
                      [](const Timer* timer) { return std::pair(timer->due, timer->id); });
    return running;
}

} // namespace platform::memory
