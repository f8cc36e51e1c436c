#include "layershell/LayerShellSession.h"

namespace desktop {
namespace {

TEST_P(LayerShell, PutsTheCursorBackAgainstAThousandStepsASecond) {
    start();
    hand->push(7, 0, 500, mouseRate);
    hand->push(30, 2, 500, mouseRate);
    EXPECT_TRUE(isDark(2));
    EXPECT_TRUE(cursorIsOn(0));
}

TEST_P(LayerShell, LetsTheCursorLeaveWhereItIsNotHeld) {
    start({.active = false});
    hand->push(7, 0, 500, mouseRate);
    EXPECT_TRUE(cursorIsOn(1)) << "the other tests would prove nothing";
}

TEST_P(LayerShell, PutsTheCursorBackAfterADrag) {
    start();
    hand->pressButton();
    hand->push(30, 0, 100, mouseRate);
    hand->releaseButton();
    hand->relative(1, 0);
    EXPECT_TRUE(cursorIsOn(0));
}

TEST_P(LayerShell, LetsAHardPushThroughAndHoldsOnTheOtherSide) {
    start({.pushOption = true, .velocity = 50});
    moveTo(1900, 500);
    hand->push(1, 0, 100, 60);
    EXPECT_TRUE(isDark(2)) << "steps of one pixel are no push";
    hand->push(150, 0, 12, 60);
    EXPECT_TRUE(darkSoon(1));
    moveTo(1990, 500);
    hand->push(-1, 0, 300, 250);
    EXPECT_TRUE(isDark(1)) << "it is held on the other side";
    EXPECT_TRUE(cursorIsOn(1));
}

TEST_P(LayerShell, IsPushedBackFromTheOtherSide) {
    start({.pushOption = true, .velocity = 50});
    moveTo(1900, 500);
    hand->push(150, 0, 12, 60);
    ASSERT_TRUE(darkSoon(1));
    moveTo(1940, 500);
    hand->push(-150, 0, 12, 60);
    EXPECT_TRUE(darkSoon(2));
    EXPECT_TRUE(cursorIsOn(0));
}

TEST_P(LayerShell, CatchesClicksOnADarkMonitor) {
    start();
    moveTo(2500, 500);
    hand->pressButton();
    hand->releaseButton();
    EXPECT_EQ(backgrounds[1]->report().buttons, 0);
}

TEST_P(LayerShell, IsFreeAndBrightAfterAnOrderlyEndAndAfterAKill) {
    for (const int signal : {SIGTERM, SIGKILL}) {
        start();
        program->signal(signal);
        EXPECT_EQ(program->wait(), signal == SIGTERM ? 0 : -SIGKILL);
        EXPECT_TRUE(brightSoon());
        const Witness other(compositor->socket(), 1, Witness::Where::aboveEverything, 0);
        moveTo(1900, 500);
        hand->push(20, 0, 50, mouseRate);
        EXPECT_TRUE(other.report().isOver);
        moveTo(960, 540);
    }
}

TEST_P(LayerShell, IsSwitchedByCommandAndTellsWhatTheCompositorDoesNotAllow) {
    start();
    const std::string status = told({"status"});
    for (const std::string& line : {std::string("held HEADLESS-1\n"), std::string("put back")})
        EXPECT_NE(status.find(line), status.npos) << status;
    const auto doctor = compositor->spawn(programs() + "/palisor-doctor");
    doctor->wait();
    EXPECT_NE(doctor->output().find(std::string("the compositor is ") + GetParam()),
              std::string::npos)
        << doctor->output();
    told({"off"});
    EXPECT_TRUE(brightSoon());
    told({"on"});
    EXPECT_TRUE(darkSoon(2));
    told({"cross", "HEADLESS-2"});
    EXPECT_TRUE(darkSoon(1));
    EXPECT_TRUE(cursorIsOn(1));
}

class BindingCompositor : public LayerShell {};

TEST_P(BindingCompositor, SwitchesByTheStoredShortcut) {
    constexpr int f2 = 120, option = 0x80000;
    start({.more = {{"customShortcut", shortcut(f2, option)}}});
    support::SwayKeys keys(compositor->socket());
    for (const bool dark : {false, true}) {
        keys.press(KEY_LEFTALT);
        keys.press(KEY_F2);
        keys.release(KEY_F2);
        keys.release(KEY_LEFTALT);
        EXPECT_TRUE(dark ? darkSoon(2) : brightSoon()) << program->errors();
    }
}

TEST_P(BindingCompositor, LiftsTheHoldWhileTheLeftHandKeysAreHeld) {
    start();
    support::SwayKeys keys(compositor->socket());
    for (const std::uint32_t key : {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA})
        keys.press(key);
    EXPECT_TRUE(brightSoon()) << program->errors();
    hand->push(7, 0, 300, mouseRate);
    for (const std::uint32_t key : {KEY_LEFTMETA, KEY_LEFTALT, KEY_LEFTCTRL})
        keys.release(key);
    EXPECT_TRUE(darkSoon(1)) << program->errors();
    EXPECT_TRUE(cursorIsOn(1));
}

class UnboundCompositor : public LayerShell {};

TEST_P(UnboundCompositor, SaysWhichLineOfTheConfigurationMakesAShortcut) {
    constexpr int f2 = 120, option = 0x80000;
    start({.more = {{"customShortcut", shortcut(f2, option)}}});
    EXPECT_TRUE(program->waitForText("command=\"palisor toggle\"/></keybind> to rc.xml"))
        << program->errors();
    const std::string status = told({"status"});
    EXPECT_NE(status.find("can binding: no"), status.npos) << status;
    EXPECT_NE(status.find("can modifiers: no"), status.npos) << status;
}

INSTANTIATE_TEST_SUITE_P(On, BindingCompositor, testing::Values("wayfire"));
INSTANTIATE_TEST_SUITE_P(On, UnboundCompositor, testing::Values("labwc"));
INSTANTIATE_TEST_SUITE_P(On, LayerShell, testing::Values("labwc", "wayfire"),
                         [](const auto& row) { return std::string(row.param); });

} // namespace
} // namespace desktop
