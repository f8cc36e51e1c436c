#include "KWinContest.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

// kwin_bench [SECONDS [GROUP...]]: how holding the cursor feels in a KWin session and what it
// costs, side by side with the program that does not hold it (--hold off), on a private KWin. Each
// is measured for SECONDS (2) at a time on two monitors, by a pointer of KWin's own for emulated
// input. KWin itself tells when the cursor was where, in whole milliseconds.
// "again" counts the tries that were made again because the machine itself stood still in them.

namespace {

using bench::Contest;
using bench::edge;
using bench::Load;
using bench::longest;
using bench::median;
using bench::now;
using bench::number;
using bench::Outside;
using bench::outsideSince;
using bench::rest;
using bench::row;
using bench::seconds;
using bench::Usage;
using desktop::Setting;

std::string outside(Contest& contest, int hz, double speed, bool isDragging) {
    contest.mouse().moveTo(edge - 20, 500);
    contest.reaches(0);
    const auto mark = contest.mark();
    const double begun = now();
    if (isDragging) contest.mouse().pressButton();
    contest.pushAgainstEdge(seconds, hz, speed);
    const double ended = now();
    if (isDragging) contest.mouse().releaseButton();
    contest.mouse().moveTo(640, 360); // so that KWin tells how far it was
    contest.reaches(0);
    const auto [milliseconds, depth] = outsideSince(contest, mark, ended);
    return number(100 * milliseconds / (ended - begun), " %, ") + number(depth, " px", 0);
}

void outsideRows() {
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

enum class Motion { free, pushing, none };

/// What a contestant costs, a figure a slice: percent of a core, and wake-ups a second.
struct Costs {
    std::vector<double> own, wakeUps, compositor;
};

void measure(Contest& contest, bool hasProgram, Motion motion, int hz, Costs& costs) {
    constexpr double speed = 8000;
    contest.mouse().moveTo(motion == Motion::pushing ? edge - 20 : 640, 500);
    if (motion == Motion::pushing) contest.pushAgainstEdge(0.2, hz, speed);
    rest(200);
    std::optional<Usage> own;
    if (hasProgram) own.emplace(contest.process());
    const Usage compositor(contest.compositor());
    if (motion == Motion::free) contest.moveFreely(seconds, hz);
    if (motion == Motion::pushing) contest.pushAgainstEdge(seconds, hz, speed);
    if (motion == Motion::none) rest(static_cast<int>(std::max(seconds, 9.0) * 1000));
    costs.compositor.push_back(compositor.cpuPercent());
    if (!own) return;
    costs.own.push_back(own->cpuPercent());
    costs.wakeUps.push_back(own->wakeUpsPerSecond());
}

/// Of the program, and of KWin, which alone draws and reads the mouse: medians of slices that the
/// contestants take in turn, each on a KWin of its own, and how much more than the KWin without a
/// program it is.
void costRow(const std::string& what, const std::string& required, const Setting& setting,
             Motion motion, int hz) {
    Setting off = setting;
    off.hold = false;
    const std::optional<Setting> settings[] = {setting, off, std::nullopt};
    std::vector<std::unique_ptr<Contest>> contests;
    for (const auto& one : settings)
        contests.push_back(std::make_unique<Contest>(one, false));
    Costs costs[std::size(settings)];
    const int slices = motion == Motion::none ? 3 : 5;
    for (int slice = 0; slice < slices; ++slice)
        for (std::size_t i = 0; i < contests.size(); ++i)
            measure(*contests[i], settings[i].has_value(), motion, hz, costs[i]);
    const auto cell = [&](const Costs& of) {
        const double alone = median(std::end(costs)[-1].compositor), all = median(of.compositor);
        const std::string compositor = "KWin " + number(all, " %");
        if (of.own.empty()) return compositor;
        return number(median(of.own), " %, ") + number(median(of.wakeUps), "/s, ", 1) + compositor +
               (all < alone ? " (" : " (+") + number(all - alone, ")");
    };
    row("CPU, wake-ups: " + what, required, {cell(costs[0]), cell(costs[1]), cell(costs[2])});
}

void costRows() {
    costRow("free motion, 1000 Hz, palisor", "KWin 0 more", {}, Motion::free, 1000);
    costRow("free motion, 1000 Hz, palisor, pushes cross", "KWin 0 more", {.pushOption = true},
            Motion::free, 1000);
    costRow("free motion, 8000 Hz, palisor", "0.3 %", {}, Motion::free, 8000);
    for (const int hz : {1000, 8000})
        costRow("pushing, " + std::to_string(hz) + " Hz", "1.5 %", {}, Motion::pushing, hz);
}

void followRows() {
    for (const char* product : {"crosshair", "vellumor"})
        costRow("free motion, 1000 Hz, " + std::string(product), "KWin 3 % more",
                {.product = product}, Motion::free, 1000);
}

// Three refreshes of the screens in nine seconds.
void idleRow() {
    costRow("at rest", "0.33/s", {}, Motion::none, 0);
}

/// Pushes from the inner edge of the monitor that the cursor is on, and tells whether it crossed. A
/// push that came late is made again: its hand moves in leaps.
bool crosses(Contest& contest, double speed, int hz) {
    const double tooLate = hz <= 125 ? 0.0005 : 0.002;
    constexpr int most = 10;
    for (int i = 0;; ++i) {
        const bool onLeft = contest.side() == 0;
        contest.goNextToEdge(onLeft);
        const double late = contest.mouse().pushAt(onLeft ? speed : -speed, 0.25, hz);
        rest(50);
        if (late < tooLate || i == most) return contest.side() == (onLeft ? 1 : 0);
    }
}

void thresholdRows() {
    for (const int velocity : {10, 50, 100}) {
        Contest contest(Setting{.pushOption = true, .velocity = velocity});
        row("px/s that cross at 125 500 1000 8000 Hz, VELOCITY " + std::to_string(velocity),
            "0.85 to 1.15", {bench::thresholds(velocity, [&](double speed, int hz) {
                return crosses(contest, speed, hz);
            })});
    }
}

/// From a time to the cursor's being on another monitor, rounded up.
std::optional<double> arrival(Contest& contest, std::size_t mark, int side, double begun) {
    if (!contest.reaches(side)) return std::nullopt;
    for (auto& line : contest.linesFrom(mark, "side")) {
        int reached = 0;
        double when = 0;
        line >> reached >> when;
        if (reached == side) return when + 1 - begun;
    }
    return std::nullopt;
}

constexpr int tries = 40;

std::string pushLatency(bool isLoaded) {
    Contest contest(Setting{.pushOption = true, .velocity = 10});
    std::optional<Load> load;
    if (isLoaded) load.emplace();
    return longest(tries, [&](int i) {
        const bool onLeft = contest.side() == 0;
        const int towards = onLeft ? 1 : -1;
        contest.goNextToEdge(onLeft);
        const auto mark = contest.mark();
        // On the strip, and moving, so that the push comes somewhere in a frame.
        contest.mouse().relative(2 * towards, 0);
        contest.mouse().push(0.01 * towards, 0, 30 + i, 1000);
        const double begun = now();
        contest.mouse().relative(200 * towards, 0);
        return arrival(contest, mark, onLeft ? 1 : 0, begun);
    });
}

std::string wrapLatency() {
    Contest contest(Setting{.product = "orbisant"});
    return longest(tries, [&](int i) {
        contest.goTo(edge + edge - 10, 500);
        if (!contest.reaches(1)) throw std::runtime_error("the cursor is on another monitor");
        rest(100);
        const auto mark = contest.mark();
        contest.mouse().push(0, 0.1, 30 + i, 1000);
        const double begun = now();
        contest.mouse().relative(50, 0);
        return arrival(contest, mark, 0, begun);
    });
}

void latencyRows() {
    row("from a granted push to the other side", "17 ms", {pushLatency(false)});
    row("the same, both cores busy", "", {pushLatency(true)});
    row("from an edge to the wrap, orbisant", "25 ms", {wrapLatency()});
}

/// KWin's word for what the program keeps, at one time.
struct State {
    std::string cause;
    double when = 0;
    int isUsers = 0, windows = 0;
};
std::vector<State> statesSince(const Contest& contest, std::size_t mark) {
    std::vector<State> states;
    for (auto& line : contest.linesFrom(mark, "state")) {
        State& one = states.emplace_back();
        line >> one.cause >> one.when >> one.isUsers >> one.windows;
    }
    return states;
}

/// From the kill of the program until the user's barrier is in force and no layer is left.
void killRow() {
    row("from kill -9 until all is back", "500 ms", {longest(10, [](int) -> std::optional<double> {
            Contest contest(Setting{});
            const int before = statesSince(contest, 0).front().windows;
            const auto mark = contest.mark();
            const double begun = now();
            contest.product().signal(SIGKILL);
            std::optional<double> back;
            support::waitUntil([&] {
                const auto states = statesSince(contest, mark);
                if (states.empty()) return false;
                const State& last = states.back();
                if (last.isUsers && last.windows == before) back = last.when + 1 - begun;
                return back.has_value();
            });
            return back;
        })});
}

/// Changes something while the mouse pushes without a pause, if it is to, and tells for how long
/// the barrier was open, since the first change of the outputs where they change, and how long and
/// how far the cursor was outside.
template <class Change>
std::string heldAgain(Contest& contest, bool isPushing, Change&& change) {
    contest.mouse().moveTo(isPushing ? edge - 20 : 640, 400);
    const auto mark = contest.mark();
    const auto done = change();
    const double during = std::max(2.0, seconds);
    if (isPushing)
        contest.pushAgainstEdge(during, 1000, 3000);
    else
        rest(static_cast<int>(during * 1000));
    if (done) done->wait();
    const double ended = now();
    std::optional<double> since;
    double until = 0;
    bool isOpen = false;
    for (const State& state : statesSince(contest, mark)) {
        isOpen = state.isUsers;
        if (!since && (isOpen || state.cause == "outputs")) since = state.when;
        if (since && state.cause == "barrier") until = state.when;
    }
    const double open = since ? std::max(0.0, until - *since) : 0;
    const Outside outside = outsideSince(contest, mark, ended);
    return (isOpen ? "stays open" : number(open, " ms", 0)) + ", outside " +
           number(outside.milliseconds, " ms, ", 0) + number(outside.depth, " px", 0);
}

/// From when KWin tells that its screen is unlocked until the cursor is held.
void unlockedRow() {
    Contest contest(Setting{}, true, {.locks = true});
    support::LoginManager& login = *contest.desktop().login();
    const auto becomes = [&](bool isLocked, std::size_t mark) {
        return support::waitUntil([&] {
            const auto states = statesSince(contest, mark);
            return login.isLocked() == isLocked && !states.empty() &&
                   states.back().isUsers == isLocked;
        });
    };
    row("held again after the screen was unlocked", "300 ms",
        {longest(10, [&](int) -> std::optional<double> {
            auto mark = contest.mark();
            login.lock();
            if (!becomes(true, mark)) return std::nullopt;
            rest(500);
            mark = contest.mark();
            login.unlock();
            if (!support::waitUntil([&] { return !login.isLocked(); })) return std::nullopt;
            const double begun = now();
            if (!becomes(false, mark)) return std::nullopt;
            return std::max(0.0, statesSince(contest, mark).back().when + 1 - begun);
        })});
}

void againRows() {
    Contest contest(Setting{});
    using Changed = std::unique_ptr<support::ChildProcess>;
    const auto set = [&](const std::string& what) -> Changed {
        return contest.desktop().spawn("kscreen-doctor", {"output.Virtual-1." + what});
    };
    const auto print = [&](const std::string& what, bool isPushing,
                           const std::function<Changed()>& change) {
        row("held again after " + what, "300 ms", {heldAgain(contest, isPushing, change)});
    };
    print("a reconfiguration", true, [&]() -> Changed {
        contest.desktop().call({"/KWin", "org.kde.KWin", "reconfigure"});
        return nullptr;
    });
    print("another script's barrier", true, [&]() -> Changed {
        contest.desktop().evaluate("options.edgeBarrier = 5");
        return nullptr;
    });
    set("disable")->wait();
    rest(500);
    // Who pushes then is on the other one before the program has heard of it, and is held there.
    print("the other output has come back", false, [&] { return set("enable"); });
    print("it was moved", true, [&] { return set("position.1280,200"); });
    print("it was scaled", true, [&] { return set("scale.1.5"); });
    unlockedRow();
}

} // namespace

int main(int count, char** arguments) {
    support::becomeAUser();
    if (const auto reason = support::PrivateKWin::missing()) {
        std::printf("%s\n", reason->c_str());
        return 0;
    }
    row("", "required", {"palisor", "palisor --hold off", "no program"});
    bench::printGroups(count, arguments,
                       {{"outside", outsideRows},
                        {"cost", costRows},
                        {"follow", followRows},
                        {"idle", idleRow},
                        {"thresholds", thresholdRows},
                        {"latency", latencyRows},
                        {"kill", killRow},
                        {"again", againRows}});
    return 0;
}
