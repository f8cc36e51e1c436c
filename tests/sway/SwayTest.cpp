#include "sway/SwaySession.h"

namespace desktop {
namespace {

TEST_F(Sway, KeepsTheCursorOnItsMonitorAgainstAThousandStepsASecond) {
    startWatched();
    hand->push(7, 0, 1500, mouseRate);
    hand->push(30, 2, 1500, mouseRate);
    EXPECT_EQ(timesOutside(), 0);
    EXPECT_TRUE(isDark());
}

TEST_F(Sway, SeesTheCursorOutsideWhereItIsNotHeld) {
    startWatched({.active = false});
    hand->push(7, 0, 300, mouseRate);
    EXPECT_GT(timesOutside(), 0) << "the watch of the other tests would see nothing";
}

TEST_F(Sway, KeepsTheCursorAlsoWhileAButtonIsHeld) {
    startWatched();
    hand->pressButton();
    hand->push(7, 0, 1000, mouseRate);
    hand->releaseButton();
    EXPECT_EQ(timesOutside(), 0);
}

TEST_F(Sway, LetsNoPushThroughWithoutThePushOption) {
    startWatched();
    hand->moveTo(1900, 500);
    hand->push(60, 0, 500, mouseRate);
    EXPECT_EQ(timesOutside(), 0);
    EXPECT_TRUE(isDark());
}

TEST_F(Sway, LetsAHardPushThroughAndHoldsOnTheOtherSide) {
    start({.pushOption = true, .velocity = 50});
    hand->moveTo(1900, 500);
    hand->push(1, 0, 100, 60);
    EXPECT_TRUE(isDark(2)) << "steps of one pixel are no push";
    hand->push(150, 0, 12, 60);
    EXPECT_TRUE(darkSoon(1));
    hand->moveTo(1990, 500);
    hand->push(-1, 0, 300, 250);
    EXPECT_TRUE(isDark(1)) << "it is held on the other side";
    EXPECT_TRUE(cursorIsOn(1));
}

TEST_F(Sway, IsPushedBackFromTheOtherSide) {
    start({.pushOption = true, .velocity = 50});
    hand->moveTo(1900, 500);
    hand->push(150, 0, 12, 60);
    ASSERT_TRUE(darkSoon(1));
    hand->moveTo(1940, 500);
    hand->push(-150, 0, 12, 60);
    EXPECT_TRUE(darkSoon(2));
    EXPECT_TRUE(cursorIsOn(0));
}

TEST_F(Sway, WarpsTheCursorBackWhereItIsNotToBeHeld) {
    start({.hold = false});
    hand->moveTo(2500, 500);
    hand->push(1, 0, 20, mouseRate);
    EXPECT_TRUE(cursorIsOn(0));
}

TEST_F(Sway, CatchesClicksOnADarkMonitor) {
    start();
    hand->moveTo(2500, 500);
    hand->pressButton();
    hand->releaseButton();
    EXPECT_EQ(backgrounds[1]->report().buttons, 0);
}

TEST_F(Sway, HoldsNothingWhileTheProductIsSwitchedOff) {
    start({.active = false});
    EXPECT_TRUE(isFree());
}

TEST_F(Sway, LiftsTheHoldWhileTheLeftHandKeysAreHeldAndAnchorsWhereTheyAreReleased) {
    start();
    SwayKeys keys(*sway);
    for (const std::uint32_t key : {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA})
        keys.press(key);
    EXPECT_TRUE(brightSoon()) << program->errors();
    hand->push(7, 0, 300, mouseRate);
    for (const std::uint32_t key : {KEY_LEFTMETA, KEY_LEFTALT, KEY_LEFTCTRL})
        keys.release(key);
    EXPECT_TRUE(darkSoon(1)) << program->errors();
    hand->push(-7, 0, 300, mouseRate);
    EXPECT_TRUE(cursorIsOn(1));
}

TEST_F(Sway, IsSwitchedByTheStoredShortcut) {
    constexpr int f2 = 120, option = 0x80000;
    start({.more = {{"customShortcut", shortcut(f2, option)}}});
    SwayKeys keys(*sway);
    keys.press(KEY_LEFTALT);
    keys.press(KEY_F2);
    EXPECT_TRUE(brightSoon()) << program->errors();
    keys.release(KEY_F2);
    keys.press(KEY_F2);
    EXPECT_TRUE(darkSoon(2));
    keys.release(KEY_F2);
    keys.release(KEY_LEFTALT);
}

TEST_F(Sway, HoldsAndDarkensAgainWhenTheOtherMonitorHasGoneAndComeBack) {
    start({.pushOption = true});
    sway->run("output HEADLESS-2 disable");
    sway->run("output HEADLESS-2 enable");
    EXPECT_TRUE(waitUntil([&] { return isDark(2); })) << program->errors();
    layBackground(1); // which may have gone with its monitor
    hand->moveTo(1900, 500);
    hand->push(150, 0, 12, 60);
    EXPECT_TRUE(waitUntil([&] { return !isDark(2); })) << program->errors();
    EXPECT_TRUE(cursorIsOn(1));
}

TEST_F(Sway, AnswersTheCommandLineAndIsKnownToTheDoctor) {
    start();
    const auto status = sway->spawn(programs() + "/palisor", {"status"});
    EXPECT_EQ(status->wait(), 0) << status->errors();
    for (const char* line : {"held HEADLESS-1\n",
                             "monitor HEADLESS-2 1280x1024+1920+0, scale 1, dark", "can hold: yes"})
        EXPECT_NE(status->output().find(line), std::string::npos) << status->output();
    const auto doctor = sway->spawn(programs() + "/palisor-doctor");
    doctor->wait();
    EXPECT_NE(doctor->output().find("the compositor is sway"), std::string::npos)
        << doctor->output();
}

TEST_F(Sway, HoldsAgainAfterTheConfigurationWasReadAnew) {
    startWatched();
    sway->run("reload");
    EXPECT_TRUE(waitUntil([&] {
        const int before = timesOutside();
        hand->moveTo(1900, 500);
        hand->push(20, 0, 50, mouseRate);
        return timesOutside() == before;
    }));
}

} // namespace
} // namespace desktop
