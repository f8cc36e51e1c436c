#include "platform/x11/pointer/HeldCursor.h"

#include <gtest/gtest.h>
#include <vector>

// How the cursor is followed on the screen that holds it, and what counts as pushed, without a
// server. The screen is the middle one of five.

using platform::Point;
using platform::x11::Box;
using platform::x11::HeldCursor;
using platform::x11::Side;

namespace {

const Box middle{1000, 1000, 2000, 2000};
const std::vector<Box> monitors{middle,
                                {0, 1000, 1000, 2000},
                                {2000, 1000, 3000, 2000},
                                {1000, 0, 2000, 1000},
                                {1000, 2000, 2000, 3000}};

struct Held : testing::Test {
    Held() { cursor.hold(middle); }

    /// A motion that a side stops, `milliseconds` after the one before.
    void push(Side side, Point at, Point step, int milliseconds = 8) {
        move(step, milliseconds);
        stop(side, at, step);
    }
    void move(Point step, int milliseconds = 8) {
        now += milliseconds / 1000.0;
        cursor.moved(step, now, asksAlready);
    }
    void stop(Side side, Point at, Point step) {
        cursor.stopped(
            {.side = side, .at = at, .told = step, .time = now, .afterQuestion = asksAlready});
    }
    void seeAt(Point place) {
        cursor.asked();
        cursor.placed(place);
    }
    /// Where the push began, and how far it leads.
    struct Step {
        Point from, way;
        bool operator==(const Step&) const = default;
    };
    std::optional<Step> take(Point place) {
        const auto push = cursor.takePush(place, monitors);
        if (!push) return std::nullopt;
        return Step{push->held, {push->beyond.x - push->held.x, push->beyond.y - push->held.y}};
    }
    void expectPush(Point place, Point from, Point way) {
        const auto step = take(place);
        ASSERT_TRUE(step);
        EXPECT_NEAR(step->from.x, from.x, 1e-9);
        EXPECT_NEAR(step->from.y, from.y, 1e-9);
        EXPECT_NEAR(step->way.x, way.x, 1e-9);
        EXPECT_NEAR(step->way.y, way.y, 1e-9);
    }

    HeldCursor cursor;
    double now = 50;
    bool asksAlready = false;
};

} // namespace

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

TEST_F(Held, TakesWhatTheServerTellsWhereNoMotionIsRead) {
    seeAt({1900, 1500});
    now += 0.001;
    stop(Side::right, {1999, 1500}, {60, 0});
    expectPush({1999, 1500}, {1999, 1500}, {60, 0});
}

// Another program's warp, or a second device.
TEST_F(Held, TakesWhatTheServerTellsWhereTheCursorWasNotFollowedTo) {
    seeAt({1900, 1200});
    push(Side::right, {1999, 1500}, {160, 0});
    expectPush({1999, 1500}, {1999, 1500}, {160, 0});
    seeAt({1999, 1500});
    move({3, 0});
    stop(Side::right, {1999, 1500}, {60, 0});
    expectPush({1999, 1500}, {1999, 1500}, {60, 0});
}

TEST_F(Held, StandsWhereASideStoppedItUntilItMoves) {
    EXPECT_FALSE(cursor.stoppedAt());
    seeAt({1999, 1500});
    push(Side::right, {1999, 1503}, {20, 3});
    EXPECT_EQ(cursor.stoppedAt(), (Point{1999, 1503}));
    move({-2, 0});
    EXPECT_FALSE(cursor.stoppedAt());
    push(Side::right, {1999, 1500}, {20, 0});
    cursor.put({1998, 1500});
    EXPECT_FALSE(cursor.stoppedAt());
    push(Side::right, {1999, 1500}, {20, 0});
    cursor.jumped(false);
    EXPECT_FALSE(cursor.stoppedAt());
    push(Side::right, {1999, 1500}, {20, 0});
    cursor.release();
    EXPECT_FALSE(cursor.stoppedAt());
}

// A barrier has no ends.
TEST_F(Held, StandsNowhereWhereItIsStoppedBesideTheScreen) {
    push(Side::right, {1999, 700}, {20, 0});
    EXPECT_FALSE(cursor.stoppedAt());
}

TEST_F(Held, IsFollowedFromTheLastPlaceThatWasTold) {
    seeAt({1500, 1500});
    move({100.5, 0});
    move({0, 50});
    EXPECT_TRUE((cursor.asked(), cursor.placed({1600, 1550}))) << "where it was followed to";
    move({390, 0});
    push(Side::right, {1999, 1550}, {20, 0}); // from 1990.5, fractions included
    expectPush({1999, 1550}, {1999, 1550}, {11.5, 0});
    move({-99, 0});
    EXPECT_FALSE((cursor.asked(), cursor.placed({1700, 1550}))) << "somebody has moved it";
    push(Side::right, {1999, 1550}, {310, 0});
    expectPush({1999, 1550}, {1999, 1550}, {11, 0});
}

TEST_F(Held, IsFollowedWithWhatCameAfterTheQuestion) {
    seeAt({1900, 1500});
    cursor.asked();
    asksAlready = true;
    move({30, 0});
    move({20, 0});
    cursor.placed({1910, 1500}); // where it was before those
    asksAlready = false;
    push(Side::right, {1999, 1500}, {50, 0}); // from 1960
    expectPush({1999, 1500}, {1999, 1500}, {11, 0});
}

TEST_F(Held, IsFollowedByWhatCameBeforeTheQuestionOnlyWhereThePlaceHasIt) {
    seeAt({1900, 1500});
    cursor.asked();
    move({30, 0}); // the server tells it now, but it was before
    EXPECT_FALSE(cursor.placed({1910, 1500}));
    push(Side::right, {1999, 1500}, {100, 0});
    expectPush({1999, 1500}, {1999, 1500}, {11, 0}); // from 1910

    seeAt({1900, 1500});
    cursor.asked();
    asksAlready = true;
    move({30, 0});
    asksAlready = false;
    cursor.placed({1900, 1500});
    seeAt({1910, 1500}); // another question, which that motion was before
    push(Side::right, {1999, 1500}, {100, 0});
    expectPush({1999, 1500}, {1999, 1500}, {11, 0});
}

TEST_F(Held, KeepsItsFractionsWhereTheAnswerAgrees) {
    seeAt({1900, 1500});
    move({10.5, 3.5});
    cursor.asked();
    asksAlready = true;
    move({80.25, 20});
    EXPECT_TRUE(cursor.placed({1910, 1503}));
    stop(Side::right, {1999, 1523}, {80, 20}); // of the motion that was told last
    asksAlready = false;
    EXPECT_FALSE(take({1999, 1523})) << "from 1910.5";
    push(Side::right, {1999, 1523}, {80, 0});
    expectPush({1999, 1523}, {1999, 1523}, {80, 0});

    seeAt({1900, 1500});
    move({10.5, 3.5});
    cursor.asked();
    asksAlready = true;
    move({98.25, 20});
    EXPECT_TRUE(cursor.placed({1910, 1503}));
    stop(Side::right, {1999, 1523}, {98, 20});
    asksAlready = false;
    expectPush({1999, 1523}, {1999, 1503}, {9.75, 20});
}

TEST_F(Held, IsMovedBySomebodyElseOnlyWhereItWasFollowed) {
    move({5, 0});
    EXPECT_TRUE((cursor.asked(), cursor.placed({1500, 1500}))) << "nobody knew where it was";
    EXPECT_TRUE((cursor.asked(), cursor.placed({1600, 1500}))) << "no motion is read";
    move({5, 0});
    EXPECT_FALSE((cursor.asked(), cursor.placed({1700, 1500})));
    EXPECT_TRUE((cursor.asked(), cursor.placed({1800, 1500})));
    move({5, 0});
    EXPECT_TRUE((cursor.asked(), cursor.placed({1805, 1500})));
    EXPECT_TRUE((cursor.asked(), cursor.placed({1900, 1500})));
    cursor.release();
    EXPECT_TRUE((cursor.asked(), cursor.placed({100, 100})));
}

TEST_F(Held, StandsByAStopThatCameAfterTheQuestion) {
    seeAt({1990, 1500});
    cursor.asked();
    asksAlready = true;
    push(Side::right, {1999, 1500}, {30, 0});
    cursor.placed({1990, 1500});
    EXPECT_EQ(cursor.stoppedAt(), (Point{1999, 1500}));
    asksAlready = false;
    push(Side::right, {1999, 1500}, {10, 0});
    expectPush({1999, 1500}, {1999, 1500}, {31, 0});
}

TEST_F(Held, IsFollowedOnlyToItsSides) {
    seeAt({1990, 1500});
    move({50, 0}); // at an outer side, which stops it and tells nothing
    push(Side::right, {1999, 1500}, {10, 0});
    expectPush({1999, 1500}, {1999, 1500}, {10 + 0.99999999999, 0}); // the last pixel's end
}

TEST_F(Held, TakesNoPlaceForAStep) {
    cursor.put({1998, 1500});
    move({1, 0});
    cursor.jumped(false); // to 1500, say
    EXPECT_FALSE(take({1500, 1500}));
    push(Side::right, {1999, 1500}, {520, 0});
    expectPush({1999, 1500}, {1999, 1500}, {520, 0}); // from nobody knows where
    seeAt({1990, 1500});
    cursor.asked();
    cursor.jumped(true);
    EXPECT_TRUE(cursor.placed({1990, 1500}));
    push(Side::right, {1999, 1500}, {30, 0});
    expectPush({1999, 1500}, {1999, 1500}, {30, 0}); // not from 1990
}

TEST_F(Held, ForgetsWhatWasPushedWithTheScreen) {
    seeAt({1999, 1500});
    push(Side::right, {1999, 1500}, {20, 0});
    cursor.hold({0, 1000, 1000, 2000});
    EXPECT_FALSE(take({1999, 1500}));
    cursor.hold(middle);
    push(Side::right, {1999, 1500}, {20, 0});
    cursor.release();
    EXPECT_FALSE(take({1999, 1500}));
    cursor.hold(middle);
    push(Side::right, {1999, 1500}, {20, 0});
    cursor.forgetPush();
    EXPECT_FALSE(take({1999, 1500}));
}

TEST_F(Held, ForgetsItsMotionWithTheScreenAndInAJump) {
    move({20.5, 0});
    cursor.hold(middle);
    stop(Side::right, {1999, 1500}, {20, 0});
    expectPush({1999, 1500}, {1999, 1500}, {20, 0});
    move({20.5, 0});
    cursor.jumped(false);
    stop(Side::right, {1999, 1500}, {20, 0});
    expectPush({1999, 1500}, {1999, 1500}, {20, 0});
}

TEST_F(Held, IsKnownWhereItWasPutBeforeTheBarriersStand) {
    cursor.release();
    cursor.put({1990, 1500});
    cursor.hold(middle);
    push(Side::right, {1999, 1500}, {30, 0});
    expectPush({1999, 1500}, {1990, 1500}, {30, 0});

    cursor.put({1990, 1500});
    cursor.hold(middle); // another layout
    push(Side::right, {1999, 1500}, {30, 0});
    expectPush({1999, 1500}, {1999, 1500}, {30, 0}); // from nobody knows where

    cursor.release();
    cursor.put({1990, 1500});
    cursor.moved({-100, 0}, now, false); // without barriers nothing is followed
    cursor.hold(middle);
    push(Side::right, {1999, 1500}, {30, 0});
    expectPush({1999, 1500}, {1999, 1500}, {30, 0});
}
