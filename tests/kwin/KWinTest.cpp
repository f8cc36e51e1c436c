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

TEST_F(KWin, KeepsTheCursorAlsoWhileAButtonIsHeld) {
    Witness& other = witness(1);
    start();
    hand->pressButton();
    hand->push(7, 0, 1500, mouseRate);
    EXPECT_EQ(cursor().x, width - 1);
    hand->releaseButton();
    EXPECT_EQ(other.report().entered, 0);
}

TEST_F(KWin, CrossesAsFarAsTheLastStepAfterALongPush) {
    start({.pushOption = true, .velocity = 50});
    hand->moveTo(1260, 300);
    hand->push(1, 0, 900, mouseRate);
    ASSERT_EQ(monitorOfCursor(), 0);
    hand->push(150, 0, 1, mouseRate);
    ASSERT_TRUE(cursorEndsOn(1));
    EXPECT_LE(cursor().x, width + 200);
}

TEST_F(KWin, HasTheUsersOwnBarrierAgainWhateverItIs) {
    begin({.configuration = "[EdgeBarrier]\nEdgeBarrier=37\nCornerBarrier=false\n"});
    ASSERT_TRUE(isFree(37, false));
    start();
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_TRUE(waitUntil([&] { return isFree(37, false); }));
}

TEST_F(KWin, HoldsAgainAfterTheUsersSettingsWereReadAnewAndGivesThemBack) {
    start();
    std::ofstream(kwin->configFolder() + "/kwinrc") << "[EdgeBarrier]\nEdgeBarrier=12\n";
    kwin->call({"/KWin", "org.kde.KWin", "reconfigure"});
    EXPECT_TRUE(isClosedSoon());
    program->signal(SIGKILL);
    program->wait();
    EXPECT_TRUE(waitUntil([&] { return isFree(12); }));
}

TEST_F(KWin, HoldsAgainWhenAnotherScriptHasOpenedTheBarrier) {
    start();
    // From 6.7 on KWin reads its settings once more soon after its start, upon which everything
    // that scripts have set is gone. So this one sets it again, as the program's does.
    kwin->load("const open = () => { options.edgeBarrier = 5; print(\"opened\"); };"
               "options.configChanged.connect(open);"
               "open();");
    ASSERT_TRUE(waitUntil([&] { return kwin->log().find("opened") != std::string::npos; }));
    EXPECT_TRUE(isClosed());
    program->signal(SIGKILL);
    program->wait();
    EXPECT_TRUE(waitUntil([&] { return isFree(5); }));
}

TEST_F(KWin, PutsTheCursorBackThatAnAbsoluteDeviceHasTakenOutside) {
    start();
    hand->moveTo(width + 640, 360);
    EXPECT_TRUE(cursorEndsOn(0)) << "where the barrier stops it, it has not left";
    EXPECT_TRUE(isClosedSoon());
}

TEST_F(KWin, HoldsOnTheMiddleOfThreeMonitorsOnBothSides) {
    begin({.outputs = 3});
    hand->moveTo(width + 640, 360);
    start();
    Witness &left = witness(0), &right = witness(2);
    hand->push(15, 1, 500, mouseRate);
    EXPECT_EQ(cursor().x, 2 * width - 1);
    hand->push(-15, -1, 500, mouseRate);
    EXPECT_LE(cursor().x, width + 1);
    EXPECT_EQ(left.report().entered + right.report().entered, 0);
}

TEST_F(KWin, IsSwitchedByTheStoredShortcut) {
    constexpr int f9 = 101, option = 0x80000;
    start({.more = {{"customShortcut", shortcut(f9, option)}}});
    const auto stroke = [&] {
        hand->press(KEY_LEFTALT);
        hand->press(KEY_F9);
        hand->release(KEY_F9);
        hand->release(KEY_LEFTALT);
    };
    stroke();
    EXPECT_TRUE(isFreeSoon()) << program->errors();
    stroke();
    EXPECT_TRUE(isClosedSoon());
}

TEST_F(KWin, SaysThatAnotherProgramHasTheShortcutAndLeavesIt) {
    constexpr int f9 = 101, option = 0x80000;
    const auto tell = [&](const std::string& method, const std::vector<std::string>& words) {
        std::vector<std::string> all{
            "--user", "call", "org.kde.kglobalaccel", "/kglobalaccel", "org.kde.KGlobalAccel",
            method};
        all.insert(all.end(), words.begin(), words.end());
        const auto call = kwin->spawn("busctl", all);
        ASSERT_EQ(call->wait(), 0) << call->errors();
    };
    const std::string altF9 = std::to_string(0x08000000 + 0x01000038); // in Qt's numbers
    tell("doRegister", {"as", "4", "other", "act", "Other", "Act"});
    tell("setShortcutKeys",
         {"asa(ai)u", "4", "other", "act", "Other", "Act", "1", "4", altF9, "0", "0", "0", "6"});
    start({.more = {{"customShortcut", shortcut(f9, option)}}});
    EXPECT_TRUE(program->waitForText("gives the shortcut Alt+F9 to somebody else"));
    const auto status = kwin->spawn(programs() + "/palisor", {"status"});
    EXPECT_EQ(status->wait(), 0);
    EXPECT_NE(status->output().find("can shortcut: no"), std::string::npos) << status->output();
}

TEST_F(KWin, IsWhatTheDoctorNames) {
    const auto asked = kwin->spawn(programs() + "/palisor", {"doctor"});
    asked->wait();
    EXPECT_NE(asked->output().find("the compositor is KWin 6."), std::string::npos)
        << asked->output();
}

TEST_F(KWin, LiftsTheHoldWhileTheLeftHandKeysAreHeldAndAnchorsWhereTheyAreReleased) {
    beginInstalled();
    start();
    for (const std::uint32_t key : {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA})
        hand->press(key);
    EXPECT_TRUE(isFreeSoon()) << program->errors();
    hand->push(7, 0, 300, mouseRate);
    for (const std::uint32_t key : {KEY_LEFTMETA, KEY_LEFTALT, KEY_LEFTCTRL})
        hand->release(key);
    EXPECT_TRUE(isClosedSoon()) << program->errors();
    hand->push(-7, 0, 400, mouseRate);
    EXPECT_EQ(cursor().x, width);
}

TEST_F(KWin, KeepsTheHoldWhileTheRightHandKeysAreHeld) {
    beginInstalled();
    start();
    for (const std::uint32_t key : {KEY_RIGHTCTRL, KEY_LEFTALT, KEY_RIGHTMETA})
        hand->press(key);
    hand->push(7, 0, 300, mouseRate);
    EXPECT_EQ(cursor().x, width - 1);
    for (const std::uint32_t key : {KEY_RIGHTCTRL, KEY_LEFTALT, KEY_RIGHTMETA})
        hand->release(key);
    EXPECT_TRUE(isClosed());
}

TEST_F(KWin, HoldsAgainWhenTheOtherMonitorHasGoneAndComeBack) {
    start({.pushOption = true});
    const auto set = [&](const std::string& what) {
        const auto setting = kwin->spawn("kscreen-doctor", {"output.Virtual-1." + what});
        setting->wait();
    };
    set("disable");
    EXPECT_TRUE(isFreeSoon()) << program->errors();
    set("enable");
    EXPECT_TRUE(isClosedSoon()) << program->errors();
    hand->moveTo(1260, 300);
    hand->push(150, 0, 12, 60);
    EXPECT_TRUE(cursorEndsOn(1));
}

TEST_F(KWin, HoldsBesideAScaledMonitor) {
    start({.pushOption = true});
    kwin->spawn("kscreen-doctor", {"output.Virtual-1.scale.1.5"})->wait();
    Witness& other = witness(1);
    ASSERT_TRUE(isClosedSoon());
    hand->moveTo(1260, 300);
    hand->push(2, 0, 500, 125);
    EXPECT_EQ(other.report().entered, 0);
    hand->push(150, 0, 12, 60);
    EXPECT_TRUE(cursorEndsOn(1));
}

TEST_F(KWin, IsWokenByItsOwnTimerAloneWhileTheCursorIsAwayFromTheEdges) {
    start();
    ASSERT_TRUE(program->waitForText("notices cannot be shown")); // the last thing of the start
    constexpr int seconds = 12;
    hand->push(1, 0, 125, 125);
    const long before = wakeups();
    for (int turn = 0; turn < seconds; ++turn)
        hand->push(turn % 2 == 0 ? 1 : -1, 0, 125, 125);
    // A refresh every three seconds, and a question of each script for commands.
    EXPECT_LE(wakeups() - before, seconds / 3 + 2);
}

TEST_F(KWin, HasAScriptForShortcutsOnlyWhereThereAreAny) {
    const auto hasScript = [&](const std::string& name) {
        const auto asked = kwin->spawn(
            "busctl", {"--user", "call", "org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting",
                       "isScriptLoaded", "s", name + "-" + std::to_string(program->pid()) + "-1"});
        asked->wait();
        return asked->output().find("true") != std::string::npos;
    };
    spawn({.more = {{"customShortcut", ""}, {"hardcodedShortcutEnabled", flag(false)}}});
    EXPECT_TRUE(waitUntil([&] { return hasScript("hold"); })) << program->errors();
    EXPECT_FALSE(hasScript("keys"));
    program.reset();
    start();
    EXPECT_TRUE(waitUntil([&] { return hasScript("keys"); })) << program->errors();
}

TEST_F(KWin, AnswersTheCommandLine) {
    start();
    const auto status = kwin->spawn(programs() + "/palisor", {"status"});
    EXPECT_EQ(status->wait(), 0) << status->errors();
    for (const char* line : {"held Virtual-0\n", "monitor Virtual-1 1280x720+1280+0, scale 1, dark",
                             "can hold: yes\n"})
        EXPECT_NE(status->output().find(line), std::string::npos) << status->output();
}

} // namespace
} // namespace desktop
