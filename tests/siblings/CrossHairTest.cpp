#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace desktop {
namespace {

constexpr Colour white{255, 255, 255};
constexpr Colour red{255, 0, 0};

bool isHalfRed(const Colour& colour) {
    const auto isHalf = [](int channel) { return channel >= 126 && channel <= 129; };
    return colour.red == 255 && isHalf(colour.green) && isHalf(colour.blue);
}

struct Lines {
    explicit Lines(const char* layout) : product(layout) {}

    void start() {
        product.start({.product = "crosshair"});
        ASSERT_TRUE(linesFollow()) << product.program->errors();
    }

    /// A line through the cursor across each monitor, and one over the whole height of the desktop.
    bool linesAreAtTheCursor() const {
        const Spot at = product.eye.cursor();
        const auto windows = product.eye.windows();
        const auto isShown = [&](const Area& area) {
            return std::ranges::any_of(windows, [&](const support::SeenWindow& window) {
                return window.mapped && window.overrideRedirect && window.area == area;
            });
        };
        for (const auto& monitor : product.layout)
            if (!isShown({monitor.area.x, at.y - 1, monitor.area.width, 2})) return false;
        const int height = support::boundsOf(product.layout).height;
        return std::ranges::any_of(windows, [&](const support::SeenWindow& window) {
            const Area& area = window.area;
            return window.mapped && window.overrideRedirect && area.x == at.x - 1 &&
                   area.width == 2 && area.y <= 0 && area.y + area.height >= height;
        });
    }
    bool hasOpenWindow() const {
        return std::ranges::any_of(product.eye.windows(), [](const support::SeenWindow& window) {
            return window.mapped && !window.overrideRedirect && !window.inputOnly &&
                   window.area.width >= 400;
        });
    }
    bool linesFollow() const {
        return waitUntil([this] { return linesAreAtTheCursor(); });
    }

    Product product;
};

struct CrossHair : Lines, testing::TestWithParam<const char*> {
    CrossHair() : Lines(GetParam()) {}
};

TEST_P(CrossHair, IsAtTheCursorOnEveryMonitorAfterFastMotion) {
    start();
    const int width = support::boundsOf(product.layout).width;
    for (const int direction : {1, -1, 1}) {
        product.hand.push(7 * direction, direction, width / 2 / 7, mouseRate);
        EXPECT_TRUE(linesFollow()) << product.eye.cursor().x << ", " << product.eye.cursor().y;
    }
}

TEST_P(CrossHair, StandsAtTheCursorFromTheStartAlsoWhileTheProgramHasAWindowOpen) {
    product.moveToMiddle(0);
    // The first start shows a window, which has the events for itself.
    product.spawn({.product = "crosshair", .more = {{"CHECK_0", text("0")}}});
    ASSERT_TRUE(waitUntil([this] { return hasOpenWindow(); })) << product.program->errors();
    EXPECT_TRUE(linesAreAtTheCursor());
    for (std::size_t index = 0; index < product.layout.size(); ++index)
        EXPECT_FALSE(product.isCovered(index)) << index;
}

TEST_P(CrossHair, FollowsWhereAnotherProgramMovesTheCursor) {
    start();
    const support::XConnection other(product.desktop.display());
    for (const std::size_t monitor : {1, 0, 1}) {
        const Spot to = product.middle(monitor);
        xcb_warp_pointer(other.get(), XCB_NONE, other.root(), 0, 0, 0, 0,
                         static_cast<std::int16_t>(to.x + 50), static_cast<std::int16_t>(to.y));
        other.sync();
        EXPECT_TRUE(linesFollow()) << monitor;
    }
}

TEST_P(CrossHair, IsSeenInAPictureAndLetsTheDesktopShowThrough) {
    product.desktop.startWindowManager("openbox");
    product.desktop.startCompositor();
    support::TestWindow paper(product.desktop.display(), product.monitor(0), white);
    start();
    product.hand.push(3, 2, 40, mouseRate);
    ASSERT_TRUE(linesFollow());
    const Spot at = product.eye.cursor();
    EXPECT_TRUE(product.eye.waitUntilSeen([&] {
        return isHalfRed(product.eye.colour(at.x + 100, at.y)) &&
               isHalfRed(product.eye.colour(at.x, at.y + 100)) &&
               product.eye.colour(at.x + 100, at.y + 100) == white;
    }));
}

TEST_P(CrossHair, IsSeenInAPictureWithoutACompositor) {
    support::TestWindow paper(product.desktop.display(), product.monitor(0), white);
    start();
    product.hand.push(3, 2, 40, mouseRate);
    ASSERT_TRUE(linesFollow());
    const Spot at = product.eye.cursor();
    EXPECT_TRUE(waitUntil([&] {
        return product.eye.colour(at.x + 100, at.y) == red &&
               product.eye.colour(at.x + 100, at.y - 1) == red &&
               product.eye.colour(at.x, at.y + 100) == red &&
               product.eye.colour(at.x + 100, at.y + 101) == white;
    }));
}

TEST_P(CrossHair, LetsClicksThroughBeforeAndAfterTheFirstMovement) {
    for (const bool compositor : {false, true}) {
        if (compositor) product.desktop.startCompositor();
        support::TestWindow beneath(product.desktop.display(), product.monitor(0), white);
        start();
        product.hand.click();
        EXPECT_TRUE(beneath.waitForPresses(1)) << "at the start, compositor " << compositor;
        product.hand.push(3, 2, 40, mouseRate);
        ASSERT_TRUE(linesFollow());
        product.hand.click();
        EXPECT_TRUE(beneath.waitForPresses(2)) << "on both lines, compositor " << compositor;
        product.program->end();
    }
}

TEST_P(CrossHair, IsMovedAndNeverMadeAnew) {
    start();
    product.hand.push(1, 1, 1, mouseRate);
    ASSERT_TRUE(linesFollow());
    const auto markers = [&] {
        std::vector<xcb_window_t> found;
        for (const auto& window : product.eye.windows())
            if (window.mapped && window.overrideRedirect) found.push_back(window.id);
        std::ranges::sort(found);
        return found;
    };
    const auto before = markers();
    product.hand.push(5, 2, 60, mouseRate);
    ASSERT_TRUE(linesFollow());
    EXPECT_EQ(markers(), before);
}

INSTANTIATE_TEST_SUITE_P(Layouts, CrossHair,
                         testing::Values("1920x1080+0+0,1280x1024+1920+56",
                                         "1280x1024+1280+0*,1280x800+0+100,1024x768+2560+256"),
                         [](const auto& layout) {
                             return layout.index == 0 ? "TwoMonitors" : "ThreeMonitors";
                         });

TEST(UprightLine, ReachesOverMonitorsAboveAndBelowOfAnyHeight) {
    for (const char* layout :
         {"1280x1024+0+1080*,1920x1080+0+0", "1280x720+0+200*,1920x1600+1280+0",
          "1024x768+0+0,1280x1600+0+768"}) {
        Lines lines(layout);
        lines.start();
        lines.product.hand.push(3, 2, 40, mouseRate);
        EXPECT_TRUE(lines.linesFollow()) << layout;
    }
}

TEST(UprightLine, GrowsWithTheDesktop) {
    Lines lines("1280x1024+0+0,1280x1024+1280+0");
    lines.start();
    lines.product.hand.push(3, 2, 40, mouseRate);
    ASSERT_TRUE(lines.linesFollow());
    lines.product.desktop.setLayout("1280x1024+0+0,1280x2400+1280+0");
    EXPECT_TRUE(waitUntil([&] {
        const auto windows = lines.product.eye.windows();
        return std::ranges::any_of(windows, [](const support::SeenWindow& window) {
            return window.mapped && window.area.width == 2 && window.area.y <= 0 &&
                   window.area.y + window.area.height >= 2400;
        });
    }));
}

} // namespace
} // namespace desktop
