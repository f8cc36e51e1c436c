#include "Session.h"
#include "platform/x11/overlay/GammaOutputs.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"

#include <algorithm>
#include <gtest/gtest.h>

using platform::Point;
using platform::Rect;
using platform::x11::GammaOutputs;
using x11tests::Session;

namespace {

struct X11Displays : testing::Test {
    void start(const std::string& layout) {
        desktop = std::make_unique<support::PrivateDesktop>(layout);
        if (!desktop->canPlugOutputs()) GTEST_SKIP() << "needs Xorg with the dummy driver";
        session = std::make_unique<Session>(desktop->display(), GAMMA_GUARD);
        session->displays.onChange([this] { ++changes; });
    }
    std::vector<Rect> frames() const {
        std::vector<Rect> all;
        for (const auto& screen : session->displays.screens())
            all.push_back(screen.frame);
        return all;
    }

    std::unique_ptr<support::PrivateDesktop> desktop;
    std::unique_ptr<Session> session;
    int changes = 0;
};

} // namespace

TEST_F(X11Displays, PutTheOriginAtTheBottomLeftOfThePrimary) {
    start("1920x1080+0+0,1280x1024+1920+56");
    EXPECT_EQ(frames(), (std::vector<Rect>{{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}}));
    EXPECT_EQ(session->displays.mainScreen(), session->displays.screens()[0].id);
}

TEST_F(X11Displays, PutThePrimaryFirstAndTheOthersAtNegativePlaces) {
    start("1280x1024+0+0,1920x1080+1280+200*");
    EXPECT_EQ(frames(), (std::vector<Rect>{{0, 0, 1920, 1080}, {-1280, 256, 1280, 1024}}));
    EXPECT_EQ(session->displays.mainScreen(), session->displays.screens()[0].id);
}

TEST_F(X11Displays, AreCalledAsTheirOutputs) {
    start("1280x1024+0+0,1920x1080+1280+200*");
    const auto screens = session->displays.screens();
    EXPECT_EQ(screens[0].name, "DUMMY1");
    EXPECT_EQ(screens[1].name, "DUMMY0");
    EXPECT_EQ(screens[0].scale, 1);
}

TEST_F(X11Displays, CountThePointersPlaceFromThePrimary) {
    start("1280x1024+0+0,1920x1080+1280+200*");
    support::Hand hand(desktop->display());
    hand.moveTo(100, 50);
    EXPECT_EQ(session->pointer.location(), (Point{-1180, -150}));
}

TEST_F(X11Displays, KeepTheIdentityOfAMonitorThatComesBack) {
    start("1920x1080+0+0,1280x1024+1920+56");
    const auto second = session->displays.screens()[1].id;
    desktop->unplug("DUMMY1");
    ASSERT_TRUE(session->loop.runUntil([&] { return frames().size() == 1; }));
    desktop->plug("DUMMY1", "1280x1024+1920+0");
    ASSERT_TRUE(session->loop.runUntil([&] { return frames().size() == 2; }));
    ASSERT_TRUE(session->loop.runUntil([&] {
        return session->displays.frame(second) == Rect{1920, 56, 1280, 1024};
    }));
}

TEST_F(X11Displays, TellAChangeOfThePrimaryMonitor) {
    start("1920x1080+0+0,1280x1024+1920+56");
    const auto second = session->displays.screens()[1].id;
    desktop->setLayout("1920x1080+0+0,1280x1024+1920+56*");
    ASSERT_TRUE(session->loop.runUntil([&] { return session->displays.mainScreen() == second; }));
    EXPECT_GE(changes, 1);
    EXPECT_EQ(frames(), (std::vector<Rect>{{0, 0, 1280, 1024}, {-1920, 0, 1920, 1080}}));
}

TEST_F(X11Displays, StaySilentAboutAnEventThatChangesNothing) {
    start("1920x1080+0+0,1280x1024+1920+56");
    support::XConnection other(desktop->display());
    // The size in millimetres alone: an event, but no change of the list.
    xcb_randr_set_screen_size(other.get(), other.root(), 3200, 1080, 700, 400);
    const auto resources = support::own(xcb_randr_get_screen_resources_current_reply(
        other.get(), xcb_randr_get_screen_resources_current(other.get(), other.root()), nullptr));
    ASSERT_TRUE(resources && resources->num_outputs > 1);
    const xcb_randr_output_t second =
        xcb_randr_get_screen_resources_current_outputs(resources.get())[1];
    xcb_randr_set_output_primary(other.get(), other.root(), second);
    other.sync();
    ASSERT_TRUE(session->loop.runUntil([&] { return changes > 0; }));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(frames(), (std::vector<Rect>{{0, 0, 1280, 1024}, {-1920, 0, 1920, 1080}}));
}

TEST_F(X11Displays, ListAMirrorOnceAndItIsLitByAllItsMonitors) {
    start("1920x1080+0+0,1280x1024+1920+56,1280x1024+3200+56");
    const auto first = session->displays.screens()[0].id;
    const auto crtcs = [this](std::size_t index) {
        return GammaOutputs(session->connection, session->displays)
            .litAlone(session->displays.screens()[index].frame);
    };
    const auto apart = crtcs(2);
    ASSERT_EQ(apart.size(), 1u);
    desktop->setLayout("1920x1080+0+0,1280x1024+1920+56,1280x1024+1920+56");
    ASSERT_TRUE(session->loop.runUntil([&] { return frames().size() == 2; }));
    EXPECT_EQ(frames(), (std::vector<Rect>{{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}}));
    EXPECT_EQ(session->displays.mainScreen(), first);
    EXPECT_EQ(crtcs(0).size(), 1u);
    ASSERT_EQ(crtcs(1).size(), 2u);
    EXPECT_EQ(std::ranges::count(crtcs(1), apart[0]), 1);

    desktop->setLayout("1920x1080+0+0,1280x1024+1920+56,1280x1024+3200+56");
    ASSERT_TRUE(session->loop.runUntil([&] { return frames().size() == 3; }));
    EXPECT_EQ(crtcs(2), apart);
}

TEST_F(X11Displays, CallAMirrorByItsLargerMonitorAndPutThePrimarysFirst) {
    start("1280x1024+0+0,1920x1080+1280+0,1024x768+3200+0*");
    const auto large = session->displays.screens()[2].id;
    desktop->setLayout("1280x1024+0+0,1920x1080+1280+0,1024x768+1280+0*");
    ASSERT_TRUE(session->loop.runUntil([&] { return frames().size() == 2; }));
    EXPECT_EQ(session->displays.mainScreen(), large);
    EXPECT_EQ(frames(), (std::vector<Rect>{{0, 0, 1920, 1080}, {-1280, 56, 1280, 1024}}));
}

TEST_F(X11Displays, ListMonitorsThatOverlapInPartAsOneScreenAroundThem) {
    start("1920x1080+0+0,1280x1024+1800+200");
    EXPECT_EQ(frames(), (std::vector<Rect>{{0, 0, 3080, 1224}}));
    support::Hand hand(desktop->display());
    hand.moveTo(2000, 300);
    EXPECT_EQ(session->pointer.location(), (Point{2000, 300}));
}
