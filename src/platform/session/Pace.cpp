#include "platform/session/Pace.h"

#include <cstdint>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace platform::session {

Pace::Pace(Descriptors& watcher, std::function<void()> tick, std::chrono::nanoseconds wanted)
    : descriptors(watcher),
      handler(std::move(tick)),
      ownPeriod(wanted),
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
    if (!running && descriptor >= 0) set(ownPeriod);
}

void Pace::stop() {
    if (running) set({});
}

void Pace::setPeriod(std::chrono::nanoseconds wanted) {
    if (std::exchange(ownPeriod, wanted) != wanted && running) set(ownPeriod);
}

void Pace::set(std::chrono::nanoseconds interval) {
    running = interval.count() != 0;
    const auto whole = std::chrono::floor<std::chrono::seconds>(interval);
    const timespec span{whole.count(), static_cast<long>((interval - whole).count())};
    const itimerspec times{span, span};
    timerfd_settime(descriptor, 0, &times, nullptr);
}

} // namespace platform::session
