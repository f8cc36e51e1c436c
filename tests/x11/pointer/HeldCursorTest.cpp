#include "Held.h"

// How the cursor is followed on the screen that holds it.

using platform::Point;
using platform::x11::Box;
using platform::x11::Side;
using x11tests::Held;
using x11tests::middle;

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

TEST_F(Held, BeginsAPushWhereItWasPutBackOnlyFromThere) {
    cursor.put({1998, 1500});
    push(Side::right, {1999, 1500}, {20, 0});
    expectPush({1999, 1500}, {1998, 1500}, {20, 0});
    cursor.put({1998, 1500});
    move({-1, 0});
    push(Side::right, {1999, 1500}, {20, 0}); // from 1997
    expectPush({1999, 1500}, {1999, 1500}, {18, 0});
}

// Of a fast mouse what is stopped is told and what leads there is not.
TEST_F(Held, TakesAMotionThatThePlaceHasForNoLaterOne) {
    seeAt({1980, 1500});
    move({10, 0});
    seeAt({1990, 1500});
    now += 0.008;
    stop(Side::right, {1999, 1500}, {10, 0});
    expectPush({1999, 1500}, {1999, 1500}, {10, 0});
}

TEST_F(Held, CountsAStopWithoutItsMotionWholeHoweverLongTheOneBeforeTook) {
    move({0, 1});
    seeAt({1999, 1500});
    move({0, 1}, 12);
    stop(Side::right, {1999, 1500}, {40, 0});
    now += 0.010;
    stop(Side::right, {1999, 1500}, {40, 0});
    expectPush({1999, 1500}, {1999, 1500}, {80, 0});
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
