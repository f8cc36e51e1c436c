#include "testing/desktop/Product.h"

#include <cstdio>
#include <fstream>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

// What the program costs while it does nothing but keep something as it is: the share of one core,
// from the kernel's own account of the process, over a span without any motion. A timer hides the
// cursor anew two hundred times a second then. For comparison the same product switched off, a bare
// process that only wakes as often, which is what this machine takes for that at least, and the
// cross-hair following a fast mouse.

namespace {

using desktop::Product;
using desktop::Setting;

constexpr int spanMs = 20'000;
constexpr double limitPercent = 0.5;

/// Seconds on a processor so far, to the nanosecond.
double processorSeconds(pid_t process) {
    std::ifstream account("/proc/" + std::to_string(process) + "/schedstat");
    double nanoseconds = 0;
    if (!(account >> nanoseconds)) throw std::runtime_error("the program has gone");
    return nanoseconds * 1e-9;
}

long switches(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    long sum = 0;
    for (std::string line; std::getline(status, line);)
        if (line.find("ctxt_switches:") != std::string::npos)
            sum += std::stol(line.substr(line.find(':') + 1));
    return sum;
}

/// The share of a core in percent while `happens` runs.
template <class Happens>
double shareWhile(const char* what, Product& product, Happens happens) {
    const pid_t process = product.program->pid();
    const auto begun = support::Clock::now();
    const double before = processorSeconds(process);
    const long switchesBefore = switches(process);
    happens();
    const std::chrono::duration<double> span = support::Clock::now() - begun;
    const double share = (processorSeconds(process) - before) / span.count() * 100;
    std::printf("%-34s %6.3f %% of a core over %4.1f s, %5.0f wake-ups a second\n", what, share,
                span.count(),
                static_cast<double>(switches(process) - switchesBefore) / span.count());
    (void)std::fflush(stdout);
    return share;
}

void rest() {
    poll(nullptr, 0, spanMs);
}

void printBareWakeUps() {
    constexpr int periodMs = 5;
    const auto begun = support::Clock::now();
    const double before = processorSeconds(getpid());
    for (int tick = 0; tick < spanMs / periodMs; ++tick)
        poll(nullptr, 0, periodMs);
    const std::chrono::duration<double> span = support::Clock::now() - begun;
    std::printf("%-34s %6.3f %% of a core over %4.1f s\n", "bare wake-ups, 200 a second",
                (processorSeconds(getpid()) - before) / span.count() * 100, span.count());
}

Setting hider(bool active) {
    return {.product = "vellumor",
            .active = active,
            .more = {{"SCHEDULE", desktop::text("0")},
                     {"HOT_BOUNDS", desktop::text("0")},
                     {"TIME_MODE", desktop::flag(true)},
                     {"STAY_HIDDEN", desktop::flag(true)}}};
}

double restOf(const char* what, const Setting& setting) {
    Product product;
    product.start(setting);
    poll(nullptr, 0, 2000); // the start is over
    return shareWhile(what, product, rest);
}

} // namespace

int main() {
    restOf("cursor hider, switched off", hider(false));
    const double hidden = restOf("cursor hider, hidden, no motion", hider(true));
    printBareWakeUps();
    std::printf("while hidden it is to be %.1f %% at most: %s\n", limitPercent,
                hidden <= limitPercent ? "kept" : "not kept");
    {
        Product product;
        product.desktop.startCompositor();
        product.start({.product = "crosshair"});
        shareWhile("cross-hair, 1000 Hz, compositor", product, [&] {
            for (int i = 0; i < 10; ++i)
                product.hand.push(i % 2 == 0 ? 1 : -1, 0, 500, 1000);
        });
    }
}
