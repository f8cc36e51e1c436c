#include "Table.h"
#include "gnome/GnomeSession.h"
#include "gnome/Layouts.h"
#include "testing/gnome/ShellWalk.h"

#include <algorithm>
#include <cmath>
#include <sys/resource.h>

// gnome_bench [SECONDS [GROUP...] [LAYOUT...]]: how holding the cursor feels in a GNOME session and
// what it costs, on a private shell whose remote desktop is the mouse, with the shell's own word
// for where the cursor is. Each is measured for SECONDS (2) at a time on two monitors; a walk takes
// SECONDS in each layout, or in those that are named. The shell draws in software here, and it
// takes the mouse's motions from a bus: what that costs is in both numbers that are compared.
// "again" counts the tries that were made again because the machine itself stood still in them.

namespace {

using bench::Load;
using bench::longest;
using bench::median;
using bench::number;
using bench::rest;
using bench::row;
using bench::seconds;
using bench::Usage;
using desktop::Setting;
using support::Area;
using support::Clock;
using support::ShellWitness;
using support::Walk;

constexpr int edge = 1280; ///< the first column of the right monitor
constexpr Area left{0, 0, edge, 720}, right{edge, 0, edge, 720};
constexpr int row300 = 300; ///< a row of pixels far from the panel

/// A private shell, and a product in it.
struct Contest final : desktop::Gnome {
    Contest() { begin(); }
    explicit Contest(const Setting& setting) : Contest() { enter(setting); }
    explicit Contest(const desktop::ShellLayout& layout) { begin(layout.options()); }
    void TestBody() override {}
    using Gnome::hand, Gnome::noneIsDark, Gnome::program, Gnome::shell, Gnome::start, Gnome::veils;

    /// The program starts anew, with the cursor on the left monitor.
    void enter(const Setting& setting) {
        program.reset();
        put(640);
        start(setting);
        rest(500);
    }
    void put(int x) { shell->moveTo(x, row300); }
    void push(int hz, double speed) {
        hand->push(speed / hz, 0, static_cast<int>(seconds * hz), hz);
    }
};

std::string outside(Contest& contest, int hz, double speed, bool isDragging) {
    contest.put(edge - 20);
    const ShellWitness witness(*contest.shell, left);
    const auto begun = Clock::now();
    if (isDragging) contest.hand->button(BTN_LEFT, true);
    contest.push(hz, speed);
    const double passed = std::chrono::duration<double>(Clock::now() - begun).count();
    const auto seen = witness.report();
    if (isDragging) contest.hand->button(BTN_LEFT, false);
    return number(100 * seen.seconds / passed, " %, ") + number(seen.depth, " px, ", 0) +
           number(seconds * hz / passed, " Hz", 0);
}

void outsideRows() {
    row("", "required", {"palisor", "palisor --hold off"});
    Contest held(Setting{}), warped(Setting{.hold = false});
    for (const bool isLoaded : {false, true}) {
        std::optional<Load> load;
        if (isLoaded) load.emplace();
        for (const bool isDragging : {false, true})
            for (const int hz : {125, 1000, 8000})
                for (const double speed : {3'000, 30'000})
                    row("outside: share of time, depth, " + std::to_string(hz) + " Hz, " +
                            number(speed, " px/s", 0) + (isDragging ? ", button down" : "") +
                            (isLoaded ? ", cores busy" : ""),
                        "0 %, 0 px",
                        {outside(held, hz, speed, isDragging),
                         outside(warped, hz, speed, isDragging)});
    }
}

std::vector<std::string_view> named; ///< on the command line

std::vector<desktop::ShellLayout> wantedLayouts() {
    auto all = desktop::shellLayouts();
    const auto isNamed = [](const auto& layout) {
        return std::ranges::find(named, layout.name) != named.end();
    };
    if (std::ranges::any_of(all, isNamed)) std::erase_if(all, std::not_fn(isNamed));
    return all;
}

void walkRows() {
    row("", "required", {"outside", "steps, at an edge, presses"});
    for (const auto& layout : wantedLayouts()) {
        Contest contest(layout);
        arrange(*contest.shell, layout.monitors);
        const auto& wanted = layout.monitors[layout.held];
        Area inside;
        for (const Area& area : areas(*contest.shell))
            if (area.x == wanted.x && area.y == wanted.y) inside = area;
        contest.shell->moveTo(inside.x + inside.width / 2, inside.y + inside.height / 2);
        contest.start();
        const auto end = Clock::now() + std::chrono::duration<double>(seconds);
        const Walk walk = stray(*contest.shell, *contest.hand, inside,
                                [&](const Walk&) { return Clock::now() < end; });
        row("random walk with buttons: " + layout.name, "0, 0 px",
            {std::to_string(walk.outside) + ", " + std::to_string(walk.depth) + " px" +
                 (walk.first.empty() ? "" : ": " + walk.first),
             std::to_string(walk.steps) + ", " + std::to_string(walk.atEdge) + ", " +
                 std::to_string(walk.presses)});
    }
}

enum class Motion { none, free, pushing };

// Pushing, the one without the program is at the end of all monitors.
void move(Contest& contest, Motion motion, int hz) {
    if (motion == Motion::pushing) {
        contest.put(contest.program ? edge - 20 : 2 * edge - 20);
        constexpr double speed = 3000;
        contest.hand->push(speed / hz, 0, hz / 10, hz);
        contest.push(hz, speed);
        return;
    }
    contest.put(640);
    const int each = hz / 20;
    for (int done = 0; motion == Motion::free && done < seconds * hz; done += 2 * each) {
        contest.hand->push(1, 0, each, hz);
        contest.hand->push(-1, 0, each, hz);
    }
    if (motion == Motion::none) rest(static_cast<int>(seconds * 1000));
}

// In turns, so that what else the machine does falls on both.
void costRow(const std::string& what, const std::string& required, const Setting& setting,
             Motion motion, int hz) {
    Contest with(setting), without;
    std::vector<double> ours, bare, own, woken, shellWoken;
    constexpr int rounds = 5;
    for (int round = 0; round < rounds; ++round) {
        const Usage shell(with.shell->pid()), program(with.program->pid());
        move(with, motion, hz);
        ours.push_back(shell.cpuPercent());
        own.push_back(program.cpuPercent());
        woken.push_back(program.wakeUpsPerSecond());
        shellWoken.push_back(shell.wakeUpsPerSecond());
        const Usage alone(without.shell->pid());
        move(without, motion, hz);
        bare.push_back(alone.cpuPercent());
        shellWoken.back() -= alone.wakeUpsPerSecond();
    }
    row("the shell's CPU: " + what, required,
        {number(median(ours) - median(bare), " %"),
         number(median(ours), " % and ") + number(median(bare), " %"), number(median(own), " %"),
         number(median(woken), ", ", 1) + number(median(shellWoken), "", 1)});
}

void costRows() {
    row("", "required",
        {"more with palisor", "with and without", "the program itself",
         "wake-ups/s: its, more of the shell's"});
    const Setting held, pushed{.pushOption = true, .velocity = 100};
    costRow("held, at rest", "3 %", held, Motion::none, 0);
    for (const int hz : {125, 1000})
        costRow("held, free motion, " + std::to_string(hz) + " Hz", "3 %", held, Motion::free, hz);
    for (const int hz : {125, 1000})
        costRow("pushing, " + std::to_string(hz) + " Hz", "10 %", pushed, Motion::pushing, hz);
    costRow("crosshair, free motion, 1000 Hz", "", {.product = "crosshair"}, Motion::free, 1000);
}

/// To the pixel before the edge. Returns when nothing of what was before is under way.
void goNextToEdge(Contest& contest, bool onLeft) {
    contest.put(onLeft ? edge - 100 : edge + 100);
    rest(100);
    contest.put(onLeft ? edge - 2 : edge + 1);
}

void thresholdRows() {
    row("", "required", {"px/s, and their share of what the slider says"});
    for (const int velocity : {10, 50, 100}) {
        Contest contest({.pushOption = true, .velocity = velocity});
        bool isOnLeft = true;
        row("px/s that cross at 125 500 1000 8000 Hz, VELOCITY " + std::to_string(velocity),
            "0.85 to 1.15", {bench::thresholds(velocity, [&](double speed, int hz) {
                goNextToEdge(contest, isOnLeft);
                contest.hand->pushAt(isOnLeft ? speed : -speed, 0.25, hz);
                rest(50);
                const bool crossed = (contest.shell->cursor().x < edge) != isOnLeft;
                isOnLeft ^= crossed;
                return crossed;
            })});
    }
}

/// How long it took from the last motion, which `act` makes, to the cursor's having left the area;
/// nothing for two seconds and more.
template <class Act>
std::optional<double> milliseconds(const Contest& contest, const Area& area, Act&& act) {
    const ShellWitness witness(*contest.shell, area);
    const Clock::time_point begun = act();
    // Each question is a script that the shell reads and runs, and would have the cursor wait.
    rest(100);
    constexpr support::milliseconds limit{2000};
    if (!support::waitUntil([&] { return witness.report().depth > 0; }, limit)) return std::nullopt;
    return std::chrono::duration<double, std::milli>(witness.report().left - begun).count();
}

constexpr int tries = 100;

std::string pushLatency(bool isLoaded) {
    Contest contest({.pushOption = true, .velocity = 10});
    std::optional<Load> load;
    if (isLoaded) load.emplace();
    bool onLeft = true;
    return longest(tries, [&](int i) {
        const int towards = onLeft ? 1 : -1;
        goNextToEdge(contest, onLeft);
        const Area from = onLeft ? left : right;
        onLeft = !onLeft;
        return milliseconds(contest, from, [&] {
            // At the edge, and moving, so that the push comes somewhere in a frame.
            contest.hand->relative(2 * towards, 0);
            contest.hand->push(0.01 * towards, 0, 30 + i, 1000);
            const auto now = Clock::now();
            contest.hand->relative(200 * towards, 0);
            return now;
        });
    });
}

/// From a motion at `from` to the cursor's having left the area, or come there.
std::string motionLatency(Contest& contest, int from, const Area& area) {
    return longest(tries, [&](int i) {
        contest.put(from);
        rest(100);
        return milliseconds(contest, area, [&] {
            contest.hand->push(0, 0.1, 30 + i, 1000);
            const auto now = Clock::now();
            contest.hand->relative(50, 0);
            return now;
        });
    });
}

std::string wrapLatency() {
    Contest contest({.product = "orbisant"});
    return motionLatency(contest, 2 * edge - 10, right);
}

/// What the shell itself takes for each.
std::string freeLatency() {
    Contest contest;
    return motionLatency(contest, edge - 20, left);
}

void latencyRows() {
    row("", "required", {"longest"});
    row("a motion that nothing stops, without palisor", "", {freeLatency()});
    row("from a granted push to the other side", "17 ms", {pushLatency(false)});
    row("the same, both cores busy", "", {pushLatency(true)});
    row("from an edge to the wrap, orbisant", "25 ms", {wrapLatency()});
}

/// Until the cursor leaves again and nothing is dark. `redo` lets the next one begin.
template <class Act, class Redo>
std::string undone(Act&& act, Redo&& redo) {
    Contest contest;
    return longest(10, [&](int) -> std::optional<double> {
        redo(contest);
        contest.enter({});
        contest.put(edge - 20);
        const auto begun = Clock::now();
        act(contest);
        const bool isFree = support::waitUntil([&] {
            contest.hand->relative(1, 0);
            return contest.shell->cursor().x >= edge && contest.veils() == Contest::noneIsDark;
        });
        if (!isFree) return std::nullopt;
        return std::chrono::duration<double, std::milli>(Clock::now() - begun).count();
    });
}

void undoneRows() {
    row("", "required", {"longest"});
    const auto signal = [](int number) {
        return undone([number](Contest& contest) { contest.program->signal(number); },
                      [](Contest&) {});
    };
    const auto script = [](const std::string& act, const std::string& redo) {
        return undone([act](Contest& contest) { contest.shell->run(act); },
                      [redo](Contest& contest) { contest.shell->run(redo); });
    };
    const auto extension = [](const char* does) {
        return std::string("Main.extensionManager.") + does + "Extension('" + desktop::uuid + "')";
    };
    row("from a kill -9 until all is undone", "500 ms", {signal(SIGKILL)});
    row("from a SIGSTOP until all is undone", "2000 ms", {signal(SIGSTOP)});
    row("from disabling the extension until all is undone", "500 ms",
        {script(extension("disable"), extension("enable"))});
    row("from locking until all is undone", "500 ms",
        {script("Main.sessionMode.pushMode('unlock-dialog')",
                "if (Main.sessionMode.currentMode === 'unlock-dialog')"
                "  Main.sessionMode.popMode('unlock-dialog')")});
}

} // namespace

int main(int count, char** arguments) {
    if (const auto reason = support::PrivateShell::missing()) {
        std::printf("%s\n", reason->c_str());
        return 0;
    }
    // What notices that the machine stands still goes before everything else.
    const rlimit first{1, 1};
    setrlimit(RLIMIT_RTPRIO, &first);
    support::becomeAUser();
    named.assign(arguments + std::min(count, 2), arguments + count);
    bench::printGroups(count, arguments,
                       {{"outside", outsideRows},
                        {"walk", walkRows},
                        {"cost", costRows},
                        {"thresholds", thresholdRows},
                        {"latency", latencyRows},
                        {"undone", undoneRows}});
    return 0;
}
