#include "Held.h"

// What counts as pushed of the motion that the server stops.

using platform::Point;
using platform::x11::Box;
using platform::x11::Side;
using x11tests::Held;
using x11tests::middle;

TEST_F(Held, IsPushedByWhatASideCutsOffOfAMotion) {
    struct Row {
        Side side;
        Point before, at, step, way;
    };
    for (const Row& row : {Row{Side::left, {1005, 1500}, {1000, 1500}, {-25, 0}, {-20, 0}},
                           Row{Side::right, {1994, 1500}, {1999, 1500}, {25, 0}, {20, 0}},
                           Row{Side::top, {1500, 1005}, {1500, 1000}, {0, -25}, {0, -20}},
                           Row{Side::bottom, {1500, 1994}, {1500, 1999}, {0, 25}, {0, 20}}}) {
        seeAt(row.before);
        push(row.side, row.at, row.step);
        EXPECT_EQ(cursor.stoppedAt(), row.at);
        expectPush(row.at, row.at, row.way);
        EXPECT_FALSE(take(row.at)) << "it is told once";
    }
}

TEST_F(Held, IsPushedFromWhereItSlidTo) {
    seeAt({1999, 1500});
    push(Side::right, {1999, 1507}, {20, 7});
    expectPush({1999, 1507}, {1999, 1500}, {20, 7});
}

TEST_F(Held, IsPushedByAsMuchAsOneFrameCutsOff) {
    seeAt({1999, 1500});
    for (int i = 0; i < 5; ++i)
        push(Side::right, {1999, 1500}, {20, 0});
    expectPush({1999, 1500}, {1999, 1500}, {40, 0}); // of 8 ms each
    push(Side::right, {1999, 1500}, {12, 0}, 12);
    push(Side::right, {1999, 1500}, {12, 0}, 12);
    expectPush({1999, 1500}, {1999, 1500}, {16, 0}); // a third of the first
}

// The server drops them at a barrier.
TEST_F(Held, IsPushedByFractionsOfPixels) {
    seeAt({1998, 1500});
    move({1.25, 0});
    move({1.25, 0});
    stop(Side::right, {1999, 1500}, {1, 0});
    expectPush({1999, 1500}, {1999, 1500}, {1.5, 0}); // from 1999.25
}

TEST_F(Held, IsNotPushedWhereAMotionJustReachesTheSide) {
    seeAt({1990, 1500});
    push(Side::right, {1999, 1500}, {9, 0});
    EXPECT_FALSE(take({1999, 1500}));
}

TEST_F(Held, IsNotPushedByWhatLeadsAway) {
    seeAt({1999, 1500});
    push(Side::right, {1999, 1500}, {-9, 0});
    EXPECT_FALSE(take({1999, 1500}));
    cursor.put({1998, 1500});
    push(Side::right, {1999, 1500}, {-9, 0});
    push(Side::right, {1999, 1500}, {30, 0});
    expectPush({1999, 1500}, {1999, 1500}, {30, 0});
}

TEST_F(Held, IsNotPushedWhereNoMonitorLies) {
    cursor.hold({0, 0, 1000, 500});
    const std::vector<Box> uneven{{0, 0, 1000, 500}, {1000, 400, 2000, 900}};
    const auto pushAt = [&](double y) {
        seeAt({999, y});
        push(Side::right, {999, y}, {50, 0});
        return cursor.takePush({999, y}, uneven).has_value();
    };
    EXPECT_FALSE(pushAt(100));
    EXPECT_TRUE(pushAt(450));
}

TEST_F(Held, IsPushedByTheWayFromWhereItWasPutBackToo) {
    cursor.put({1998, 1500});
    push(Side::right, {1999, 1500}, {5, 0});
    expectPush({1999, 1500}, {1998, 1500}, {5, 0});

    cursor.put({1998, 1500});
    move({1, 0});
    push(Side::right, {1999, 1500}, {4, 0});
    expectPush({1999, 1500}, {1998, 1500}, {5, 0});

    cursor.put({1990, 1500});
    move({5, 0});
    push(Side::right, {1999, 1500}, {9, 0});
    expectPush({1999, 1500}, {1994, 1500}, {10, 0}); // what led to the side in one step

    cursor.put({1998, 1500});
    push(Side::right, {1999, 1500}, {1, 0}); // just to the side
    push(Side::right, {1999, 1500}, {4, 0});
    expectPush({1999, 1500}, {1998, 1500}, {5, 0});
}

TEST_F(Held, IsPushedUpwardsByTheWayFromWhereItWasPutBackToo) {
    cursor.put({1500, 1001});
    push(Side::top, {1500, 1000}, {0, -5});
    expectPush({1500, 1000}, {1500, 1001}, {0, -5});

    cursor.put({1500, 1002});
    move({0, -2});
    push(Side::top, {1500, 1000}, {0, -3});
    expectPush({1500, 1000}, {1500, 1002}, {0, -5});

    cursor.put({1500, 1002});
    move({3, -2});
    push(Side::top, {1503, 1000}, {0, -3});
    expectPush({1503, 1000}, {1503, 1002}, {0, -5}); // it was not pushed sideways
}

TEST_F(Held, IsPushedByNoWayFromElsewhereThanWhereItWasPutBack) {
    for (const Point away : {Point{0, 1.5}, Point{0, -1.5}, Point{-1.5, 0}}) {
        cursor.put({1997, 1500});
        seeAt({1997 + away.x, 1500 + away.y});
        push(Side::right, {1999, 1500 + away.y}, {7, 0});
        expectPush({1999, 1500 + away.y}, {1999, 1500 + away.y}, {5 + away.x, 0});
    }
}

TEST_F(Held, IsStoppedByTwoSidesInACornerAndPushedAgainstBoth) {
    seeAt({1999, 1999});
    move({30, 40});
    stop(Side::right, {1999, 1999}, {30, 40});
    stop(Side::bottom, {1999, 1999}, {30, 40});
    const auto push =
        cursor.takePush({1999, 1999}, std::vector<Box>{middle, {1000, 1000, 4000, 4000}});
    ASSERT_TRUE(push);
    EXPECT_EQ(push->beyond, (Point{2029, 2039}));
}

// The motions that are stopped then are not read.
TEST_F(Held, TakesAStopForOneOfTheSameMotionOnlyInACorner) {
    const std::vector<Box> slanting{middle, {1000, 1000, 4000, 4000}};
    const auto pushedDown = [&](double later, Point told) {
        seeAt({1999, 1999});
        move({30.5, 30.5}); // the server drops the fractions
        stop(Side::right, {1999, 1999}, {30, 30});
        now += later;
        stop(Side::bottom, {1999, 1999}, told);
        const auto push = cursor.takePush({1999, 1999}, slanting);
        return push ? push->beyond.y - 1999 : 0;
    };
    EXPECT_EQ(pushedDown(0, {30, 30}), 30.5);
    EXPECT_EQ(pushedDown(0.001, {30, 30}), 30);
    EXPECT_EQ(pushedDown(0, {30, 30.25}), 30.25);
    seeAt({1989, 1500});
    push(Side::right, {1999, 1500}, {30, 0});
    stop(Side::right, {1999, 1500}, {30, 0}); // in the same millisecond
    expectPush({1999, 1500}, {1999, 1500}, {50, 0});
}

TEST_F(Held, TakesASecondStopOfTheSameSideForAnotherMotion) {
    seeAt({1999, 1500});
    cursor.stopped({Side::right, {1999, 1500}, {30, 0}, now, false});
    cursor.stopped({Side::right, {1999, 1500}, {30, 0}, now, false});
    expectPush({1999, 1500}, {1999, 1500}, {60, 0}); // at 8000 reports a second
}
