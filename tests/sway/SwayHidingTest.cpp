#include "sway/SwaySession.h"

// The cursor hider: the compositor hides a cursor that rests, and strips tell of hot borders.

namespace desktop {
namespace {

Setting hider(bool timeMode, bool hotBorders, int seconds = 1) {
    return {.product = "vellumor",
            .more = {{"SCHEDULE", text(std::to_string(seconds))},
                     {"HOT_BOUNDS", text(hotBorders ? "1" : "0")},
                     {"TIME_MODE", flag(timeMode)},
                     {"STAY_HIDDEN", flag(false)}}};
}

/// Before a white background, so that it is seen whether the cursor is drawn.
struct SwayHiding : Sway {
    bool isDrawn() const { return !sway->isOfOneColour(1); }
    bool isGoneSoon() const {
        return waitUntil([this] { return !isDrawn(); });
    }
    bool isDrawnSoon() const {
        return waitUntil([this] { return isDrawn(); });
    }
    /// While the hand moves.
    bool isDrawnInMotion() {
        return waitUntil([this] {
            hand->push(1, 1, 1, mouseRate);
            hand->push(-1, -1, 1, mouseRate);
            return isDrawn();
        });
    }
    void startHidden() {
        start(hider(true, false));
        ASSERT_TRUE(isDrawnInMotion());
        ASSERT_TRUE(isGoneSoon()) << program->errors();
    }
};

TEST_F(SwayHiding, IsNotDoneWithoutTheProduct) {
    start({.product = "vellumor", .active = false, .more = hider(true, false).more});
    EXPECT_TRUE(isDrawnInMotion());
    EXPECT_FALSE(waitUntil([this] { return !isDrawn(); }, std::chrono::seconds(3)));
}

TEST_F(SwayHiding, FollowsAPauseAndEndsWithEachMovement) {
    startHidden();
    for (int time = 0; time < 3; ++time) {
        EXPECT_TRUE(isDrawnInMotion()) << time;
        EXPECT_TRUE(isGoneSoon()) << time;
    }
}

TEST_F(SwayHiding, IsNotEndedByTyping) {
    startHidden();
    SwayKeys keys(*sway);
    for (int time = 0; time < 3; ++time) {
        keys.press(KEY_A);
        keys.release(KEY_A);
        EXPECT_FALSE(isDrawn());
    }
    EXPECT_TRUE(isDrawnInMotion());
}

TEST_F(SwayHiding, EndsWhereTheProductIsSwitchedOff) {
    startHidden();
    ASSERT_EQ(sway->spawn(programs() + "/vellumor", {"off"})->wait(), 0);
    EXPECT_TRUE(isDrawnSoon());
}

TEST_F(SwayHiding, EndsHoweverTheProgramDoes) {
    for (const int signal : {SIGTERM, SIGKILL}) {
        begin({});
        startHidden();
        program->signal(signal);
        program->wait();
        EXPECT_TRUE(isDrawnSoon()) << signal;
        EXPECT_FALSE(waitUntil([this] { return !isDrawn(); }, std::chrono::seconds(2))) << signal;
    }
}

TEST_F(SwayHiding, LeavesTheUsersOwnTime) {
    begin({.configuration = "seat * hide_cursor 150"});
    start(hider(true, false, 30));
    ASSERT_TRUE(isDrawnInMotion());
    ASSERT_EQ(sway->spawn(programs() + "/vellumor", {"off"})->wait(), 0);
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(SwayHiding, IsDoneAtAHotBorderAndEndsInside) {
    start(hider(false, true));
    for (const int direction : {-1, 1}) {
        hand->moveTo(direction < 0 ? 50 : 1869, 500);
        ASSERT_TRUE(isDrawnInMotion());
        hand->push(7 * direction, 0, 7, 125); // onto the last pixel
        EXPECT_TRUE(isGoneSoon()) << direction << program->errors();
        hand->push(-20 * direction, 0, 3, 125);
        EXPECT_TRUE(isDrawnSoon()) << direction << program->errors();
        EXPECT_FALSE(waitUntil([this] { return !isDrawn(); }, std::chrono::seconds(1)));
    }
}

} // namespace
} // namespace desktop
