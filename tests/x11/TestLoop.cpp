#include "TestLoop.h"

#include <algorithm>
#include <poll.h>

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

bool TestLoop::runUntil(const std::function<bool()>& reached, double seconds) {
    constexpr auto glance = std::chrono::milliseconds(5);
    const auto deadline = Clock::now() + span(seconds);
    while (!reached()) {
        if (Clock::now() >= deadline) return false;
        turn(std::min(deadline, Clock::now() + glance));
    }
    return true;
}

void TestLoop::turn(Clock::time_point deadline) {
    for (const auto& [id, timer] : timers)
        deadline = std::min(deadline, timer.due);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    std::vector<pollfd> polled;
    for (const auto& [fd, ready] : watches)
        polled.push_back({fd, POLLIN, 0});
    poll(polled.data(), polled.size(), static_cast<int>(std::max<long>(left, 0)));
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
