#include "sway/SwaySession.h"

// At which speed a push crosses, and what one costs that cannot. The hand says itself when it
// moved, so that a machine which is busy otherwise changes nothing.

namespace desktop {
namespace {

constexpr int edge = 1920; // the first column of the second monitor

class SwayPush : public Sway {
  protected:
    /// From the last pixel but one of the first monitor.
    void push(double speed, int hz) {
        hand->moveTo(edge - 100, 500);
        ASSERT_TRUE(waitUntil([&] { return backgrounds[0]->report().isOver; }));
        hand->moveTo(edge - 2, 500);
        hand->pushAt(speed, 0.25, hz);
    }
    /// The program tells of each, and of few others.
    int crossings() const {
        const std::string told = program->errors();
        constexpr std::string_view one = "crossed to ";
        int count = 0;
        for (auto at = told.find(one); at != std::string::npos; at = told.find(one, at + 1))
            ++count;
        return count;
    }
};

TEST_F(SwayPush, CrossesFromTheSameSpeedOnWithEveryMouse) {
    constexpr int velocity = 50;
    constexpr double granted = 60 * 0.03 * velocity * velocity; // pixels a second
    start({.pushOption = true, .velocity = velocity});
    int crossed = 0;
    for (const int hz : {125, 500, 1000, 8000}) {
        push(0.85 * granted, hz);
        push(1.15 * granted, hz);
        ++crossed;
        EXPECT_TRUE(waitUntil([&] { return crossings() >= crossed; })) << hz << " Hz";
        EXPECT_EQ(crossings(), crossed) << hz << " Hz: the slower one crossed, too";
        hand->moveTo(edge + 100, 500);
        hand->moveTo(edge + 1, 500);
        hand->pushAt(-2 * granted, 0.25, 1000);
        ++crossed;
        ASSERT_TRUE(waitUntil([&] { return crossings() >= crossed; })) << "on the way back";
    }
}

TEST_F(SwayPush, WakesNobodyWhereNoneCrosses) {
    start({.pushOption = false});
    push(3000, 1000); // the strip is reached
    const long before = wakeups();
    constexpr int motions = 2000;
    hand->push(3, 0, motions, 1000);
    EXPECT_LT(wakeups() - before, motions / 100);
    EXPECT_EQ(crossings(), 0);
}

} // namespace
} // namespace desktop
