#include "layershell/LayerShellSession.h"
#include "testing/layershell/ShownWorkspace.h"

#include <cmath>

// The products with armed edges: the wrap-around, and the desktop switcher.

namespace desktop {
namespace {

constexpr int displayRate = 125;
constexpr int farRight = PrivateCompositor::leftWidth + PrivateCompositor::rightWidth - 1;

Setting wrapping(std::initializer_list<int> armed) {
    return {.product = "orbisant", .more = armedSides(armed)};
}

struct LayerShellEdges : LayerShell {
    /// The cursor is over the monitor's background, at that place.
    bool comesOut(std::size_t monitor, Spot at) const {
        return waitUntil([&] {
            const auto seen = backgrounds[monitor]->report();
            return seen.isOver && std::floor(seen.lastX) == at.x && std::floor(seen.lastY) == at.y;
        });
    }
    bool isOver(std::size_t monitor) const {
        return waitUntil([&] { return backgrounds[monitor]->report().isOver; });
    }
    std::string seen(std::size_t monitor) const {
        const auto report = backgrounds[monitor]->report();
        return std::to_string(report.lastX) + ", " + std::to_string(report.lastY) + "\n" +
               program->errors();
    }
};

/// An edge and where the cursor comes out.
struct Case {
    int side;  ///< the armed one: 1 left, 2 top, 3 right, 4 bottom
    Spot from; ///< layout coordinates, so that the seventh step ends on the last pixel
    Spot step;
    std::size_t monitor; ///< where it comes out
    Spot out;            ///< on that monitor
};

TEST_P(LayerShellEdges, LeadRoundTheDesktopToTheOppositeSide) {
    constexpr int right = PrivateCompositor::rightWidth - 1;
    constexpr int bottom = PrivateCompositor::leftHeight - 1;
    for (const Case& edge : {Case{3, {farRight - 49, 500}, {7, 0}, 0, {0, 500}},
                             Case{1, {49, 500}, {-7, 0}, 1, {right, 500}},
                             Case{2, {960, 49}, {0, -7}, 0, {960, bottom}},
                             Case{4, {2500, 974}, {0, 7}, 1, {580, 0}}}) {
        SCOPED_TRACE(edge.side);
        program.reset();
        backgrounds.clear();
        start(wrapping({edge.side}));
        moveTo(edge.from.x, edge.from.y);
        hand->push(edge.step.x, edge.step.y, 7, displayRate);
        ASSERT_TRUE(comesOut(edge.monitor, edge.out)) << seen(edge.monitor);
        // The hand goes on, and is not thrown back.
        hand->push(edge.step.x, edge.step.y, 10, displayRate);
        EXPECT_TRUE(
            comesOut(edge.monitor, {edge.out.x + 10 * edge.step.x, edge.out.y + 10 * edge.step.y}))
            << seen(edge.monitor);
    }
}

TEST_P(LayerShellEdges, AreEndsOfTheDesktopWhereTheyAreNotArmed) {
    start(wrapping({1}));
    moveTo(farRight - 49, 500);
    hand->push(7, 0, 20, displayRate);
    EXPECT_TRUE(comesOut(1, {PrivateCompositor::rightWidth - 1, 500})) << seen(1);
}

TEST_P(LayerShellEdges, WantAPushWhereThatIsSet) {
    start({.product = "orbisant", .pushOption = true, .more = armedSides({3})});
    moveTo(farRight - 49, 500);
    hand->push(1, 0, 120, displayRate);
    hand->push(-30, 0, 5, displayRate);
    EXPECT_TRUE(isOver(1)) << "a slow hand stays where it is";
    EXPECT_FALSE(backgrounds[0]->report().isOver);
    hand->push(30, 0, 60, mouseRate);
    EXPECT_TRUE(isOver(0)) << seen(0);
}

class TellingCompositor : public LayerShellEdges {
  protected:
    static constexpr const char* names[] = {"Workspace 1", "Workspace 2", "Workspace 3"};

    void SetUp() override {
        LayerShellEdges::SetUp();
        if (IsSkipped()) return;
        try {
            workspace.emplace(compositor->socket());
        } catch (const std::runtime_error& reason) {
            GTEST_SKIP() << reason.what();
        }
        ASSERT_EQ(workspace->name(), names[0]);
    }
    bool shows(int number) const {
        return waitUntil([&] { return workspace->name() == names[number - 1]; });
    }
    void pushAtAnEnd(int direction) {
        moveTo(960, 500);
        moveTo(direction > 0 ? farRight - 49 : 49, 500);
        hand->push(7 * direction, 0, 7, displayRate);
        hand->push(-20 * direction, 0, 3, displayRate);
    }

    std::optional<support::ShownWorkspace> workspace;
};

TEST_P(TellingCompositor, ShowsTheNextWorkspaceOnceAPushAndEndsAtTheLastOne) {
    start({.product = "quenlow"});
    EXPECT_NE(told({"status"}).find("can workspaces: yes\n"), std::string::npos);
    for (const int expected : {2, 3, 3}) {
        pushAtAnEnd(1);
        EXPECT_TRUE(shows(expected)) << workspace->name() << program->errors();
    }
    for (const int expected : {2, 1, 1}) {
        pushAtAnEnd(-1);
        EXPECT_TRUE(shows(expected)) << workspace->name() << program->errors();
    }
}

TEST_P(TellingCompositor, IsLeftAloneWhileTheProductIsSwitchedOff) {
    start({.product = "quenlow", .active = false});
    pushAtAnEnd(1);
    told({"on"});
    pushAtAnEnd(1);
    EXPECT_TRUE(shows(2)) << "and not one further";
}

INSTANTIATE_TEST_SUITE_P(On, TellingCompositor, testing::Values("labwc"));
INSTANTIATE_TEST_SUITE_P(On, LayerShellEdges, testing::Values("labwc", "wayfire"),
                         [](const auto& row) { return std::string(row.param); });

} // namespace
} // namespace desktop
