#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

/// The wrap-around product on one screen of 1920 x 1080 with every side and corner armed.
/// A corner is 1080 / 4.2 = 257.14 points high and 1920 / 4.2 = 457.14 points wide.
struct HotEdges : Program {
    explicit HotEdges(int variant = variants::wrapAround, std::string_view layout = oneMonitor)
        : Program(variant, layout) {
        launched();
        for (CheckBox* side : {&app.butlato1, &app.butlato2, &app.butlato3, &app.butlato4})
            side->state = 1;
        for (CheckBox* corner :
             {&app.butangolo1, &app.butangolo2, &app.butangolo3, &app.butangolo4})
            corner->state = 1;
    }

    /// What an approach from the middle does.
    Lines approach(Point P) {
        pointer({960, 540});
        effects();
        pointer(P);
        return effects({"warp"});
    }
};

constexpr const char* toLeft = R"(warp {"to":[0,500]})";
constexpr const char* toRight = R"(warp {"to":[1919,500]})";

TEST(HotEdge, StripsExcludeTheInnerBoundaryAtLeftAndTopAndIncludeItAtRightAndBottom) {
    HotEdges edges;
    EXPECT_THAT(edges.approach({0, 500}), ElementsAre(toRight));
    EXPECT_THAT(edges.approach({0.5, 500}), ElementsAre(toRight));
    EXPECT_THAT(edges.approach({1, 500}), IsEmpty());
    EXPECT_THAT(edges.approach({1919, 500}), ElementsAre(toLeft));
    EXPECT_THAT(edges.approach({1918.5, 500}), IsEmpty());
    EXPECT_THAT(edges.approach({900, 0}), ElementsAre(R"(warp {"to":[900,1079]})"));
    EXPECT_THAT(edges.approach({900, 1}), IsEmpty());
    EXPECT_THAT(edges.approach({900, 1079}), ElementsAre(R"(warp {"to":[900,0]})"));
    EXPECT_THAT(edges.approach({900, 1078.5}), IsEmpty());
}

TEST(HotEdge, OfADisarmedSidePassesOnToTheNextEdge) {
    HotEdges edges;
    edges.app.butlato1.state = 0;
    EXPECT_THAT(edges.approach({0, 500}), IsEmpty());
    EXPECT_THAT(edges.approach({0, 0}), ElementsAre(R"(warp {"to":[0,1079]})"));
}

TEST(HotEdge, InADisarmedCornerEndsTheSearch) {
    HotEdges edges;
    edges.app.butangolo1.state = 0;
    EXPECT_THAT(edges.approach({0, 0}), IsEmpty()) << "the top edge must not be tried";
    EXPECT_THAT(edges.approach({0, 257}), IsEmpty());
    EXPECT_THAT(edges.approach({0, 258}), ElementsAre(R"(warp {"to":[1919,258]})"));
    EXPECT_THAT(edges.approach({457, 0}), IsEmpty());
    EXPECT_THAT(edges.approach({458, 0}), ElementsAre(R"(warp {"to":[458,1079]})"));
}

TEST(HotEdge, HasACornerAtEachOfItsEnds) {
    struct {
        CheckBox AppDelegate::*corner;
        Point sideways, upright;
    } const cases[] = {
        {&AppDelegate::butangolo1, {0, 100}, {100, 0}},
        {&AppDelegate::butangolo2, {1919, 100}, {1800, 0}},
        {&AppDelegate::butangolo3, {1919, 1000}, {1800, 1079}},
        {&AppDelegate::butangolo4, {0, 1000}, {100, 1079}},
    };
    for (const auto& [corner, sideways, upright] : cases) {
        HotEdges edges;
        EXPECT_THAT(edges.approach(sideways), testing::SizeIs(1));
        EXPECT_THAT(edges.approach(upright), testing::SizeIs(1));
        (edges.app.*corner).state = 0;
        EXPECT_THAT(edges.approach(sideways), IsEmpty()) << sideways.x << "," << sideways.y;
        EXPECT_THAT(edges.approach(upright), IsEmpty()) << upright.x << "," << upright.y;
    }
}

TEST(HotEdge, FiresOnceUntilTheCursorHasBeenWellInsideAgain) {
    HotEdges edges;
    EXPECT_THAT(edges.approach({0, 500}), ElementsAre(toRight));
    EXPECT_TRUE(edges.app.inHotArea);
    edges.pointer({1919, 500});
    edges.pointer({1, 500}); // not inside by two points
    edges.pointer({0, 500});
    EXPECT_THAT(edges.effects({"warp"}), IsEmpty());
    edges.pointer({2, 500});
    EXPECT_FALSE(edges.app.inHotArea);
    edges.pointer({0, 500});
    EXPECT_THAT(edges.effects({"warp"}), ElementsAre(toRight));
}

TEST(HotEdge, OfTheDesktopIsAtItsOutermostBoundsAndNotBetweenMonitors) {
    Program program(variants::wrapAround);
    program.launched();
    program.pointer({960, 500});
    program.pointer({1919, 500});
    program.pointer({1920, 500});
    EXPECT_THAT(program.effects({"warp"}), IsEmpty());
    program.app.butangolo2.state = 1;
    program.pointer({3199, 500});
    EXPECT_THAT(program.effects({"warp"}), ElementsAre(R"(warp {"to":[0,500]})"));
}

TEST(HotEdge, TestsUseTheEventsOwnPointAndThePushTestThePresentOne) {
    HotEdges edges;
    edges.setting(keys::VELOCITY_OPTION, Value{true});
    edges.pointer({900, 500});
    edges.platform.pointer.place({1500, 500});
    edges.effects();
    edges.app.onMouseMovedOrClicked({1919, 500});
    EXPECT_EQ(edges.app.cordmouse, (Point{1500, 500}));
    EXPECT_THAT(edges.effects({"warp"}), ElementsAre(toLeft)) << "a step of 600 points";
}

// Three monitors with three tops and three bottoms. The corners of the one on the right are 1024
// / 4.2 = 243.81 points high and 1280 / 4.2 = 304.76 wide, those of the one on the left 142.86 and
// 190.48.
constexpr const char* uneven = "1920x1080+0+0,1280x1024+1920+-200,800x600+-800+100";

using Corner = CheckBox AppDelegate::*;

struct EdgePoint {
    Point at;
    Corner disarmed; ///< null for none
    int direction;   ///< of the edge that fires, -1 for none
};

TEST(HotEdge, AndItsCornersAreThoseOfTheMonitorThatTheCursorIsOn) {
    constexpr Corner none = nullptr, topLeft = &AppDelegate::butangolo1,
                     topRight = &AppDelegate::butangolo2, bottomRight = &AppDelegate::butangolo3,
                     bottomLeft = &AppDelegate::butangolo4;
    const EdgePoint cases[] = {
        {{3199, 300}, none, 1},
        {{3198.9, 300}, none, -1},
        {{3199, 43.8}, topRight, -1},
        {{3199, 43.9}, topRight, 1},
        {{3199, 580.1}, bottomRight, 1},
        {{3199, 580.2}, bottomRight, -1},

        {{-799.1, 300}, none, 0},
        {{-799, 300}, none, -1},
        {{-800, 242.8}, topLeft, -1},
        {{-800, 242.9}, topLeft, 0},
        {{-800, 557.1}, bottomLeft, 0},
        {{-800, 557.2}, bottomLeft, -1},

        {{2500, -199.1}, none, 2},
        {{2500, -199}, none, -1},
        {{2224.7, -200}, topLeft, -1},
        {{2224.8, -200}, topLeft, 2},
        {{2895.2, -200}, topRight, 2},
        {{2895.3, -200}, topRight, -1},

        {{2500, 823}, none, 3},
        {{2500, 822.9}, none, -1},
        {{2224.7, 823}, bottomLeft, -1},
        {{2224.8, 823}, bottomLeft, 3},
        {{2895.2, 823}, bottomRight, 3},
        {{2895.3, 823}, bottomRight, -1},
        {{-610, 699}, bottomLeft, -1},
        {{-609, 699}, bottomLeft, 3},

        // The corners on the right are measured from the right end of the desktop.
        {{1900, 0}, topRight, 2},
        {{-10, 699}, bottomRight, 3},
    };
    for (const auto& [at, disarmed, direction] : cases) {
        HotEdges edges(variants::wrapAround, uneven);
        if (disarmed != nullptr) (edges.app.*disarmed).state = 0;
        edges.pointer(at);
        const Point ends[] = {{3199, at.y}, {-800, at.y}, {at.x, 1079}, {at.x, -200}, at};
        EXPECT_EQ(edges.platform.pointer.location(), ends[direction < 0 ? 4 : direction])
            << at.x << "," << at.y;
        EXPECT_EQ(edges.app.inHotArea, direction >= 0) << at.x << "," << at.y;
    }
}

TEST(HotEdge, IsReleasedByTheEventsOwnPointInsideTheFrameByTwoPoints) {
    struct {
        Point event, cursor;
        bool latched;
    } const cases[] = {
        {{2500, 300}, {3199, 300}, false},
        {{3199, 300}, {2500, 300}, true},
        {{1922, 300}, {2500, 300}, false},
        {{1921.9, 300}, {2500, 300}, true},
        {{3197.9, 300}, {2500, 300}, false},
        {{3198, 300}, {2500, 300}, true},
        {{2500, -198}, {2500, 300}, false},
        {{2500, -198.1}, {2500, 300}, true},
        {{2500, 821.9}, {2500, 300}, false},
        {{2500, 822}, {2500, 300}, true},
        // The frame is that of the monitor that the cursor is on by now.
        {{2500, 300}, {500, 300}, true},
    };
    for (const auto& [event, cursor, latched] : cases) {
        HotEdges edges(variants::wrapAround, uneven);
        edges.app.inHotArea = true;
        edges.platform.pointer.place(cursor);
        edges.app.onMouseMovedOrClicked(event);
        EXPECT_EQ(edges.app.inHotArea, latched) << event.x << "," << event.y;
    }
}

/// The cursor hider with hot borders on and the same switches armed, hidden by nothing else.
struct HidingEdges : HotEdges {
    explicit HidingEdges(std::string_view layout = oneMonitor)
        : HotEdges(variants::cursorHider, layout) {
        setting(keys::HOT_BOUNDS, Value{"1"});
        setting(keys::TIME_MODE, Value{false});
    }
};

TEST(HidingEdge, HidesTwoTenthsOfASecondAfterTheLastEventInIt) {
    HidingEdges edges;
    edges.pointer({0, 500});
    edges.platform.runLoop.advance(0.15);
    edges.pointer({1, 500});
    edges.platform.runLoop.advance(0.15);
    EXPECT_TRUE(edges.platform.cursor.isVisible());
    edges.platform.runLoop.advance(0.05);
    EXPECT_FALSE(edges.platform.cursor.isVisible());
    EXPECT_FALSE(edges.app.inHotArea);
}

TEST(HidingEdge, IsTwoPointsWideAndBelongsToEachMonitor) {
    for (const auto& [x, hides] :
         {std::pair{0.0, true}, std::pair{1.9, true}, std::pair{2.0, false},
          std::pair{1917.9, false}, std::pair{1918.0, true}}) {
        HidingEdges edges;
        edges.pointer({x, 500});
        edges.platform.runLoop.advance(0.2);
        EXPECT_EQ(!edges.platform.cursor.isVisible(), hides) << x;
    }
}

TEST(HidingEdge, AndItsCornersAreThoseOfTheMonitorThatTheCursorIsOn) {
    struct {
        Point at;
        Corner disarmed;
        bool hides;
    } const cases[] = {
        {{1921.9, 300}, nullptr, true},
        {{1922, 300}, nullptr, false},
        {{1918, 300}, nullptr, true},
        {{1917.9, 300}, nullptr, false},
        {{2500, -198.1}, nullptr, true},
        {{2500, -198}, nullptr, false},
        {{2500, 822}, nullptr, true},
        {{2500, 821.9}, nullptr, false},
        {{1462.8, 0}, &AppDelegate::butangolo2, true},
        {{1462.9, 0}, &AppDelegate::butangolo2, false},
        {{1919, 257.1}, &AppDelegate::butangolo2, false},
        {{1919, 257.2}, &AppDelegate::butangolo2, true},
        {{-190.5, 699}, &AppDelegate::butangolo3, true},
        {{-190.4, 699}, &AppDelegate::butangolo3, false},
    };
    for (const auto& [at, disarmed, hides] : cases) {
        HidingEdges edges(uneven);
        if (disarmed != nullptr) (edges.app.*disarmed).state = 0;
        edges.pointer(at);
        edges.platform.advance(0.2);
        EXPECT_EQ(!edges.platform.cursor.isVisible(), hides) << at.x << "," << at.y;
    }
}

TEST(HidingEdge, ShowsTheCursorAndForgetsThePendingHideOnceItIsBackInside) {
    HidingEdges edges;
    edges.pointer({0, 500});
    edges.pointer({100, 500});
    edges.platform.runLoop.advance(1);
    EXPECT_TRUE(edges.platform.cursor.isVisible());
    edges.pointer({0, 500});
    edges.platform.runLoop.advance(1);
    EXPECT_FALSE(edges.platform.cursor.isVisible());
    edges.pointer({100, 500});
    EXPECT_TRUE(edges.platform.cursor.isVisible());
}

TEST(HotBordersMode, IsOnOnlyWhenTheSettingIsTheTextOne) {
    for (const Value& stored : {Value{"0"}, Value{"yes"}, Value{std::int64_t{1}}, Value{true}}) {
        HidingEdges edges;
        edges.setting(keys::HOT_BOUNDS, stored);
        edges.pointer({0, 500});
        edges.platform.runLoop.advance(1);
        EXPECT_TRUE(edges.platform.cursor.isVisible());
    }
}

TEST(HotBordersMode, OffLeavesOnlyTheHistoryAndTheTimeMode) {
    Program program(variants::cursorHider);
    program.launched();
    program.pointer({0, 500});
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(timer {"selector":"hidecursor","interval":5,"repeats":false})"));
    EXPECT_EQ(program.app.switchedScreen, ScreenId::none) << "no screen is looked for";
}

} // namespace
} // namespace palisor
