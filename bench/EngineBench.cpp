#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "platform/memory/MemoryPlatform.h"
#include "testing/Layouts.h"
#include "testing/allocations/Allocations.h"

#include <benchmark/benchmark.h>

// What one pointer event costs the engine, in time and in heap allocations, and what building the
// menu takes, over the platform in memory. Nobody listens to its effects, so nothing is formatted
// and what is counted is the core's.

namespace palisor {
namespace {

struct Program {
    explicit Program(int variant) {
        platform.bundle.set("IDApp", platform::Value{std::int64_t{variant}});
        platform.displays.replace(screensFromLayout("1920x1080+0+0,1280x1024+1920+56"));
        platform.pointer.place({960, 500});
        // Without one the popup would ask for it, and nobody answers.
        platform.settings.edit(keys::customShortcut,
                               platform::Shortcut{40, platform::Shortcut::control}.toValue());
        app.applicationDidFinishLaunching();
    }

    platform::memory::MemoryPlatform platform;
    AppDelegate app{platform.services()};
};

/// Alternates between two points, so that each event is a move.
void run(benchmark::State& state, Program& program, Point a, Point b) {
    const auto event = [&](Point at) {
        program.platform.pointer.place(at);
        Appoggio::onMouseMovedOrClicked(at);
    };
    event(a); // what is made once is made here
    event(b);
    const std::size_t before = support::allocations();
    bool odd = false;
    for (auto _ : state)
        event((odd = !odd) ? a : b);
    const auto counted = static_cast<double>(support::allocations() - before);
    // The sum beside the average: one allocation in a thousand events shows.
    state.counters["allocations"] = counted;
    state.counters["allocations_per_event"] =
        benchmark::Counter(counted, benchmark::Counter::kAvgIterations);
}

void inside(benchmark::State& state) {
    Program program(static_cast<int>(state.range(0)));
    run(state, program, {960, 500}, {961, 501});
}

void outside(benchmark::State& state) {
    Program program(static_cast<int>(state.range(0)));
    program.app.butlato1.state = 1;
    program.app.butlato3.state = 1;
    program.platform.settings.edit(keys::HOT_BOUNDS, platform::Value{"1"});
    if (program.app.IDApp() == variants::barrier)
        run(state, program, {3300, 500}, {3310, 501});
    else // an edge fires again once the cursor has been back inside
        run(state, program, {3199, 500}, {3000, 500});
}

/// The cursor hider, with its idle timer off: what an event costs beside that timer.
void insideWithoutTimer(benchmark::State& state) {
    Program program(variants::cursorHider);
    program.platform.settings.edit(keys::TIME_MODE, platform::Value{false});
    run(state, program, {960, 500}, {961, 501});
}

void menuRebuild(benchmark::State& state) {
    Program program(static_cast<int>(state.range(0)));
    for (auto _ : state)
        program.app.updateMenuItems();
}

BENCHMARK(inside)->ArgName("variant")->Arg(8)->Arg(5)->Arg(1);
BENCHMARK(outside)->ArgName("variant")->Arg(8)->Arg(5)->Arg(1);
BENCHMARK(insideWithoutTimer);
BENCHMARK(menuRebuild)->ArgName("variant")->Arg(8)->Arg(5)->Arg(1);

} // namespace
} // namespace palisor

BENCHMARK_MAIN();
