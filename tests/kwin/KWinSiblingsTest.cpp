#include "kwin/KWinSession.h"
#include "testing/sway/SwayIdle.h"

// What the other products do in a session of KWin.

namespace desktop {
namespace {

struct KWinSiblings : KWin {
    std::string shownDesktop() {
        return kwin->evaluate("workspace.desktops.indexOf(workspace.currentDesktop) + \"\"");
    }
    bool showsSoon(const std::string& desktop) {
        return waitUntil([&] { return shownDesktop() == desktop; });
    }
    void tell(const std::string& command) {
        const auto client = kwin->spawn(programs() + "/" + product, {command});
        EXPECT_EQ(client->wait(), 0) << client->errors();
    }
    std::string product;
};

TEST_F(KWinSiblings, TheWrapAroundComesOutAtTheLeftWhereItHasGoneAtTheRight) {
    start({.product = "orbisant", .more = armedSides({1, 3})});
    goTo(2 * width - 50, 300);
    hand->push(7, 0, 8, 125);
    EXPECT_TRUE(waitUntil([this] { return cursor().x < width; })) << program->errors();
    EXPECT_EQ(cursor().y, 300);
}

TEST_F(KWinSiblings, TheWrapAroundComesOutAtTheRightWhereItHasGoneAtTheLeft) {
    start({.product = "orbisant", .more = armedSides({1, 3})});
    goTo(50, 300);
    hand->push(-7, 0, 8, 125);
    EXPECT_TRUE(waitUntil([this] { return cursor().x >= width; })) << program->errors();
}

TEST_F(KWinSiblings, TheWrapAroundComesOutBelowWhereItHasGoneAbove) {
    start({.product = "orbisant", .more = armedSides({2})});
    hand->moveTo(640, 50);
    hand->push(0, -7, 8, 125);
    EXPECT_TRUE(waitUntil([this] { return cursor().y > 360; })) << program->errors();
}

TEST_F(KWinSiblings, TheDesktopSwitcherGoesToTheDesktopAtTheRight) {
    begin({.configuration = "[Desktops]\nNumber=2\nRows=1\n"});
    start({.product = "quenlow", .more = armedSides({1, 3})});
    ASSERT_EQ(shownDesktop(), "0");
    goTo(2 * width - 50, 300);
    hand->push(7, 0, 8, 125);
    EXPECT_TRUE(showsSoon("1")) << program->errors();
}

TEST_F(KWinSiblings, TheDesktopSwitcherGoesToTheDesktopAtTheLeft) {
    begin({.configuration = "[Desktops]\nNumber=2\nRows=1\n"});
    kwin->evaluate("(workspace.slotSwitchDesktopRight(), 0)");
    start({.product = "quenlow", .more = armedSides({1, 3})});
    ASSERT_TRUE(showsSoon("1"));
    goTo(50, 300);
    hand->push(-7, 0, 8, 125);
    EXPECT_TRUE(showsSoon("0")) << program->errors();
}

/// The switcher has just gone to the second desktop of nine.
struct KWinSecondApproach : KWinSiblings {
    void switchOnce() {
        begin({.configuration = "[Desktops]\nNumber=9\nRows=1\n"});
        start({.product = "quenlow", .more = armedSides({1, 3})});
        goTo(2 * width - 20, 300);
        hand->push(7, 0, 4, 125);
        ASSERT_TRUE(showsSoon("1")) << program->errors();
    }
    void goInAndOut() {
        hand->push(-7, 0, 3, 125);
        hand->push(7, 0, 4, 125);
    }
    /// Nothing wakes it any longer but its own timer.
    bool restsSoon() {
        constexpr int enough = 20;
        long last = 0;
        int same = 0;
        return waitUntil([&] {
            const long now = wakeups();
            same = std::exchange(last, now) == now ? same + 1 : 0;
            (void)shownDesktop(); // takes a frame or more
            return same == enough;
        });
    }
};

TEST_F(KWinSecondApproach, IsFeltAgainAndAgain) {
    switchOnce();
    for (int approach = 2; approach < 9; ++approach)
        goInAndOut();
    EXPECT_TRUE(showsSoon("8")) << shownDesktop() << program->errors();
}

TEST_F(KWinSecondApproach, IsFeltOfACursorThatHadRestedAtTheEdge) {
    switchOnce();
    for (const char* shown : {"2", "3"}) {
        ASSERT_TRUE(restsSoon());
        goInAndOut();
        ASSERT_TRUE(showsSoon(shown)) << program->errors();
    }
}

TEST_F(KWinSecondApproach, IsFeltByAProgramThatReadsBothTooLate) {
    switchOnce();
    program->signal(SIGSTOP);
    goInAndOut();
    program->signal(SIGCONT);
    EXPECT_TRUE(showsSoon("2")) << program->errors();
}

TEST_F(KWinSiblings, TheWrapAroundFeelsASecondApproachRightAfterTheFirst) {
    start({.product = "orbisant", .more = armedSides({1, 3})});
    goTo(2 * width - 50, 300);
    for (int turn = 0; turn < 6; ++turn) {
        hand->push(7, 0, 32, 125);
        ASSERT_TRUE(waitUntil([this] { return cursor().x < width; })) << turn << program->errors();
        hand->push(-7, 0, 32, 125);
        ASSERT_TRUE(waitUntil([this] { return cursor().x >= width; })) << turn << program->errors();
    }
}

TEST_F(KWinSiblings, KWinDoesNotGoIdleWhileTheDisplaysAreToStayOn) {
    product = "stay-awake";
    const auto isIdleSoon = [this](std::chrono::milliseconds limit) {
        const support::SwayIdle idle(kwin->socket(), std::chrono::milliseconds(200));
        return waitUntil([&] { return idle.isIdle(); }, limit);
    };
    constexpr std::chrono::seconds longer{2};
    ASSERT_TRUE(isIdleSoon(support::generous));
    start({.product = product});
    ASSERT_TRUE(program->waitForText("kIOReturnSuccess")) << program->errors();
    EXPECT_FALSE(isIdleSoon(longer));
    tell("off");
    EXPECT_TRUE(isIdleSoon(support::generous)) << "switched off";
    tell("on");
    EXPECT_FALSE(isIdleSoon(longer));
    program->signal(SIGKILL);
    program->wait();
    EXPECT_TRUE(isIdleSoon(support::generous)) << "killed";
}

/// The effect, as the compositor tells of it, and the user's file.
struct KWinHiding : KWinSiblings {
    Setting hider(bool timeMode, int seconds = 2) {
        product = "vellumor";
        return {.product = product,
                .more = {{"SCHEDULE", text(std::to_string(seconds))},
                         {"HOT_BOUNDS", text("0")},
                         {"TIME_MODE", flag(timeMode)},
                         {"STAY_HIDDEN", flag(false)}}};
    }
    bool hasEffect() {
        const auto asked =
            kwin->spawn("busctl", {"--user", "call", "org.kde.KWin", "/Effects",
                                   "org.kde.kwin.Effects", "isEffectLoaded", "s", "hidecursor"});
        asked->wait();
        return asked->output().find("true") != std::string::npos;
    }
    bool hasEffectSoon(bool on) {
        return waitUntil([&] { return hasEffect() == on; });
    }
    std::string configuration() const {
        std::ifstream file(kwin->configFolder() + "/kwinrc");
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(KWinHiding, IsTheCompositorsEffectWhileTheProductIsOn) {
    start(hider(true));
    EXPECT_TRUE(hasEffectSoon(true)) << program->errors();
    tell("off");
    EXPECT_TRUE(hasEffectSoon(false));
    tell("on");
    EXPECT_TRUE(hasEffectSoon(true));
    EXPECT_TRUE(waitUntil([this] {
        return configuration().find("hidecursor") == std::string::npos;
    })) << "the user's file is as it was: "
        << configuration();
}

TEST_F(KWinHiding, EndsHoweverTheProgramDoes) {
    for (const int signal : {SIGTERM, SIGKILL}) {
        begin();
        start(hider(true));
        ASSERT_TRUE(hasEffectSoon(true)) << program->errors();
        program->signal(signal);
        program->wait();
        EXPECT_TRUE(hasEffectSoon(false)) << signal;
    }
}

/// The strips along a hot border have a cursor without a picture.
TEST_F(KWinHiding, IsDoneAtAHotBorderAndEndsInside) {
    Setting setting = hider(false);
    setting.more["HOT_BOUNDS"] = text("1");
    std::vector<std::unique_ptr<Witness>> desktops;
    for (const std::size_t monitor : {0U, 1U})
        desktops.push_back(std::make_unique<Witness>(kwin->socket(), monitor,
                                                     Witness::Where::belowEverything, white));
    start(setting);
    for (const int direction : {-1, 1}) {
        const auto isOverTheDesktop = [&] { return desktops[direction > 0]->report().isOver; };
        goTo(direction < 0 ? 50 : 2 * width - 50, 300);
        ASSERT_TRUE(waitUntil(isOverTheDesktop)) << direction;
        hand->push(7 * direction, 0, 8, 125);
        EXPECT_TRUE(waitUntil([&] { return !isOverTheDesktop(); })) << direction;
        hand->push(-20 * direction, 0, 3, 125);
        EXPECT_TRUE(waitUntil(isOverTheDesktop)) << direction << program->errors();
    }
}

TEST_F(KWinHiding, LeavesTheUsersOwnEffect) {
    begin({.configuration = "[Plugins]\nhidecursorEnabled=true\n\n"
                            "[Effect-hidecursor]\nInactivityDuration=30\n"});
    ASSERT_TRUE(hasEffectSoon(true));
    start(hider(true));
    tell("off");
    program->signal(SIGTERM);
    program->wait();
    EXPECT_TRUE(hasEffect());
    EXPECT_NE(configuration().find("InactivityDuration=30\n"), std::string::npos);
}

} // namespace
} // namespace desktop
