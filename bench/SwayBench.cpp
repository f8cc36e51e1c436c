#include "Table.h"
#include "sway/SwaySession.h"

#include <cmath>
#include <cstdio>

// sway_bench [SECONDS [GROUP...]]: how holding the cursor feels in a sway session and what it
// costs, side by side with the program that does not hold it (--hold off), on a private sway.
// Each is measured for SECONDS (2) at a time on two monitors, by a virtual mouse. A virtual mouse
// counts whole milliseconds, as the X server does.
// "again" counts the tries that were made again because the machine itself stood still in them.

namespace {

using bench::Load;
using bench::longest;
using bench::number;
using bench::rest;
using bench::row;
using bench::seconds;
using bench::Usage;
using desktop::Setting;
using support::Clock;
using support::Witness;

constexpr int edge = 1920; ///< the first column of the right monitor

/// A product on a private sway, with the cursor in the middle of the left monitor.
struct Contest final : desktop::Sway {
    explicit Contest(const Setting& setting) {
        begin({});
        start(setting);
        rest(500);
    }
    void TestBody() override {}

    support::SwayHand& mouse() { return *hand; }
    pid_t process() const { return program->pid(); }
    /// Tells when the cursor is on a monitor, 0 for the left one, whatever lies there.
    std::unique_ptr<Witness> watch(std::size_t monitor) const { return witness(monitor); }
    /// Over the monitor and below all windows: tells of a cursor on it where nothing is dark.
    const Witness& background(std::size_t monitor) const { return *backgrounds[monitor]; }

    /// Puts the cursor there, also where the compositor has yet to carry out what a program without
    /// the hold has asked for.
    void put(int x, int y) {
        support::waitUntil([&] {
            try {
                hand->moveTo(x, y);
                return true;
            } catch (const std::runtime_error&) {
                return false;
            }
        });
    }
    /// To the pixel before the strip, from which the strip is still to be reached. Returns when
    /// nothing of what was before is under way any longer.
    void goNextToEdge(bool onLeft) {
        put(onLeft ? edge - 100 : edge + 100, 500);
        if (!support::waitUntil([&] { return background(onLeft ? 0 : 1).report().isOver; }))
            throw std::runtime_error("the cursor is on another monitor");
        rest(100);
        put(onLeft ? edge - 2 : edge + 1, 500);
    }
    /// To and fro in the middle of the monitor, one pixel an event.
    void moveFreely(double during, int hz) {
        const int each = hz / 20;
        for (int done = 0; done < during * hz; done += 2 * each) {
            hand->push(1, 0, each, hz);
            hand->push(-1, 0, each, hz);
        }
    }
    void pushAgainstEdge(double during, int hz, double speed) {
        hand->push(speed / hz, 0, static_cast<int>(during * hz), hz);
    }
};

// What the program has over the other monitor must see the cursor there to bring it back, so there
// it is the left monitor that tells that it is gone, and not how far.
std::string outside(Contest& contest, bool holds, int hz, double speed, bool isDragging) {
    contest.put(edge - 20, 500);
    const auto other = holds ? contest.watch(1) : nullptr;
    const double insideBefore = contest.background(0).report().seconds;
    const auto begun = Clock::now();
    if (isDragging) contest.mouse().pressButton();
    contest.pushAgainstEdge(seconds, hz, speed);
    const double passed = std::chrono::duration<double>(Clock::now() - begun).count();
    const auto seen = other ? other->report() : Witness::Report{};
    const double inside = contest.background(0).report().seconds - insideBefore;
    if (isDragging) contest.mouse().releaseButton();
    // The window that was pressed is told of all that follows, also beyond its edge; the farthest
    // of all drags so far.
    if (isDragging)
        return number(std::max(0.0, contest.background(0).report().farthestLeft - edge), " px", 0);
    if (!holds) return number(100 * (1 - inside / passed), " %");
    return number(100 * seen.seconds / passed, " %, ") + number(seen.farthestLeft + 1, " px", 0);
}

void outsideRows() {
    Contest held(Setting{}), warped(Setting{.hold = false});
    for (const bool isLoaded : {false, true}) {
        std::optional<Load> load;
        if (isLoaded) load.emplace();
        for (const bool isDragging : {false, true})
            for (const int hz : {125, 1000, 8000})
                for (const double speed : {3'000, 10'000, 30'000})
                    row("outside: share of time, depth, " + std::to_string(hz) + " Hz, " +
                            number(speed, " px/s", 0) + (isDragging ? ", button down" : "") +
                            (isLoaded ? ", cores busy" : ""),
                        "0 %, 0 px",
                        {outside(held, true, hz, speed, isDragging),
                         outside(warped, false, hz, speed, isDragging)});
    }
}

enum class Motion { free, pushing, none };

// With `letsPushesThrough` harder ones than this would cross.
std::string cost(bool holds, Motion motion, int hz, bool letsPushesThrough = false) {
    Contest contest({.pushOption = letsPushesThrough, .velocity = 100, .hold = holds});
    const double speed = 8000;
    if (motion == Motion::pushing) {
        contest.put(edge - 20, 500);
        contest.pushAgainstEdge(0.2, hz, speed);
    }
    if (motion == Motion::none) rest(15000); // what the start has put off
    const Usage usage(contest.process());
    if (motion == Motion::free) contest.moveFreely(seconds, hz);
    if (motion == Motion::pushing) contest.pushAgainstEdge(seconds, hz, speed);
    if (motion == Motion::none) rest(static_cast<int>(std::max(seconds, 30.0) * 1000));
    return number(usage.cpuPercent(), " %") + ", " + number(usage.wakeUpsPerSecond(), "/s", 1);
}

void costRows() {
    for (const int hz : {1000, 8000})
        row("CPU, wake-ups: free motion, " + std::to_string(hz) + " Hz", "0.3 %",
            {cost(true, Motion::free, hz), cost(false, Motion::free, hz)});
    for (const int hz : {1000, 8000})
        row("CPU, wake-ups: pushing, " + std::to_string(hz) + " Hz", "1.5 %",
            {cost(true, Motion::pushing, hz), cost(false, Motion::pushing, hz)});
    for (const int hz : {1000, 8000})
        row("the same where a hard push crosses, " + std::to_string(hz) + " Hz", "1.5 %",
            {cost(true, Motion::pushing, hz, true), cost(false, Motion::pushing, hz, true)});
}

// Ten refreshes of the screens in half a minute.
void idleRow() {
    row("CPU, wake-ups: at rest", "0.33/s",
        {cost(true, Motion::none, 0), cost(false, Motion::none, 0)});
}

/// Pushes from the inner edge of the monitor that the cursor is on, and tells whether it crossed.
bool crosses(Contest& contest, bool& isOnLeft, double speed, int hz) {
    contest.goNextToEdge(isOnLeft);
    contest.mouse().pushAt(isOnLeft ? speed : -speed, 0.25, hz);
    rest(50);
    // Which is not dark any longer.
    const bool crossed = contest.background(isOnLeft ? 1 : 0).report().isOver;
    isOnLeft ^= crossed;
    return crossed;
}

std::string thresholds(int velocity) {
    Contest contest({.pushOption = true, .velocity = velocity});
    bool isOnLeft = true;
    return bench::thresholds(
        velocity, [&](double speed, int hz) { return crosses(contest, isOnLeft, speed, hz); });
}

void thresholdRows() {
    for (const int velocity : {10, 50, 100})
        row("px/s that cross at 125 500 1000 8000 Hz, VELOCITY " + std::to_string(velocity),
            "0.93 to 1.06", {thresholds(velocity)});
}

/// How long it took from the last motion, which `act` makes, to the cursor's being where the
/// witness is; nothing for two seconds and more.
template <class Act>
std::optional<double> milliseconds(const Witness& there, Act&& act) {
    const Clock::time_point begun = act();
    constexpr support::milliseconds limit{2000};
    if (!support::waitUntil([&] { return there.report().entered > 0; }, limit)) return std::nullopt;
    return std::chrono::duration<double, std::milli>(there.report().firstEntered - begun).count();
}

constexpr int tries = 40;

std::string pushLatency(bool isLoaded) {
    Contest contest({.pushOption = true, .velocity = 10});
    std::optional<Load> load;
    if (isLoaded) load.emplace();
    bool onLeft = true;
    return longest(tries, [&](int i) {
        const int towards = onLeft ? 1 : -1;
        contest.goNextToEdge(onLeft);
        const auto there = contest.watch(onLeft ? 1 : 0);
        onLeft = !onLeft;
        return milliseconds(*there, [&] {
            // On the strip, and moving, so that the push comes somewhere in a frame.
            contest.mouse().relative(2 * towards, 0);
            contest.mouse().push(0.01 * towards, 0, 30 + i, 1000);
            const auto now = Clock::now();
            contest.mouse().relative(200 * towards, 0);
            return now;
        });
    });
}

std::string wrapLatency() {
    // So that the cursor comes out where no strip hides it from the witness.
    Contest contest({.product = "orbisant", .more = {{"BUTLATO1", desktop::flag(false)}}});
    return longest(tries, [&](int i) {
        contest.put(edge + 1270, 500);
        rest(100);
        const auto there = contest.watch(0);
        return milliseconds(*there, [&] {
            contest.mouse().push(0, 0.1, 30 + i, 1000);
            const auto now = Clock::now();
            contest.mouse().relative(50, 0);
            return now;
        });
    });
}

void latencyRows() {
    row("from a granted push to the other side", "17 ms", {pushLatency(false)});
    row("the same, both cores busy", "", {pushLatency(true)});
    row("from an edge to the wrap, orbisant", "25 ms", {wrapLatency()});
}

} // namespace

int main(int count, char** arguments) {
    if (const auto reason = support::PrivateSway::missing()) {
        std::printf("%s\n", reason->c_str());
        return 0;
    }
    row("", "required", {"palisor", "palisor --hold off"});
    bench::printGroups(count, arguments,
                       {{"outside", outsideRows},
                        {"cost", costRows},
                        {"idle", idleRow},
                        {"thresholds", thresholdRows},
                        {"latency", latencyRows}});
    return 0;
}
