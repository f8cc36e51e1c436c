#include "Session.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/TestWindow.h"
#include "testing/eye/Eye.h"

#include <cmath>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/wait.h>

using support::GammaRamp;
using x11tests::Session;

namespace {

struct X11Gamma : testing::Test {
    void SetUp() override {
        if (!desktop.canGamma()) GTEST_SKIP() << "needs Xorg with the dummy driver";
        first = eye.gamma("DUMMY0");
        second = eye.gamma("DUMMY1");
    }
    std::unique_ptr<platform::Window> dark(std::size_t screen, float alpha) {
        platform::WindowStyle style;
        style.frame = session->displays.screens()[screen].frame;
        style.alpha = alpha;
        style.background = platform::WindowColour::black;
        auto window = session->windows.create(style);
        window->makeKeyAndOrderFront();
        session->connection.sync();
        return window;
    }
    static pid_t onlyChildOf(pid_t process) {
        const std::string id = std::to_string(process);
        pid_t child = 0;
        std::ifstream("/proc/" + id + "/task/" + id + "/children") >> child;
        return child;
    }
    static GammaRamp scaled(GammaRamp ramp, double factor) {
        for (auto* colour : {&ramp.red, &ramp.green, &ramp.blue})
            for (auto& value : *colour)
                value = static_cast<std::uint16_t>(std::lround(value * factor));
        return ramp;
    }
    bool waitForGamma(const std::string& output, const GammaRamp& wanted) {
        return session->loop.runUntil([&] { return eye.gamma(output) == wanted; });
    }

    bool turnsInto(support::Colour colour) {
        return session->loop.runUntil([&] { return eye.colour(2200, 300) == colour; });
    }

    support::PrivateDesktop desktop{"1920x1080+0+0,1280x1024+1920+56"};
    support::Eye eye{desktop.display()};
    std::unique_ptr<Session> session = std::make_unique<Session>(desktop.display(), GAMMA_GUARD);
    GammaRamp first, second;
};

} // namespace

TEST_F(X11Gamma, DarkensTheCoveredMonitorAndIsPutBackExactly) {
    auto window = dark(1, 0.75f);
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
    EXPECT_EQ(eye.gamma("DUMMY0"), first);
    window->setAlpha(0.5f);
    session->connection.sync();
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.5));
    window->orderOut();
    session->connection.sync();
    EXPECT_EQ(eye.gamma("DUMMY1"), second);
}

TEST_F(X11Gamma, IsNotDarkenedTwiceByTwoWindows) {
    auto one = dark(1, 0.5f);
    auto two = dark(1, 0.75f);
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
    two.reset();
    session->connection.sync();
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.5));
    one.reset();
    session->connection.sync();
    EXPECT_EQ(eye.gamma("DUMMY1"), second);
}

TEST_F(X11Gamma, IsPutBackAtAnOrderlyEnd) {
    {
        auto window = dark(1, 1);
        ASSERT_NE(eye.gamma("DUMMY1"), second);
    }
    session.reset();
    EXPECT_EQ(eye.gamma("DUMMY1"), second);
}

TEST_F(X11Gamma, IsPutBackWhenTheProgramIsKilled) {
    auto darkener = desktop.spawn(DARKENER, {GAMMA_GUARD, "0.75"});
    ASSERT_TRUE(darkener->waitForText("shown")) << darkener->errors();
    ASSERT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
    ASSERT_EQ(eye.gamma("DUMMY0"), scaled(first, 0.25));
    const pid_t guard = onlyChildOf(darkener->pid());
    ASSERT_GT(guard, 0);

    darkener->signal(SIGKILL);
    ASSERT_EQ(darkener->wait(), -SIGKILL);
    // The desktop made this process the one that inherits orphans.
    int status = -1;
    ASSERT_EQ(waitpid(guard, &status, 0), guard);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(eye.gamma("DUMMY1"), second);
    EXPECT_EQ(eye.gamma("DUMMY0"), first);
}

TEST_F(X11Gamma, IsPutBackAlsoWhenTheHelperWasAskedToEndFirst) {
    auto darkener = desktop.spawn(DARKENER, {GAMMA_GUARD, "1"});
    ASSERT_TRUE(darkener->waitForText("shown")) << darkener->errors();
    const pid_t guard = onlyChildOf(darkener->pid());
    ASSERT_GT(guard, 0);
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        ASSERT_EQ(kill(guard, signal), 0);
    ASSERT_NE(eye.gamma("DUMMY1"), second);
    darkener->signal(SIGKILL);
    ASSERT_EQ(darkener->wait(), -SIGKILL);
    ASSERT_EQ(waitpid(guard, nullptr, 0), guard);
    EXPECT_EQ(eye.gamma("DUMMY1"), second);
}

TEST_F(X11Gamma, LeavesNoHelperBehindAtAnOrderlyEnd) {
    auto window = dark(1, 0.5f);
    std::string children = "/proc/self/task/" + std::to_string(getpid()) + "/children";
    auto guards = [&] {
        int count = 0;
        std::ifstream list(children);
        for (pid_t child; list >> child;) {
            std::string name;
            std::ifstream("/proc/" + std::to_string(child) + "/comm") >> name;
            count += name == "gamma-guard";
        }
        return count;
    };
    // The kernel names a new process a moment after its parent goes on.
    EXPECT_TRUE(session->loop.runUntil([&] { return guards() == 1; }));
    window.reset();
    session.reset();
    EXPECT_EQ(guards(), 0);
}

TEST_F(X11Gamma, GivesWayToACompositorAndTakesOverWhenItGoes) {
    auto window = dark(1, 0.75f);
    ASSERT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
    support::TestWindow beneath(desktop.display(), {2000, 100, 600, 400}, {255, 255, 255});
    support::Hand hand(desktop.display());
    hand.moveTo(2200, 300);

    desktop.startCompositor();
    EXPECT_TRUE(waitForGamma("DUMMY1", second));
    session->connection.sync();
    EXPECT_TRUE(turnsInto({64, 64, 64}));
    hand.click(1);
    EXPECT_EQ(beneath.presses(), 0);

    desktop.stopCompositor();
    EXPECT_TRUE(waitForGamma("DUMMY1", scaled(second, 0.25)));
    session->connection.sync();
    EXPECT_TRUE(turnsInto({255, 255, 255}));
    hand.click(1);
    EXPECT_EQ(beneath.presses(), 0);
}

TEST_F(X11Gamma, FollowsTheMonitorsWhenOneIsUnplugged) {
    auto window = dark(1, 0.75f);
    desktop.unplug("DUMMY1");
    ASSERT_TRUE(session->loop.runUntil([&] { return session->displays.screens().size() == 1; }));
    session->connection.sync();
    EXPECT_EQ(eye.gamma("DUMMY0"), first);
    desktop.plug("DUMMY1", "1280x1024+1920+56");
    EXPECT_TRUE(waitForGamma("DUMMY1", scaled(second, 0.25)));
    window.reset();
    session->connection.sync();
    EXPECT_EQ(eye.gamma("DUMMY1"), second);
    EXPECT_EQ(eye.gamma("DUMMY0"), first);
}
