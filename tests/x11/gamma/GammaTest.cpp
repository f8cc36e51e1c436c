#include "GammaDesktop.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/TestWindow.h"

#include <filesystem>
#include <fstream>
#include <sys/wait.h>

using x11tests::GammaRamp;
using x11tests::scaled;
using x11tests::Session;

namespace {

struct X11Gamma : x11tests::GammaDesktop {
    bool turnsInto(support::Colour colour) {
        return session->loop.runUntil([&] { return eye.colour(2200, 300) == colour; });
    }
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

namespace {

/// Whether a clock of this process runs.
bool anythingTicks() {
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fdinfo")) {
        std::ifstream lines(entry.path());
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("it_interval:") && line.find("(0, 0)") == std::string::npos)
                return true;
    }
    return false;
}

} // namespace

TEST_F(X11Gamma, OfAnotherProgramIsTheUsersAndIsDarkenedAgain) {
    auto window = dark(1, 0.75f);
    const GammaRamp night = setNightLight();
    ASSERT_NE(night, second);
    ASSERT_NE(night, scaled(second, 0.25));
    EXPECT_TRUE(waitForGamma("DUMMY1", scaled(night, 0.25)));
    window->setAlpha(0.5f);
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(night, 0.5));
    window.reset();
    EXPECT_EQ(eye.gamma("DUMMY1"), night);
}

TEST_F(X11Gamma, OfAnotherProgramIsLeftAloneAlsoWhenNobodyHadTheTimeToLook) {
    auto window = dark(1, 0.75f);
    GammaRamp night = setNightLight();
    window->setAlpha(0.5f);
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(night, 0.5));
    night = setNightLight();
    window.reset();
    EXPECT_EQ(eye.gamma("DUMMY1"), night);
}

TEST_F(X11Gamma, IsNotLookedAtWhereNothingIsDark) {
    EXPECT_FALSE(anythingTicks());
    auto window = dark(1, 0.75f);
    EXPECT_TRUE(anythingTicks());
    window->setAlpha(0);
    EXPECT_FALSE(anythingTicks());
    window->setAlpha(1);
    EXPECT_TRUE(anythingTicks());
    window->orderOut();
    EXPECT_FALSE(anythingTicks());
}

namespace {

struct X11SplitOutput : x11tests::GammaDesktop {
    X11SplitOutput() : GammaDesktop("1920x1080+0+0") {}

    void split() {
        xrandr({"--setmonitor", "left", "960/254x1080/286+0+0", "DUMMY0"});
        xrandr({"--setmonitor", "right", "960/254x1080/286+960+0", "none"});
        ASSERT_TRUE(
            session->loop.runUntil([&] { return session->displays.screens().size() == 2; }));
    }
};

constexpr const char* notAlone = "no output to itself";

} // namespace

TEST_F(X11SplitOutput, StaysBrightWhichIsSaidOnceAndCatchesClicks) {
    split();
    for (const std::size_t screen : {0u, 1u}) {
        auto window = dark(screen, 0.75f);
        EXPECT_EQ(eye.gamma("DUMMY0"), first) << screen;
        window->setAlpha(0.5f);
        EXPECT_EQ(eye.gamma("DUMMY0"), first) << screen;
    }
    EXPECT_EQ(logged(notAlone), 1u);
    EXPECT_EQ(logged("compositor"), 1u) << "what would help";

    support::TestWindow beneath(desktop.display(), {1200, 100, 600, 400}, {255, 255, 255});
    support::Hand hand(desktop.display());
    hand.moveTo(1400, 300);
    hand.click(1);
    ASSERT_EQ(beneath.presses(), 1);
    auto window = dark(session->displays.screens()[0].frame.x > 0 ? 0 : 1, 0.75f);
    hand.click(1);
    EXPECT_EQ(beneath.presses(), 1);
}

TEST_F(X11SplitOutput, IsDarkenedOnlyForAsLongAsItIsWhole) {
    auto window = dark(0, 0.75f);
    EXPECT_EQ(eye.gamma("DUMMY0"), scaled(first, 0.25));
    split();
    EXPECT_TRUE(waitForGamma("DUMMY0", first));
    xrandr({"--delmonitor", "right"});
    xrandr({"--delmonitor", "left"});
    EXPECT_TRUE(waitForGamma("DUMMY0", scaled(first, 0.25)));
}

TEST_F(X11Gamma, IsThatOfAWholeOutputBesideADividedOne) {
    xrandr({"--setmonitor", "left", "960/254x1080/286+0+0", "DUMMY0"});
    xrandr({"--setmonitor", "right", "960/254x1080/286+960+0", "none"});
    ASSERT_TRUE(session->loop.runUntil([&] { return session->displays.screens().size() == 3; }));
    std::vector<std::unique_ptr<platform::Window>> windows;
    for (std::size_t screen = 0; screen < 3; ++screen)
        windows.push_back(dark(screen, 0.75f));
    EXPECT_EQ(eye.gamma("DUMMY0"), first);
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
}
