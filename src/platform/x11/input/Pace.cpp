#include "platform/x11/input/Pace.h"

#include <cstdint>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace platform::x11 {

namespace {

timespec toTimespec(std::chrono::nanoseconds span) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span);
    return {static_cast<time_t>(seconds.count()), static_cast<long>((span - seconds).count())};
}

} // namespace

Pace::Pace(Descriptors& watcher, std::function<void()> tick)
    : descriptors(watcher),
      handler(std::move(tick)),
      descriptor(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (descriptor < 0) return;
    descriptors.watchReadable(descriptor, [this] {
        std::uint64_t ticks = 0;
        if (read(descriptor, &ticks, sizeof ticks) == sizeof ticks && running) handler();
    });
}

Pace::~Pace() {
    if (descriptor < 0) return;
    descriptors.unwatch(descriptor);
    close(descriptor);
}

void Pace::start() {
    if (running || descriptor < 0) return;
    running = true;
    set(Clock::now().time_since_epoch() + period, period);
}

void Pace::stop() {
    if (!running) return;
    running = false;
    set({}, {});
}

void Pace::set(Clock::duration first, std::chrono::nanoseconds interval) const {
    const itimerspec times{toTimespec(interval), toTimespec(first)};
    timerfd_settime(descriptor, TFD_TIMER_ABSTIME, &times, nullptr);
}

} // namespace platform::x11
