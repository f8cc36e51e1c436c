#include "kwin/KWinSession.h"

// What happens at the edge while a button is held, of which no layer of the program's is told.

namespace desktop {
namespace {

struct KWinDragging : KWin {
    /// With the push option on: 75 pixels in a frame cross. A button is down, and the cursor has
    /// come to the edge.
    void startDragging(const Setting& setting = {.pushOption = true, .velocity = 50}) {
        start(setting);
        hand->moveTo(1200, 300);
        hand->pressButton();
        hand->push(2, 1, 100, 250);
    }
    bool isLoweredSoon() {
        return waitUntil([this] { return kwin->evaluate("options.edgeBarrier") == "75"; });
    }
};

TEST_F(KWinDragging, LetsAHardPushThroughAndHoldsOnTheOtherSide) {
    startDragging();
    ASSERT_EQ(cursor().x, width - 1) << "two pixels at a time are no push";
    ASSERT_TRUE(isLoweredSoon()) << program->errors();
    for (int turn = 0; turn < 10; ++turn)
        hand->push(2, turn % 2 == 0 ? 1 : -1, 12, 125);
    EXPECT_EQ(cursor().x, width - 1) << "a slow hand adds nothing up";
    hand->push(150, 0, 6, 60);
    ASSERT_TRUE(cursorEndsOn(1)) << program->errors();
    EXPECT_TRUE(isClosedSoon());
    hand->moveTo(width + 30, 300);
    hand->push(-2, 0, 100, 250);
    EXPECT_EQ(cursor().x, width) << "it is held on the other side";
    hand->releaseButton();
}

TEST_F(KWinDragging, HoldsAgainstWhatIsNoPush) {
    // Pressed over, it is told of the cursor wherever that goes.
    Witness& pressed = witness(0);
    startDragging();
    ASSERT_TRUE(isLoweredSoon()) << program->errors();
    hand->push(1, 0, 400, 200);
    EXPECT_LE(pressed.report().farthestLeft, width - 1) << program->errors();
    hand->releaseButton();
}

TEST_F(KWinDragging, PutsTheCursorBackThatASlantedPushHasTakenOutside) {
    startDragging();
    ASSERT_TRUE(isLoweredSoon()) << program->errors();
    hand->push(100, 40, 3, 60);
    EXPECT_TRUE(cursorEndsOn(0)) << program->errors();
    EXPECT_FALSE(waitUntil([this] { return monitorOfCursor() == 1; }, std::chrono::seconds(1)));
    hand->releaseButton();
}

TEST_F(KWinDragging, HoldsAsBeforeWhereNoPushCrosses) {
    startDragging({});
    Witness& other = witness(1);
    hand->push(150, 0, 60, 60);
    EXPECT_TRUE(isClosed());
    EXPECT_EQ(cursor().x, width - 1);
    hand->releaseButton();
    EXPECT_EQ(other.report().entered, 0);
}

TEST_F(KWinDragging, HoldsAsBeforeWhenTheButtonIsUpAgain) {
    startDragging();
    ASSERT_TRUE(isLoweredSoon()) << program->errors();
    hand->releaseButton();
    ASSERT_TRUE(isClosedSoon());
    Witness& other = witness(1);
    hand->push(1, 0, 200, 200);
    EXPECT_EQ(other.report().entered, 0) << program->errors();
    hand->push(150, 0, 6, 60);
    EXPECT_TRUE(cursorEndsOn(1));
}

TEST_F(KWinDragging, HasTheUsersBarrierAgainAfterAKillInADrag) {
    startDragging();
    ASSERT_TRUE(isLoweredSoon()) << program->errors();
    program->signal(SIGKILL);
    program->wait();
    EXPECT_TRUE(isFreeSoon());
    hand->releaseButton();
}

} // namespace
} // namespace desktop
