#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

constexpr int displayRate = 125;
constexpr const char* two = "1920x1080+0+0,1280x1024+1920+56";

Setting wrapping(bool pause) {
    return {.product = "orbisant",
            .more = {{"BREAK_AFTER_SWITCH", flag(pause)},
                     {"BUTLATO2", flag(true)},
                     {"BUTLATO4", flag(true)}}};
}

/// From the middle of an edge of a monitor to where the cursor comes out.
struct Case {
    const char* name;
    const char* layout;
    std::size_t monitor;
    Spot step; ///< one step of the hand, towards the edge
    Spot out;
};

void PrintTo(const Case& edge, std::ostream* out) {
    *out << edge.name;
}

struct Wrap : testing::TestWithParam<Case> {
    Wrap() : product(GetParam().layout) {}

    void start(bool pause) {
        product.start(wrapping(pause));
        const Area& area = product.monitor(GetParam().monitor);
        const Spot step = GetParam().step;
        // So that the seventh step ends on the last pixel.
        product.hand.moveTo(step.x == 0 ? product.middle(GetParam().monitor).x
                                        : (step.x < 0 ? area.x + 49 : area.x + area.width - 50),
                            step.y == 0 ? product.middle(GetParam().monitor).y
                                        : (step.y < 0 ? area.y + 49 : area.y + area.height - 50));
    }

    Product product;
};

TEST_P(Wrap, ComesOutAtTheOppositeEdge) {
    start(false);
    const Spot step = GetParam().step;
    product.hand.push(step.x, step.y, 7, displayRate);
    EXPECT_TRUE(waitUntil([&] { return product.eye.cursor() == GetParam().out; }))
        << product.eye.cursor().x << ", " << product.eye.cursor().y;
    // The hand goes on in the same direction and is not thrown back.
    product.hand.push(step.x, step.y, 10, displayRate);
    const Spot expected{GetParam().out.x + 10 * step.x, GetParam().out.y + 10 * step.y};
    EXPECT_TRUE(product.eye.cursor() == expected)
        << product.eye.cursor().x << ", " << product.eye.cursor().y;
}

TEST_P(Wrap, StaysThereForAMomentWithThePause) {
    start(true);
    const Spot step = GetParam().step;
    product.hand.push(step.x, step.y, 7, displayRate);
    const auto isOut = [&] { return product.eye.cursor() == GetParam().out; };
    ASSERT_TRUE(waitUntil(isOut)) << product.eye.cursor().x << ", " << product.eye.cursor().y;
    product.hand.push(step.x, step.y, 20, mouseRate);
    EXPECT_TRUE(isOut()) << "pushed on while it is held";
    EXPECT_TRUE(waitUntil([&] {
        product.hand.relative(step.x, step.y);
        return !isOut();
    })) << "let go";
}

// The opposite edge begins lower than the one that was left.
TEST(WrapBesideEveryMonitor, ComesOutAtTheNearestPointOfTheOuterMonitor) {
    for (const bool pause : {false, true}) {
        Product product("1920x1080+0+0,1280x600+1920+480");
        product.start(wrapping(pause));
        product.hand.moveTo(49, 400);
        product.hand.push(-7, 0, 7, displayRate);
        EXPECT_TRUE(waitUntil([&] {
            return product.eye.cursor() == Spot{3199, 480};
        })) << product.eye.cursor().x
            << ", " << product.eye.cursor().y;
    }
}

constexpr const char* three = "1280x1024+1280+0*,1280x800+0+100,1024x768+2560+256";

INSTANTIATE_TEST_SUITE_P(Edges, Wrap,
                         testing::Values(Case{"LeftOfTwo", two, 0, {-7, 0}, {3199, 540}},
                                         Case{"RightOfTwo", two, 1, {7, 0}, {0, 568}},
                                         Case{"TopOfTheMain", two, 0, {0, -7}, {960, 1079}},
                                         Case{"BottomOfTheMain", two, 0, {0, 7}, {960, 0}},
                                         Case{"TopOfTheLower", two, 1, {0, -7}, {2560, 1079}},
                                         Case{"BottomOfTheLower", two, 1, {0, 7}, {2560, 56}},
                                         Case{"LeftOfThree", three, 1, {-7, 0}, {3583, 500}},
                                         Case{"RightOfThree", three, 2, {7, 0}, {0, 640}},
                                         Case{"TopOfTheMiddleOne", three, 0, {0, -7}, {1920, 1023}},
                                         Case{"BottomOfTheMiddleOne", three, 0, {0, 7}, {1920, 0}},
                                         Case{
                                             "BottomOfTheRightOne", three, 2, {0, 7}, {3072, 256}}),
                         [](const auto& edge) { return edge.param.name; });

} // namespace
} // namespace desktop
