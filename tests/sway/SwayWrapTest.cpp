#include "sway/SwaySession.h"

#include <cmath>

// The wrap-around product: strips along the armed sides of the desktop tell it where the cursor is.

namespace desktop {
namespace {

constexpr int displayRate = 125;

Setting wrapping(std::initializer_list<int> armed) {
    return {.product = "orbisant", .more = armedSides(armed)};
}

/// An edge of a monitor and where the cursor comes out.
struct Case {
    const char* name;
    const char* layout;
    int side;  ///< the armed one: 1 left, 2 top, 3 right, 4 bottom
    Spot from; ///< layout coordinates, so that the seventh step ends on the last pixel
    Spot step;
    std::size_t monitor; ///< where it comes out
    Spot out;            ///< on that monitor
};

void PrintTo(const Case& edge, std::ostream* out) {
    *out << edge.name;
}

constexpr const char* two = "1920x1080+0+0,1280x1024+1920+0";
constexpr const char* three = "1280x1024+1280+0,1280x800+0+100,1024x768+2560+256";

struct SwayWrapping : Sway {
    /// The cursor is over the monitor's background, at that place.
    bool comesOut(std::size_t monitor, Spot at) const {
        return waitUntil([&] {
            const auto seen = backgrounds[monitor]->report();
            // Later releases tell of one that is a 256th of a pixel short.
            constexpr double part = 0.01;
            return seen.isOver && std::abs(seen.lastX - at.x) < part &&
                   std::abs(seen.lastY - at.y) < part;
        });
    }
    std::string seen(std::size_t monitor) const {
        const auto report = backgrounds[monitor]->report();
        return std::to_string(report.lastX) + ", " + std::to_string(report.lastY) + "\n" +
               program->errors();
    }
};

struct SwayWrap : SwayWrapping, testing::WithParamInterface<Case> {};

TEST_P(SwayWrap, ComesOutAtTheOppositeEdge) {
    const Case& edge = GetParam();
    begin({.layout = edge.layout});
    start(wrapping({edge.side}));
    hand->moveTo(edge.from.x, edge.from.y);
    hand->push(edge.step.x, edge.step.y, 7, displayRate);
    ASSERT_TRUE(comesOut(edge.monitor, edge.out)) << seen(edge.monitor);
    // The hand goes on in the same direction and is not thrown back.
    hand->push(edge.step.x, edge.step.y, 10, displayRate);
    EXPECT_TRUE(
        comesOut(edge.monitor, {edge.out.x + 10 * edge.step.x, edge.out.y + 10 * edge.step.y}))
        << seen(edge.monitor);
}

INSTANTIATE_TEST_SUITE_P(
    Edges, SwayWrap,
    testing::Values(Case{"RightOfTwo", two, 3, {3150, 500}, {7, 0}, 0, {0, 500}},
                    Case{"LeftOfTwo", two, 1, {49, 500}, {-7, 0}, 1, {1279, 500}},
                    Case{"LeftBelowTheOther", two, 1, {49, 1060}, {-7, 0}, 1, {1279, 1023}},
                    Case{"TopOfTheFirst", two, 2, {960, 49}, {0, -7}, 0, {960, 1079}},
                    Case{"BottomOfTheSecond", two, 4, {2500, 975}, {0, 7}, 1, {580, 0}},
                    Case{"LeftOfThree", three, 1, {49, 500}, {-7, 0}, 2, {1023, 244}},
                    Case{"RightOfThree", three, 3, {3534, 500}, {7, 0}, 1, {0, 400}},
                    Case{"IntoTheLowerCorner", two, 3, {3150, 1023}, {7, 0}, 0, {0, 1023}}),
    [](const auto& edge) { return edge.param.name; });

TEST_F(SwayWrapping, GoesRoundTheDesktopAsOftenAsTheHandDoes) {
    start(wrapping({1, 3}));
    hand->push(40, 0, 340, displayRate); // 13600 pixels, of a desktop of 3200
    EXPECT_TRUE(waitUntil([&] { return backgrounds[0]->report().entered >= 4; }))
        << backgrounds[0]->report().entered;
}

TEST_F(SwayWrapping, StaysAtTheEdgeWhereItHasComeOutUntilItHasBeenInside) {
    start(wrapping({1, 3}));
    hand->moveTo(3150, 500);
    // Over both strips nothing is behind the cursor that would tell of it, but the steps do.
    hand->push(7, 0, 7, displayRate);
    ASSERT_TRUE(waitUntil([&] {
        hand->relative(7, 0);
        return backgrounds[0]->report().isOver;
    })) << seen(0);
    hand->push(-40, 0, 10, displayRate);
    ASSERT_TRUE(waitUntil([&] {
        hand->relative(-7, 0);
        return backgrounds[1]->report().isOver;
    })) << "back round again, as it has been inside";
}

TEST_F(SwayWrapping, WantsAPushWhereThatIsSet) {
    start({.product = "orbisant", .pushOption = true, .more = armedSides({3})});
    hand->moveTo(3150, 500);
    hand->push(1, 0, 120, displayRate);
    hand->push(-30, 0, 5, displayRate);
    EXPECT_TRUE(waitUntil([&] { return backgrounds[1]->report().isOver; }))
        << "a slow hand stays where it is";
    EXPECT_FALSE(backgrounds[0]->report().isOver);
    hand->push(30, 0, 60, mouseRate);
    EXPECT_TRUE(waitUntil([&] { return backgrounds[0]->report().isOver; })) << seen(0);
}

TEST_F(SwayWrapping, TakesNoClicksOfItsEdgesWhileItIsSwitchedOff) {
    auto setting = wrapping({3});
    setting.active = false;
    start(setting);
    hand->moveTo(3199, 500);
    hand->pressButton();
    hand->releaseButton();
    EXPECT_TRUE(waitUntil([&] { return backgrounds[1]->report().buttons == 1; }));
}

TEST_F(SwayWrapping, IsNotWokenByWhatHappensAwayFromItsEdges) {
    start(wrapping({1, 3}));
    hand->moveTo(3150, 500);
    hand->push(7, 0, 7, displayRate);
    ASSERT_TRUE(waitUntil([&] { // it has felt its edge, and so is up
        hand->relative(7, 0);
        return backgrounds[0]->report().isOver;
    }));
    hand->moveTo(960, 540);
    const long before = wakeups();
    constexpr int motions = 4000;
    for (int turn = 0; turn < 8; ++turn)
        hand->push(turn % 2 == 0 ? 1 : -1, 0, motions / 8, mouseRate);
    // A refresh every three seconds, and the end of what was under way.
    EXPECT_LT(wakeups() - before, motions / 100);
}

} // namespace
} // namespace desktop
