#include "Meters.h"
#include "bus/Flood.h"
#include "testing/desktop/Product.h"
#include "testing/desktop/Watcher.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <poll.h>

// hold_bench [SECONDS [GROUP]]: what holding the cursor costs and how well it holds, side by side:
// the program, the program without the hold (--hold off), and a bare X client that warps the cursor
// back at every event. Each is measured for SECONDS (2) at a time on two monitors, by XTEST motion;
// whether the cursor gets out, for five times as long.
// "again" counts the tries that were made again because the machine itself stood still in them.

namespace {

using bench::Load;
using bench::Usage;
using desktop::Product;
using desktop::Setting;
using support::Clock;

constexpr const char* layout = "1920x1080+0+0,1280x1080+1920+0";

enum class Way { held, warped, bareWarp, bareDrain, bareSample };

double seconds = 2;

/// One of the contestants on a desktop of its own, with the cursor in the middle of the left one.
struct Contest {
    explicit Contest(Way way, Setting setting = {}, std::vector<std::string> devices = {})
        : product(desktopWith(std::move(devices))) {
        setting.hold = way != Way::warped;
        if (way == Way::held || way == Way::warped) {
            product.start(setting);
            process = product.program->pid();
        } else {
            const char* mode = way == Way::bareWarp    ? "warp"
                               : way == Way::bareDrain ? "drain"
                                                       : "sample";
            product.moveToMiddle(0);
            bare = product.desktop.spawn(BARE_CLIENT, {mode, "0", "0", "1920", "1080"});
            process = bare->pid();
        }
        rest(500);
    }

    static support::PrivateDesktop::Options desktopWith(std::vector<std::string> devices) {
        support::PrivateDesktop::Options options;
        options.layout = layout;
        options.devices = std::move(devices);
        return options;
    }

    static void rest(int milliseconds) { poll(nullptr, 0, milliseconds); }

    /// To and fro in the middle of the monitor, one pixel an event.
    void moveFreely(double during, int hz) {
        const int each = hz / 20;
        for (int done = 0; done < during * hz; done += 2 * each) {
            product.hand.push(1, 0, each, hz);
            product.hand.push(-1, 0, each, hz);
        }
    }

    void pushAgainstEdge(double during, int hz) {
        product.hand.push(8000 / hz, 0, static_cast<int>(during * hz), hz);
    }

    Product product;
    std::unique_ptr<support::ChildProcess> bare;
    pid_t process = 0;
};

std::string number(double value, const char* unit, int digits = 2) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f%s", digits, value, unit);
    return text;
}

void row(const std::string& what, const std::string& required, const std::string& held,
         const std::string& warped = "", const std::string& bare = "") {
    std::printf("%-58s %-14s %-20s %-20s %s\n", what.c_str(), required.c_str(), held.c_str(),
                warped.c_str(), bare.c_str());
    std::fflush(stdout);
}

std::string outside(Way way, int hz, bool loaded) {
    Contest contest(way);
    std::optional<Load> load;
    if (loaded) load.emplace();
    contest.product.moveNextTo(0, 1);
    support::Watcher watcher(contest.product.desktop.display(), contest.product.monitor(0));
    contest.pushAgainstEdge(5 * seconds, hz);
    const auto report = watcher.finish();
    return number(100 * report.shareOutside(), " %") + ", " +
           number(report.farthestOutside, " px", 0);
}

void outsideRows() {
    for (const bool loaded : {false, true})
        for (const int hz : {1000, 8000})
            row("outside: share of time, farthest, " + std::to_string(hz) + " Hz" +
                    (loaded ? ", both cores busy" : ""),
                "0 %, 0 px", outside(Way::held, hz, loaded), outside(Way::warped, hz, loaded),
                outside(Way::bareWarp, hz, loaded));
}

/// By a device that says where the cursor is to be, 125 times a second, on the other monitor.
std::string placedOutside(Way way, const char* device) {
    Contest contest(way, {}, {device});
    Product& product = contest.product;
    if (!product.desktop.hasDevices()) return "no driver";
    const auto pen = product.desktop.device(0);
    support::Watcher watcher(product.desktop.display(), product.monitor(0));
    support::repeat(static_cast<int>(125 * 5 * seconds), 125, [&](int step) {
        const int x = 2300 + step % 7;
        if (device == std::string(support::Device::pen))
            pen->place(x, 500);
        else
            product.hand.moveTo(x, 500); // by XTEST, as the server of a remote desktop does
    });
    return number(100 * watcher.finish().shareOutside(), " %");
}

void placesRows() {
    for (const auto& [what, device] :
         {std::pair{"a pen", support::Device::pen}, {"a remote desktop", support::Device::pointer}})
        row(std::string("outside: share of time, ") + what + ", 125 Hz", "5 %",
            placedOutside(Way::held, device), placedOutside(Way::warped, device),
            placedOutside(Way::bareWarp, device));
}

enum class Motion { free, pushing, none };

std::string cost(Way way, Motion motion, int hz, const Setting& setting = {}) {
    Contest contest(way, setting);
    if (motion == Motion::pushing) {
        contest.product.moveNextTo(0, 1);
        contest.pushAgainstEdge(0.2, hz);
    }
    const Usage usage(contest.process);
    if (motion == Motion::free) contest.moveFreely(seconds, hz);
    if (motion == Motion::pushing) contest.pushAgainstEdge(seconds, hz);
    return number(usage.cpuPercent(), " %") + ", " + number(usage.wakeUpsPerSecond(), "/s", 0);
}

void costRows() {
    for (const int hz : {1000, 8000})
        row("CPU, wake-ups: free motion, " + std::to_string(hz) + " Hz", "1.0 %",
            cost(Way::held, Motion::free, hz), cost(Way::warped, Motion::free, hz),
            cost(Way::bareWarp, Motion::free, hz));
    for (const int hz : {1000, 8000})
        row("CPU, wake-ups: pushing, " + std::to_string(hz) + " Hz", hz == 1000 ? "0.8 %" : "1.5 %",
            cost(Way::held, Motion::pushing, hz), cost(Way::warped, Motion::pushing, hz),
            cost(Way::bareWarp, Motion::pushing, hz));
    for (const auto& [product, required] :
         {std::pair{"vellumor", "1.2 %"}, {"orbisant", "1.2 %"}, {"crosshair", "3 %"}})
        row("CPU, wake-ups: free motion, 8000 Hz, " + std::string(product), required,
            cost(Way::held, Motion::free, 8000, {.product = product}));
    row("a bare client, free motion, 8000 Hz: drained, sampled", "",
        cost(Way::bareDrain, Motion::free, 8000), cost(Way::bareSample, Motion::free, 8000));
}

void idleRow() {
    const auto idle = [](Way way) {
        Contest contest(way);
        const Usage usage(contest.process);
        Contest::rest(static_cast<int>(std::max(seconds, 9.0) * 1000)); // three refreshes
        return number(usage.wakeUpsPerSecond(), "/s");
    };
    row("wake-ups at rest", "1/s", idle(Way::held), idle(Way::warped), idle(Way::bareWarp));
}

/// Pushes from the inner edge of the monitor that the cursor is on, and tells whether it crossed.
bool crosses(Product& product, double speed, int hz) {
    const bool onLeft = product.cursorIsOn(0);
    product.hand.moveTo(onLeft ? 1918 : 1921, 500);
    Contest::rest(120);
    product.hand.pushAt(onLeft ? speed : -speed, 0.25, hz);
    Contest::rest(50);
    return product.cursorIsOn(onLeft ? 1 : 0);
}

/// The same, again where the machine stood still: then the hand moves in leaps afterwards.
bool crossesEvenly(Product& product, double speed, int hz, bench::Standstills& standstills) {
    constexpr int most = 10;
    for (int i = 0;; ++i) {
        standstills.takeAny();
        const bool crossed = crosses(product, speed, hz);
        if (!standstills.takeAny() || i == most) return crossed;
    }
}

/// The speed at which most of a few pushes cross. A slow hand's pixels fall into frames as it
/// happens, so that one push near the threshold tells little.
std::string thresholds(Way way, int velocity) {
    Contest contest(way, {.pushOption = true, .velocity = velocity});
    bench::Standstills standstills;
    const auto mostCross = [&](double speed, int hz) {
        int crossed = 0;
        for (int i = 0; i < 5 && crossed < 3 && i - crossed < 3; ++i)
            crossed += crossesEvenly(contest.product, speed, hz, standstills) ? 1 : 0;
        return crossed == 3;
    };
    const double expected = 60 * 0.03 * velocity * velocity;
    std::string text;
    for (const int hz : {35, 40, 50, 60, 125, 500, 1000, 8000}) {
        double below = 0.3 * expected, above = 2 * expected;
        for (int i = 0; i < 7; ++i) {
            const double middle = (below + above) / 2;
            (mostCross(middle, hz) ? above : below) = middle;
        }
        text += number((below + above) / 2, " ", 0);
    }
    return text;
}

void thresholdRows() {
    for (const int velocity : {10, 50, 100})
        row("px/s that cross at 35 40 50 60 125 500 1000 8000 Hz, VELOCITY " +
                std::to_string(velocity),
            "within 15 %", thresholds(Way::held, velocity), thresholds(Way::warped, velocity));
}

/// How long it takes from an event to the cursor's being there; nothing for two seconds and more.
template <class Act, class Arrived>
std::optional<double> milliseconds(Act&& act, Arrived&& arrived) {
    act();
    const auto begun = Clock::now();
    while (!arrived())
        if (Clock::now() - begun > std::chrono::seconds(2)) return std::nullopt;
    return std::chrono::duration<double, std::milli>(Clock::now() - begun).count();
}

/// The longest of several times. A try in which the machine stood still is made again.
template <class Act, class Arrived>
std::string longest(int tries, Act&& act, Arrived&& arrived) {
    std::vector<double> times;
    int repeated = 0;
    bench::Standstills standstills;
    while (static_cast<int>(times.size()) < tries) {
        const int done = static_cast<int>(times.size());
        standstills.takeAny();
        const auto time = milliseconds([&] { act(done); }, arrived);
        const bool counts = !standstills.takeAny() || repeated == tries;
        if (!counts) {
            ++repeated;
            continue;
        }
        if (!time) return "never";
        times.push_back(*time);
    }
    std::sort(times.begin(), times.end());
    return number(times.back(), " ms", 1) + " (median " + number(times[times.size() / 2], ")", 1) +
           (repeated > 0 ? " " + std::to_string(repeated) + " again" : "");
}

void latencyRows() {
    constexpr int tries = 40;
    const auto push = [](Way way) {
        Contest contest(way, {.pushOption = true, .velocity = 10});
        Product& product = contest.product;
        std::size_t target = 1;
        const auto act = [&](int i) {
            target = product.cursorIsOn(0) ? 1 : 0;
            const int towards = target == 1 ? 1 : -1;
            product.hand.moveTo(1920 - 120 * towards, 500);
            // Moving already, so that the event comes somewhere in a frame; sideways, as a push is.
            product.hand.push(towards, 0, 30 + i, 1000);
            product.hand.relative(200 * towards, 0);
        };
        return longest(tries, act, [&] {
            return product.cursorIsOn(target) && std::abs(product.eye.cursor().x - 1920) > 5;
        });
    };
    row("from a granted push to the other side", "17 ms", push(Way::held), push(Way::warped));

    const auto wrap = [] {
        Contest contest(Way::held, {.product = "orbisant"});
        Product& product = contest.product;
        const auto act = [&](int i) {
            product.hand.moveTo(3190, 500);
            product.hand.push(0, 1, 30 + i, 1000);
            product.hand.relative(50, 0);
        };
        return longest(tries, act, [&] { return product.eye.cursor().x < 100; });
    };
    row("from an edge to the wrap, orbisant", "17 ms", wrap());

    const auto follow = [] {
        Contest contest(Way::held, {.product = "crosshair"});
        Product& product = contest.product;
        int x = 0;
        const auto act = [&](int i) {
            product.hand.push(i % 2 == 0 ? 1 : -1, 0, 30 + i, 1000);
            product.hand.relative(i % 2 == 0 ? 100 : -100, 0);
            x = product.eye.cursor().x;
        };
        return longest(tries, act, [&] {
            return std::ranges::any_of(product.eye.windows(), [&](const auto& window) {
                return window.mapped && window.area.x == x - 1 && window.area.width == 2;
            });
        });
    };
    row("from a motion to the marker at the cursor, crosshair", "17 ms", follow());
}

/// How long the cursor that a mouse has moved across the edge is there, while somebody asks the
/// program that many times a second over the bus.
std::string putBack(double callsASecond) {
    Contest contest(Way::warped);
    Product& product = contest.product;
    std::optional<desktop::Flood> flood;
    if (callsASecond > 0) {
        flood.emplace(product.desktop.environment().at("DBUS_SESSION_BUS_ADDRESS"), callsASecond);
        desktop::waitUntil([&] { return flood->answered > 1000; });
    }
    constexpr int tries = 40;
    const auto act = [&](int i) {
        product.moveNextTo(0, 1);
        Contest::rest(i % 17); // so that the event comes somewhere in a frame
        product.hand.relative(60, 0);
    };
    const int before = flood ? flood->answered.load() : 0;
    const auto begun = Clock::now();
    const std::string text = longest(tries, act, [&] { return product.cursorIsOn(0); });
    if (!flood) return text;
    const double passed = std::chrono::duration<double>(Clock::now() - begun).count();
    return text + ", " + number((flood->answered - before) / passed, " answered a second", 0);
}

void floodRows() {
    row("from the other side to the put-back", "17 ms", "", putBack(0));
    row("the same, 10000 calls a second over the bus", "17 ms more", "", putBack(10'000));
}

} // namespace

int main(int count, char** arguments) {
    constexpr std::pair<std::string_view, void (*)()> groups[] = {
        {"outside", outsideRows}, {"places", placesRows},        {"cost", costRows},
        {"idle", idleRow},        {"thresholds", thresholdRows}, {"latency", latencyRows},
        {"flood", floodRows}};
    if (count > 1) seconds = std::atof(arguments[1]);
    const std::string_view wanted = count > 2 ? arguments[2] : "";
    row("", "required", "palisor", "palisor --hold off", "bare client, warps");
    for (const auto& [name, print] : groups)
        if (wanted.empty() || wanted == name) print();
    return 0;
}
