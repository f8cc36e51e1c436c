#include "kwin/PlasmaSession.h"

// The cross-hair's lines, as they are seen.

namespace desktop {
namespace {

struct KWinCrossHair : ShownKWin {
    static bool isRed(const Colour& seen) { return seen.red > seen.green + 50; }

    /// Where a monitor has lines, along one of its rows or columns: "499 500 " for an upright one.
    static std::string redAlong(const Picture& seen, int count, bool isRow, int at) {
        std::string all;
        for (int i = 0; i < count; ++i)
            if (isRed(isRow ? seen.at(i, at) : seen.at(at, i))) all += std::to_string(i) + " ";
        return all;
    }
    static std::string pairBefore(int at) {
        return std::to_string(at - 1) + " " + std::to_string(at) + " ";
    }
    /// What both monitors show: the columns of the first and of the second, and the rows of both.
    std::string lines() const {
        std::string all;
        for (const int monitor : {0, 1}) {
            const Picture seen = picture(monitor);
            all += redAlong(seen, width, true, 20) + "| ";
            for (const int column : {30, width - 30})
                all += redAlong(seen, height, false, column) + "| ";
        }
        return all;
    }
    bool isAt(int x, int y) {
        const std::string upright = pairBefore(x % width) + "| ", across = pairBefore(y) + "| ";
        const bool onLeft = x < width;
        return waitUntil([&] {
            return lines() == (onLeft ? upright : "| ") + across + across +
                                  (onLeft ? "| " : upright) + across + across;
        });
    }
    std::string windows() {
        return kwin->evaluate(
            "workspace.windowList().map(one => String(one.internalId)).sort().join()");
    }

    static constexpr int height = 720;
};

TEST_F(KWinCrossHair, FollowsTheCursorOverBothMonitors) {
    beginShown();
    start({.product = "crosshair"});
    hand->moveTo(500, 500);
    ASSERT_TRUE(isAt(500, 500)) << lines();
    const std::string before = windows();
    for (const auto& [x, y] : {std::pair(300, 200), std::pair(900, 600)}) {
        hand->moveTo(x, y);
        EXPECT_TRUE(isAt(x, y)) << x << ": " << lines();
    }
    EXPECT_EQ(windows(), before) << "they are moved, and not made anew";
    keep("crosshair");
    goTo(width + 400, 100);
    EXPECT_TRUE(isAt(width + 400, 100)) << lines();
    goTo(200, 300);
    EXPECT_TRUE(isAt(200, 300)) << lines();
}

TEST_F(KWinCrossHair, IsSeenInsideTheMonitorAlsoAtItsSides) {
    beginShown();
    start({.product = "crosshair"});
    const std::string across = pairBefore(300) + "| ";
    hand->moveTo(0, 300);
    EXPECT_TRUE(waitUntil([&] {
        return lines() == "0 | " + across + across + "| " + across + across;
    })) << lines();
}

} // namespace
} // namespace desktop
