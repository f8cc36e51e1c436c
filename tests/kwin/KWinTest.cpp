#include "kwin/KWinSession.h"

namespace desktop {
namespace {

TEST_F(KWin, LetsTheCursorCrossWhereNothingHoldsIt) {
    Witness& other = witness(1);
    hand->push(7, 0, 300, mouseRate);
    EXPECT_GT(other.report().entered, 0) << "the watch of the other tests would see nothing";
    EXPECT_EQ(monitorOfCursor(), 1);
}

TEST_F(KWin, KeepsTheCursorOnItsMonitorAgainstAThousandStepsASecond) {
    Witness& before = witness(1);
    start();
    Witness& after = witness(1);
    hand->push(7, 0, 1500, mouseRate);
    hand->push(30, 2, 1500, mouseRate);
    EXPECT_EQ(before.report().entered + after.report().entered, 0);
    EXPECT_EQ(cursor().x, width - 1);
}

TEST_F(KWin, HasTheUsersBarrierAgainAfterAKill) {
    start();
    program->signal(SIGKILL);
    ASSERT_EQ(program->wait(), -SIGKILL);
    EXPECT_TRUE(isFreeSoon());
}

TEST_F(KWin, HasTheUsersBarrierAgainAfterAnOrderlyEnd) {
    start();
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_TRUE(isFreeSoon());
}

TEST_F(KWin, LetsAHardPushThroughAndHoldsOnTheOtherSide) {
    start({.pushOption = true, .velocity = 50});
    hand->moveTo(1260, 300);
    hand->push(1, 0, 100, 60);
    EXPECT_EQ(cursor().x, width - 1) << "steps of one pixel are no push";
    hand->push(150, 0, 12, 60);
    ASSERT_TRUE(cursorEndsOn(1)) << program->errors();
    EXPECT_TRUE(isClosedSoon());
    hand->moveTo(1300, 300);
    hand->push(-1, 0, 300, 250);
    EXPECT_EQ(cursor().x, width) << "it is held on the other side";
}

} // namespace
} // namespace desktop
