#include "TestLoop.h"

#include <algorithm>

namespace x11tests {

namespace {

TestLoop::Clock::duration span(double seconds) {
    return std::chrono::duration_cast<TestLoop::Clock::duration>(
        std::chrono::duration<double>(seconds));
}

} // namespace

platform::TimerId TestLoop::schedule(double seconds, bool repeats, std::string_view,
                                     std::function<void()> fire) {
    const auto id = static_cast<platform::TimerId>(++lastTimer);
    timers[id] = {Clock::now() + span(seconds), seconds, repeats, std::move(fire)};
    return id;
}

void TestLoop::watchReadable(int fd, std::function<void()> ready) {
    watches[fd] = std::move(ready);
}

void TestLoop::performOnMainThread(std::function<void()> work, bool waitUntilDone) {
    if (waitUntilDone)
        work();
    else
        schedule(0, false, "performOnMainThread", std::move(work));
}

void TestLoop::run() {
    for (;;)
        turn(Clock::now() + std::chrono::hours(1));
}

bool TestLoop::runUntil(const std::function<bool()>& reached, support::milliseconds limit) {
    constexpr support::milliseconds glance{5};
    return support::waitUntil(reached, limit, [&](Clock::time_point deadline) {
        turn(std::min(deadline, Clock::now() + glance));
    });
}

void TestLoop::turn(Clock::time_point deadline) {
    for (const auto& [id, timer] : timers)
        deadline = std::min(deadline, timer.due);
    std::vector<pollfd> polled;
    for (const auto& [fd, ready] : watches)
        polled.push_back({fd, POLLIN, 0});
    poll(polled.data(), polled.size(), support::millisecondsUntil(deadline));
    for (const pollfd& one : polled) {
        const auto watch = watches.find(one.fd);
        if (one.revents == 0 || watch == watches.end()) continue;
        const auto ready = watch->second;
        ready();
    }
    fireDueTimers();
}

void TestLoop::fireDueTimers() {
    const auto now = Clock::now();
    std::vector<platform::TimerId> due;
    for (const auto& [id, timer] : timers)
        if (timer.due <= now) due.push_back(id);
    for (const platform::TimerId id : due) {
        const auto timer = timers.find(id);
        if (timer == timers.end()) continue;
        const auto fire = timer->second.fire;
        if (timer->second.repeats)
            timer->second.due += span(timer->second.interval);
        else
            timers.erase(timer);
        fire();
    }
}

} // namespace x11tests
