#include "Meters.h"

#include "support/PrivateDesktop.h"

#include <ctime>
#include <filesystem>
#include <fstream>
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

long voluntarySwitches(pid_t process) {
    long sum = 0;
    const std::filesystem::path tasks = "/proc/" + std::to_string(process) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(tasks)) {
        std::ifstream status(task.path() / "status");
        constexpr std::string_view name = "voluntary_ctxt_switches:";
        for (std::string line; std::getline(status, line);)
            if (line.starts_with(name)) sum += std::stol(line.substr(name.size()));
    }
    return sum;
}

} // namespace

Usage::Usage(pid_t measured)
    : process(measured),
      begun(secondsOf(CLOCK_MONOTONIC)),
      usedBefore(cpuSeconds(measured)),
      switchesBefore(voluntarySwitches(measured)) {}

double Usage::cpuPercent() const {
    return 100 * (cpuSeconds(process) - usedBefore) / (secondsOf(CLOCK_MONOTONIC) - begun);
}

double Usage::wakeUpsPerSecond() const {
    return static_cast<double>(voluntarySwitches(process) - switchesBefore) /
           (secondsOf(CLOCK_MONOTONIC) - begun);
}

Load::Load(const support::PrivateDesktop& desktop) {
    constexpr int cores = 2;
    for (int i = 0; i < cores; ++i)
        processes.push_back(desktop.spawn("sh", {"-c", "while :; do :; done"}));
}

Load::~Load() = default;

} // namespace bench
