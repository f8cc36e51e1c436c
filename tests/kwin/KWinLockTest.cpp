#include "kwin/PlasmaSession.h"

// The lock screen of KWin's session. Its greeter needs nothing of Plasma's shell.

namespace desktop {
namespace {

class KWinLock : public ShownKWin {
  protected:
    void SetUp() override {
        ShownKWin::SetUp();
        if (!IsSkipped()) beginShown({.locks = true});
    }
    void lock() {
        kwin->login()->lock();
        ASSERT_TRUE(waitUntil([&] { return kwin->login()->isLocked(); })) << kwin->log();
    }
    void unlock() {
        kwin->login()->unlock();
        ASSERT_TRUE(waitUntil([&] { return !kwin->login()->isLocked(); })) << kwin->log();
    }
    /// Of the greeter on the second monitor, on which nothing else is bright. The cursor moves
    /// there, as KWin may leave a monitor undrawn on which nothing does.
    double brightness() {
        int x = width + 640;
        EXPECT_TRUE(waitUntil([&] {
            hand->moveTo(++x, 360);
            return picture(1).brightness() > 20;
        })) << kwin->log();
        return atRest(1).brightness();
    }
};

TEST_F(KWinLock, IsNotCoveredByTheDarknessOfTheOtherMonitors) {
    lock();
    const double before = brightness();
    keep("lock-without");
    hand.reset();
    kwin.reset();
    beginShown({.locks = true});
    start({.othersDark = 20});
    lock();
    EXPECT_NEAR(brightness(), before, 5);
    keep("lock");
}

TEST_F(KWinLock, KeepsTheKeysOfTheShortcut) {
    constexpr int f9 = 101, option = 0x80000;
    start({.more = {{"customShortcut", shortcut(f9, option)}}});
    const auto stroke = [&] {
        for (const std::uint32_t key : {KEY_LEFTALT, KEY_F9})
            hand->press(key);
        for (const std::uint32_t key : {KEY_F9, KEY_LEFTALT})
            hand->release(key);
    };
    lock();
    stroke();
    unlock();
    ASSERT_TRUE(isClosedSoon()) << "it was switched off";
    stroke();
    EXPECT_TRUE(isFreeSoon()) << program->errors();
}

TEST_F(KWinLock, LetsTheCursorGoWhichIsHeldAgainAfterwards) {
    start({.pushOption = true});
    for (int i = 0; i < 2; ++i) {
        lock();
        EXPECT_TRUE(isFreeSoon()) << program->errors();
        hand->push(50, 0, 60, 60);
        EXPECT_TRUE(cursorEndsOn(1)) << "there is a field for the password as well";
        hand->push(-50, 0, 60, 60);
        EXPECT_TRUE(cursorEndsOn(0));
        unlock();
        ASSERT_TRUE(isClosedSoon()) << program->errors();
        hand->moveTo(1260, 300);
        hand->push(1, 0, 100, 60);
        EXPECT_EQ(cursor().x, width - 1);
    }
    hand->push(150, 0, 12, 60);
    EXPECT_TRUE(cursorEndsOn(1)) << program->errors();
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_TRUE(isFreeSoon());
}

} // namespace
} // namespace desktop
