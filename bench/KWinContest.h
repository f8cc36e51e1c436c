#pragma once

#include "Table.h"
#include "kwin/KWinSession.h"

#include <cmath>

namespace bench {

using std::chrono::system_clock;

constexpr int edge = desktop::width; ///< the first column of the right monitor

/// Milliseconds of the clock that scripts have.
inline double now() {
    return std::chrono::duration<double, std::milli>(system_clock::now().time_since_epoch())
        .count();
}

/// A product on a private KWin, or nothing, with the cursor in the middle of the left monitor.
struct Contest final : desktop::KWin {
    explicit Contest(const std::optional<desktop::Setting>& setting, bool isWatched = true,
                     const support::PrivateKWin::Options& options = {}) {
        begin(options);
        if (isWatched) watch();
        if (setting) start(*setting);
        rest(500);
    }
    void TestBody() override {}

    using KWin::goTo;
    support::KWinHand& mouse() { return *hand; }
    pid_t process() const { return program->pid(); }
    pid_t compositor() const { return kwin->pid(); }
    support::PrivateKWin& desktop() { return *kwin; }
    support::ChildProcess& product() { return *program; }

    /// From now on KWin tells what `linesFrom` returns.
    void watch() {
        std::ifstream file(METER_FILE);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        kwin->load("const edge = " + std::to_string(edge) + ";\n" + text);
        if (!support::waitUntil([&] { return kwin->log().find("meter state") != npos; }))
            throw std::runtime_error("the meter does not run: " + kwin->log());
    }

    std::size_t mark() const { return kwin->log().size(); }
    /// What was told behind a mark, from the mark's first line of that kind on.
    std::vector<std::istringstream> linesFrom(std::size_t from, const std::string& kind) const {
        std::vector<std::istringstream> found;
        const std::string all = kwin->log(), begin = "meter " + kind + " ";
        for (auto at = all.find(begin, from); at != npos; at = all.find(begin, at + 1))
            found.emplace_back(all.substr(at + begin.size(), all.find('\n', at) - at));
        return found;
    }

    int side() const {
        int last = 0;
        const std::string all = kwin->log(), begin = "meter side ";
        if (const auto at = all.rfind(begin); at != npos) last = all[at + begin.size()] - '0';
        return last;
    }
    bool reaches(int monitor) {
        return support::waitUntil([&] { return side() == monitor; }, support::milliseconds(2000));
    }

    /// To the pixel before the strip, from which the strip is still to be reached. Returns when
    /// nothing of what was before is under way any longer.
    void goNextToEdge(bool onLeft) {
        hand->moveTo(onLeft ? edge - 100 : edge + 100, 500);
        if (!reaches(onLeft ? 0 : 1)) throw std::runtime_error("the cursor is on another monitor");
        rest(100);
        hand->moveTo(onLeft ? edge - 2 : edge + 1, 500);
    }
    /// To and fro in the middle of the monitor, one pixel an event.
    void moveFreely(double during, int hz) {
        const int each = hz / 20;
        for (int done = 0; done < during * hz; done += 2 * each) {
            hand->push(1, 0, each, hz);
            hand->push(-1, 0, each, hz);
        }
    }
    void pushAgainstEdge(double during, int hz, double speed) { hand->pushAt(speed, during, hz); }

    static constexpr auto npos = std::string::npos;
};

/// Where the cursor was on the other monitor since the mark, up to now, and how far.
struct Outside {
    double milliseconds = 0, depth = 0;
};
inline Outside outsideSince(const Contest& contest, std::size_t mark, double end) {
    Outside sum;
    std::optional<double> left;
    for (auto& line : contest.linesFrom(mark, "side")) {
        int side = 0;
        double when = 0, depth = 0;
        line >> side >> when >> depth;
        if (side == 1)
            left = when;
        else if (left)
            sum.milliseconds += when - *std::exchange(left, std::nullopt);
        if (side == 0) sum.depth = std::max(sum.depth, depth);
    }
    if (left) sum.milliseconds += std::max(0.0, end - *left);
    return sum;
}

} // namespace bench
