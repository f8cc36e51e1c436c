#include "testing/desktop/Product.h"
#include "testing/desktop/XConnection.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <poll.h>
#include <stdexcept>

// How long a warm start takes until the barrier stands, and what the program weighs at rest: the
// program itself on a private desktop, from the moment it is started to the moment the server shows
// its first dark window, which it makes when everything else is in place.

namespace desktop {
namespace {

/// Sees windows come on screen, without polling.
class MapWatch {
  public:
    explicit MapWatch(const std::string& display) : x(display) {
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(x.get(), x.root(), XCB_CW_EVENT_MASK, &mask);
        x.sync();
    }

    void waitForOverlay() const {
        bool shown = false;
        const auto look = [&shown](const xcb_generic_event_t& event) {
            if ((event.response_type & 0x7f) == XCB_MAP_NOTIFY)
                shown |=
                    reinterpret_cast<const xcb_map_notify_event_t&>(event).override_redirect != 0;
        };
        if (!x.waitUntil([&shown] { return shown; }, support::generous, look))
            throw std::runtime_error("no dark window came");
    }

  private:
    support::XConnection x;
};

double residentMegabytes(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
    throw std::runtime_error("the program has gone");
}

void warmStart(benchmark::State& state) {
    Product product;
    product.desktop.startWindowManager("openbox");
    product.desktop.startCompositor();
    const MapWatch watch(product.desktop.display());
    double resident = 0;
    for (auto _ : state) {
        const auto begun = std::chrono::steady_clock::now();
        product.spawn();
        watch.waitForOverlay();
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begun;
        state.SetIterationTime(took.count());
        resident = residentMegabytes(product.program->pid());
        product.program->signal(SIGTERM);
        product.program->wait();
    }
    state.counters["resident_MB"] = resident;
}

/// The weight after it has rested for its longest timer period.
void idle(benchmark::State& state) {
    Product product;
    product.start();
    const MapWatch watch(product.desktop.display());
    for (auto _ : state) {
        constexpr int restMs = 4000; // one period of the screen refresh and a second
        poll(nullptr, 0, restMs);
        state.counters["resident_MB"] = residentMegabytes(product.program->pid());
    }
}

BENCHMARK(warmStart)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(15)
    ->ReportAggregatesOnly();
BENCHMARK(idle)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace
} // namespace desktop

BENCHMARK_MAIN();
