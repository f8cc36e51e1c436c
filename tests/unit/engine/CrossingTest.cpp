#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(PushThreshold, GrowsWithTheSquareOfTheSettingAndIsAtLeastOne) {
    struct {
        int variant, velocity;
        float threshold;
    } const cases[] = {{8, 0, 1},     {5, 0, 1},   {8, 10, 3},  {5, 10, 2},
                       {2, 10, 2},    {8, 50, 75}, {5, 50, 50}, {8, 100, 300},
                       {5, 100, 200}, {8, -10, 3}, {8, 1, 1}};
    for (const auto& [variant, velocity, threshold] : cases) {
        Program program(variant);
        program.setting(keys::VELOCITY, Value{std::int64_t{velocity}});
        EXPECT_FLOAT_EQ(program.app.calculatedSettedDistance(), threshold)
            << variant << " " << velocity;
    }
}

TEST(PushThreshold, IsOneWhenNothingIsStored) {
    Program program(variants::wrapAround);
    EXPECT_EQ(program.app.calculatedSettedDistance(), 1.0F);
}

TEST(Push, IsTenTimesLongerAlongThanAcrossAndLongerThanTheThreshold) {
    struct {
        int variant;
        Point step;
        double threshold;
        bool push;
    } const cases[] = {
        {5, {15, 1.4}, 10, true},   {5, {15, 1.5}, 10, false},  {8, {15, 1.4}, 10, true},
        {8, {15, 1.5}, 10, false},  {5, {-15, -1.4}, 10, true}, {5, {10, 0}, 10, false},
        {5, {10.001, 0}, 10, true}, {5, {1.4, 15}, 10, true},   {5, {1.5, 15}, 10, false},
        {5, {0, -15}, 10, true},    {8, {0, 15}, 10, false},    {8, {0, 100000}, 1, false},
        {5, {0, 10}, 10, false},    {5, {0, 0}, 0, false},
    };
    for (const auto& [variant, step, threshold, push] : cases) {
        Program program(variant);
        const Point from{200, 300};
        const Point to{from.x + step.x, from.y + step.y};
        EXPECT_EQ(program.app.distanceBewteenCGPoint_andCGPoint_distanceMax(to, from, threshold),
                  push)
            << variant << ": " << step.x << "," << step.y;
    }
}

struct Edge : Program {
    explicit Edge(int variant) : Program(variant) {
        launched();
        app.cordmouse = {1919, 300};
        app.oldcordmouse = {1918, 300};
    }
};

TEST(EdgeAction, AlwaysHappensWhileThePushOptionIsOff) {
    Edge edge(variants::wrapAround);
    edge.app.runForDirection(1);
    EXPECT_THAT(edge.effects({"warp"}), ElementsAre(R"(warp {"to":[0,300]})"));
}

TEST(EdgeAction, NeedsAPushWhileTheOptionIsOnUnlessTheCombinationIsHeld) {
    Edge edge(variants::wrapAround);
    edge.setting(keys::VELOCITY_OPTION, Value{true});
    edge.setting(keys::VELOCITY, Value{std::int64_t{10}});
    edge.app.runForDirection(1);
    EXPECT_THAT(edge.effects(), IsEmpty());

    edge.app.combo = true;
    edge.app.runForDirection(1);
    EXPECT_THAT(edge.effects({"warp"}), ElementsAre(R"(warp {"to":[0,300]})"));

    edge.app.combo = false;
    edge.app.oldcordmouse = {1900, 300};
    edge.app.runForDirection(1);
    EXPECT_THAT(edge.effects({"warp"}), ElementsAre(R"(warp {"to":[0,300]})"));
}

TEST(WrapAround, EntersAtTheOppositeEdgeOfTheDesktop) {
    Edge edge(variants::wrapAround);
    edge.app.runForDirection(0);
    edge.app.runForDirection(1);
    edge.app.runForDirection(2);
    edge.app.runForDirection(3);
    EXPECT_THAT(edge.effects({"warp", "log"}),
                ElementsAre(R"(warp {"to":[3199,300]})", R"(warp {"to":[0,300]})",
                            R"(log {"text":"runForUpDown: 2"})", R"(warp {"to":[1919,1079]})",
                            R"(log {"text":"runForUpDown: 3"})", R"(warp {"to":[1919,0]})"));
}

TEST(DesktopSwitcher, PostsControlWithAnArrowKeyDownAndUp) {
    Edge edge(variants::desktopSwitcher);
    edge.app.runForDirection(1);
    edge.app.runForDirection(0);
    EXPECT_THAT(edge.effects(),
                ElementsAre(R"(log {"text":"qwe"})",
                            R"(postKey {"keyCode":124,"down":true,"flags":262144})",
                            R"(postKey {"keyCode":124,"down":false,"flags":262144})",
                            R"(log {"text":"qwe"})",
                            R"(postKey {"keyCode":123,"down":true,"flags":262144})",
                            R"(postKey {"keyCode":123,"down":false,"flags":262144})"));
}

TEST(SideEdges, DoNothingInTheProductsWithoutASideAction) {
    for (const int variant : {0, 3, 4, 7, 8}) {
        Edge edge(variant);
        edge.app.runForDirection(0);
        edge.app.runForDirection(1);
        EXPECT_THAT(edge.effects(), IsEmpty()) << variant;
    }
}

TEST(UpperAndLowerEdges, WrapVerticallyInEveryProductThatReachesThem) {
    for (const int variant : {0, 2, 3, 5, 6}) {
        Edge edge(variant);
        edge.app.runForDirection(3);
        EXPECT_THAT(edge.effects({"warp"}), ElementsAre(R"(warp {"to":[1919,0]})")) << variant;
    }
}

} // namespace
} // namespace palisor
