#include "sway/SwaySession.h"

namespace desktop {
namespace {

/// "1.10.1" of what the compositor says of its version.
std::string humanReadable(const std::string& version) {
    constexpr std::string_view key = R"("human_readable": ")";
    const auto begin = version.find(key) + key.size();
    return version.substr(begin, version.find('"', begin) - begin);
}

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
    // The window that was pressed is told of all that follows, also beyond its edge.
    EXPECT_GT(backgrounds[0]->report().farthestLeft, 1900);
    EXPECT_LT(backgrounds[0]->report().farthestLeft, 1920);
    EXPECT_EQ(timesOutside(), 0);
}

TEST_F(Sway, KeepsAlsoAMouseThatIsPluggedInLater) {
    startWatched();
    hand.emplace(*sway);
    hand->push(7, 0, 1000, mouseRate);
    hand->push(0, 7, 10, mouseRate);
    EXPECT_EQ(timesOutside(), 0);
}

TEST_F(Sway, KeepsTheCursorAtTheRatesAndSpeedsOfMice) {
    startWatched();
    for (const int rate : {125, 1000, 8000})
        for (const int speed : {3000, 30000})
            for (const bool down : {false, true}) {
                hand->moveTo(960, 540);
                if (down) hand->pressButton();
                hand->push(static_cast<double>(speed) / rate, 0, rate / 2, rate);
                if (down) hand->releaseButton();
                EXPECT_EQ(timesOutside(), 0) << rate << " Hz, " << speed << " px/s";
            }
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
    const auto home = witness(0);
    ASSERT_TRUE(waitUntil([&] {
        hand->relative(0, 1);
        return home->report().isOver;
    }));
    const int before = home->report().entered;
    hand->moveTo(2500, 500);
    hand->push(1, 0, 20, mouseRate);
    EXPECT_TRUE(waitUntil([&] { return home->report().entered > before; })) << program->errors();
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
    // In its release 1.10 the compositor gives no picture of it before something else has changed.
    for (const char* scale : {"2", "1"})
        sway->run(std::string("output HEADLESS-2 scale ") + scale);
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
    const std::string version = sway->ask("get_version");
    for (const std::string& line :
         {"session: OK, Wayland, the compositor is sway " + humanReadable(version),
          std::string("monitors: OK, 2 monitors: HEADLESS-1 1920x1080, HEADLESS-2 1280x1024"),
          "program: OK, Palisor runs (process " + std::to_string(program->pid())})
        EXPECT_NE(doctor->output().find(line), std::string::npos) << doctor->output();
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
