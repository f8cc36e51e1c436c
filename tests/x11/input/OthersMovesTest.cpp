#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/TestWindow.h"
#include "tests/x11/SeenEvents.h"

// Another program moves the cursor, of which no device tells.

using platform::EventType;
using platform::InputEvent;
using platform::Point;
using x11tests::Session;

namespace {

struct X11OthersMoves : x11tests::SeenEvents, testing::Test {
    void runPastScroll() { SeenEvents::runPastScroll(session, hand); }
    void move(int x, int y) const {
        xcb_warp_pointer(other.get(), XCB_NONE, other.root(), 0, 0, 0, 0,
                         static_cast<std::int16_t>(x), static_cast<std::int16_t>(y));
        other.sync();
    }
    bool isToldAt(double x, double y) {
        return session.loop.runUntil([&] {
            return !seen.empty() && seen.back().type == EventType::mouseMoved &&
                   seen.back().location == Point{x, y};
        });
    }

    support::PrivateDesktop desktop{"1920x1080+0+0,1280x1024+1920+56"};
    Session session{desktop.display(), GAMMA_GUARD};
    support::Hand hand{desktop.display()};
    support::XConnection other{desktop.display()};
};

} // namespace

TEST_F(X11OthersMoves, AreToldAtRestAndOneAfterAnother) {
    // Its window keeps the motion to itself.
    const support::TestWindow window(desktop.display(), {0, 0, 1920, 1080}, {20, 20, 20});
    monitor(session);
    for (int x = 100; x <= 1000; x += 100) {
        move(x, 300);
        ASSERT_TRUE(isToldAt(x, 300)) << x;
    }
}

TEST_F(X11OthersMoves, RightAfterTheHandsAreToldToo) {
    monitor(session);
    for (int x = 100; x <= 1000; x += 100) {
        hand.moveTo(x, 500);
        ASSERT_TRUE(isToldAt(x, 500)) << x;
        move(x, 700);
        ASSERT_TRUE(isToldAt(x, 700)) << x;
    }
}

TEST_F(X11OthersMoves, AreNotTheProgramsOwn) {
    monitor(session);
    move(100, 100);
    ASSERT_TRUE(isToldAt(100, 100));
    seen.clear();
    session.pointer.warp({800, 400});
    session.sync();
    runPastScroll();
    EXPECT_TRUE(seen.empty()) << seen.back().location.x;
    move(100, 100);
    EXPECT_TRUE(isToldAt(100, 100));
}

TEST_F(X11OthersMoves, AreNoneWhereAClickIsTheFirstThingThatHappens) {
    hand.moveTo(700, 700);
    monitor(session);
    hand.click(2);
    runPastScroll();
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].type, EventType::otherMouseDown);
    EXPECT_EQ(seen[1].type, EventType::otherMouseUp);
}
