#include "gnome/GnomeSession.h"
#include "gnome/Layouts.h"
#include "testing/gnome/ShellWalk.h"

#include <deque>

namespace desktop {
namespace {

using support::Area;
using support::ShellMonitor;
using support::Walk;

constexpr long longEnough = 1500; ///< steps

class GnomeLayout : public Gnome, public testing::WithParamInterface<ShellLayout> {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateShell::missing()) GTEST_SKIP() << *reason;
    }
    /// With the cursor on the monitor that is to be held.
    Area lay(const ShellLayout& layout) {
        begin(layout.options());
        arrange(*shell, layout.monitors);
        const ShellMonitor& wanted = layout.monitors[layout.held];
        Area area;
        for (const Area& each : areas(*shell))
            if (each.x == wanted.x && each.y == wanted.y) area = each;
        EXPECT_GT(area.width, 0) << "the monitor is elsewhere";
        shell->moveTo(area.x + area.width / 2, area.y + area.height / 2);
        return area;
    }
    Walk walk(const Area& inside, long steps = longEnough) {
        return stray(*shell, *hand, inside, [&](const Walk& now) { return now.steps < steps; });
    }
    void expectInside(const Walk& walk) const {
        EXPECT_EQ(walk.outside, 0) << walk.first << "\n" << program->errors();
        EXPECT_EQ(walk.depth, 0);
        EXPECT_GT(walk.atEdge, walk.steps / 20) << "it did not go to the edges";
        EXPECT_GT(walk.presses, 0);
    }
};

TEST_P(GnomeLayout, KeepsARandomWalkWithButtonsInside) {
    const Area inside = lay(GetParam());
    start();
    expectInside(walk(inside));
}

INSTANTIATE_TEST_SUITE_P(Monitors, GnomeLayout, testing::ValuesIn(shellLayouts()),
                         [](const auto& layout) { return layout.param.name; });

TEST_F(GnomeLayout, ARandomWalkWithoutAHoldLeaves) {
    const Area inside = lay(shellLayouts().front());
    const Walk free = walk(inside);
    EXPECT_GT(free.outside, free.steps / 20) << "the other tests would see nothing";
    EXPECT_GT(free.depth, 100);
}

TEST_F(GnomeLayout, KeepsARandomWalkInsideWhileMonitorsGoAndCome) {
    const ShellLayout all{.name = "",
                          .outputs = {"1280x720", "1280x720", "1280x720"},
                          .monitors = {{{0}, 0, 0}, {{1}, 1280, 0}, {{2}, 0, 720}}};
    const Area inside = lay(all);
    start();
    std::deque<std::vector<ShellMonitor>> changes{{{{0}, 0, 0}, {{1}, 1280, 0}},
                                                  {{{0}, 0, 0}, {{2}, 0, 720}},
                                                  {{{0}, 0, 0}},
                                                  {{{0}, 0, 0}, {{2}, 1280, 0}},
                                                  all.monitors};
    long next = 0;
    expectInside(stray(*shell, *hand, inside, [&](const Walk& now) {
        if (now.steps < next) return true;
        if (changes.empty()) return false;
        arrange(*shell, changes.front());
        changes.pop_front();
        next = now.steps + longEnough / 3;
        return true;
    }));
    EXPECT_TRUE(waitUntil([&] { return othersAreDark(); }));
}

} // namespace
} // namespace desktop
