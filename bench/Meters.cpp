#include "Meters.h"

#include "testing/Child.h"
#include "testing/Wakeups.h"

#include <chrono>
#include <ctime>
#include <pthread.h>
#include <sched.h>
#include <stdexcept>

namespace bench {

namespace {

double secondsOf(clockid_t clock) {
    timespec time{};
    if (clock_gettime(clock, &time) != 0) throw std::runtime_error("the program has gone");
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double cpuSeconds(pid_t process) {
    clockid_t clock{};
    if (clock_getcpuclockid(process, &clock) != 0) throw std::runtime_error("the program has gone");
    return secondsOf(clock);
}

} // namespace

Usage::Usage(pid_t measured)
    : process(measured),
      begun(secondsOf(CLOCK_MONOTONIC)),
      usedBefore(cpuSeconds(measured)),
      switchesBefore(support::wakeups(measured)) {}

double Usage::cpuPercent() const {
    return 100 * (cpuSeconds(process) - usedBefore) / (secondsOf(CLOCK_MONOTONIC) - begun);
}

double Usage::wakeUpsPerSecond() const {
    return static_cast<double>(support::wakeups(process) - switchesBefore) /
           (secondsOf(CLOCK_MONOTONIC) - begun);
}

Load::Load() {
    constexpr int cores = 2;
    support::ChildProcess::Start start;
    start.command = {"/bin/sh", "-c", "while :; do :; done"};
    for (int i = 0; i < cores; ++i)
        processes.push_back(std::make_unique<support::ChildProcess>(start));
}

Load::~Load() = default;

Standstills::Standstills() {
    const auto cores = static_cast<int>(std::thread::hardware_concurrency());
    for (int core = 0; core < cores; ++core)
        watchers.emplace_back([this, core] { watch(core); });
}

Standstills::~Standstills() {
    ends = true;
    for (std::thread& watcher : watchers)
        watcher.join();
}

void Standstills::watch(int core) {
    constexpr std::chrono::milliseconds turn{2}, standstill{5};
    cpu_set_t only;
    CPU_ZERO(&only);
    CPU_SET(static_cast<std::size_t>(core), &only);
    sched_param first{};
    first.sched_priority = sched_get_priority_min(SCHED_FIFO);
    if (pthread_setaffinity_np(pthread_self(), sizeof only, &only) != 0 ||
        pthread_setschedparam(pthread_self(), SCHED_FIFO, &first) != 0)
        return;
    auto last = std::chrono::steady_clock::now();
    while (!ends) {
        std::this_thread::sleep_for(turn);
        const auto now = std::chrono::steady_clock::now();
        if (now - last > standstill) seen = true;
        last = now;
    }
}

} // namespace bench
