#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "platform/json/Parser.h"
#include "platform/linux/http/CurlHttp.h"
#include "platform/linux/system/LinuxSystemInfo.h"
#include "platform/memory/MemoryPlatform.h"
#include "platform/qt/loop/QtRunLoop.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

#include <chrono>

// What the question to the maker's service costs before the start, as the products are shipped,
// with a host that nobody looks for: from the launch to the first thing that the start does, with
// the thread, the real loop that it comes back to, and the facts that it gathers.

namespace {

using platform::Value;

void shippedCheck(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        platform::memory::MemoryPlatform p;
        p.bundle.set("IDApp", Value{std::int64_t{5}});
        p.bundle.set("MakerHost", Value{"service.tamberlo.invalid"});
        p.displays.replace({{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}});
        p.settings.edit(palisor::keys::PRIMOACCESSO, Value{"1"});
        platform::qt::QtRunLoop loop;
        platform::linux::LinuxSystemInfo system("com.example.bench");
        platform::linux::CurlHttp http(p.log);
        platform::json::Parser json;
        palisor::AppDelegate app(platform::Platform{
            p.log,        loop,         p.application, p.bundle,        p.settings,
            p.files,      system,       p.displays,    p.pointer,       p.cursor,
            p.input,      p.keyboard,   p.hotKeys,     p.windows,       p.focus,
            p.workspace,  p.statusItem, p.alerts,      p.notifications, p.sounds,
            p.loginItems, p.power,      p.textCodec,   p.infoWindows,   http,
            json,         p.images,     p.web,         p.calendar});
        std::optional<std::chrono::duration<double>> took;
        const auto begun = std::chrono::steady_clock::now();
        p.effects.setSink([&](const platform::memory::Effect&) {
            if (!took) took = std::chrono::steady_clock::now() - begun;
            loop.stop();
        });
        app.applicationDidFinishLaunching();
        loop.run();
        state.SetIterationTime(took->count());
        p.effects.setSink({});
    }
}
BENCHMARK(shippedCheck)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(30)
    ->ReportAggregatesOnly();

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication toolkit(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
