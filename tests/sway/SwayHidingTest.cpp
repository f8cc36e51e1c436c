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

/// A cursor that the compositor hides is over nothing until it moves, which what lies below is
/// told.
struct SwayHiding : Sway {
    bool isDrawn() const { return backgrounds[0]->report().isOver; }
    bool isGoneSoon() const {
        return waitUntil([this] { return !isDrawn(); });
    }
    bool isDrawnSoon() const {
        return waitUntil([this] { return isDrawn(); });
    }
    bool isDrawnInMotion() {
        return waitUntil([this] {
            hand->relative(1, 0);
            hand->relative(-1, 0);
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
        hand->push(7 * direction, 0, 7, 125); // onto the strip
        ASSERT_TRUE(isGoneSoon()) << "over the strip";
        hand->push(-20 * direction, 0, 3, 125);
        EXPECT_TRUE(isDrawnSoon()) << direction << program->errors();
        EXPECT_FALSE(waitUntil([this] { return !isDrawn(); }, std::chrono::seconds(1)));
    }
}

} // namespace
} // namespace desktop
