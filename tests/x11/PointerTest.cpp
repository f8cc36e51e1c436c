#include "Session.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"

#include <gtest/gtest.h>

using platform::Point;
using x11tests::Session;

namespace {

struct X11Pointer : testing::Test {
    support::PrivateDesktop desktop{"1920x1080+0+0,1280x1024+1920+56"};
    Session session{desktop.display(), GAMMA_GUARD};
    support::Hand hand{desktop.display()};
    support::Eye eye{desktop.display()};
};

} // namespace

TEST_F(X11Pointer, GoesWhereItIsPut) {
    session.pointer.warp({2500.5, 300});
    EXPECT_EQ(session.pointer.location(), (Point{2500, 300}));
    EXPECT_EQ(eye.cursor(), (support::Spot{2500, 300}));
}

TEST_F(X11Pointer, IsHeldForTheIntervalThatWasInForceAtTheWarp) {
    session.pointer.setLocalEventsSuppressionInterval(0.15);
    session.pointer.warp({700, 300});
    session.pointer.setLocalEventsSuppressionInterval(0);
    session.sync();
    for (const auto& [dx, dy] :
         {std::pair{40, 0}, {-40, 0}, {0, 40}, {0, -40}, {30, 30}, {-30, -30}})
        hand.relative(dx, dy);
    EXPECT_EQ(eye.cursor(), (support::Spot{700, 300}));
    ASSERT_TRUE(session.loop.runUntil([&] {
        hand.relative(1, 0);
        return eye.cursor() != support::Spot{700, 300};
    }));
}

TEST_F(X11Pointer, IsFreeAtOnceWithoutAnInterval) {
    session.pointer.setLocalEventsSuppressionInterval(0);
    session.pointer.warp({700, 300});
    session.sync();
    hand.relative(40, -7);
    EXPECT_EQ(eye.cursor(), (support::Spot{740, 293}));
}

TEST_F(X11Pointer, GoesToTheNearestPointOfAMonitorWherePutBesideAllOfThem) {
    if (!desktop.canPlugOutputs()) GTEST_SKIP() << "needs Xorg with the dummy driver";
    session.pointer.setLocalEventsSuppressionInterval(60);
    hand.moveTo(900, 500);
    session.pointer.warp({2500, 20}); // just above the right monitor
    EXPECT_EQ(session.pointer.lastPut(), (Point{2500, 56}));
    EXPECT_EQ(eye.cursor(), (support::Spot{2500, 56}));
    hand.relative(-40, 30);
    EXPECT_EQ(eye.cursor(), (support::Spot{2500, 56})) << "and is held there";
    session.pointer.warp({1921, 20}); // just beside the left monitor
    session.sync();
    EXPECT_EQ(eye.cursor(), (support::Spot{1919, 20}));
    session.pointer.warp({-400, 2000});
    session.sync();
    EXPECT_EQ(eye.cursor(), (support::Spot{0, 1079}));
}

TEST_F(X11Pointer, StaysOnTheScreenThatIsHeldWherePutBesideAllOfThem) {
    if (!desktop.canPlugOutputs()) GTEST_SKIP() << "needs Xorg with the dummy driver";
    session.pointer.setLocalEventsSuppressionInterval(0);
    for (const auto& [held, spot] : {std::pair{platform::Rect{1920, 56, 1280, 1024}, 1921},
                                     {platform::Rect{0, 0, 1920, 1080}, 1919}}) {
        session.pointer.holdInside(held);
        session.pointer.warp({1921, 20});
        session.sync();
        EXPECT_EQ(eye.cursor(), (support::Spot{spot, spot == 1921 ? 56 : 20}));
    }
    session.pointer.holdInside(platform::Rect{0, 0, 0, 0}); // no screen
    session.pointer.warp({2500, 20});
    session.sync();
    EXPECT_EQ(eye.cursor(), (support::Spot{2500, 56}));
}

struct X11PointerInAGap : testing::Test {
    X11PointerInAGap() {
        hand.moveTo(1390, 500);
        session.sync();
    }
    void SetUp() override {
        if (!desktop.canPlugOutputs()) GTEST_SKIP() << "needs Xorg with the dummy driver";
        ASSERT_EQ(eye.cursor(), (support::Spot{1390, 500}));
    }

    support::PrivateDesktop desktop{"1280x1024+0+0,1280x1024+1480+0"};
    Session session{desktop.display(), GAMMA_GUARD};
    support::Hand hand{desktop.display()};
    support::Eye eye{desktop.display()};
};

TEST_F(X11PointerInAGap, IsPutOntoTheNearestMonitorWhenItIsAskedFor) {
    EXPECT_EQ(session.pointer.location(), (Point{1480, 500}));
    session.sync();
    EXPECT_EQ(eye.cursor(), (support::Spot{1480, 500}));
    EXPECT_EQ(session.pointer.location(), (Point{1480, 500}));
    EXPECT_EQ(session.pointer.warps(), 1u) << "once";
}

TEST_F(X11PointerInAGap, IsLeftAloneDuringAPointersEventAndNotDuringAKeys) {
    {
        const platform::x11::Pointer::Handling motion(session.pointer, {1390, 500}, false);
        EXPECT_EQ(session.pointer.location(), (Point{1390, 500}));
    }
    EXPECT_EQ(session.pointer.warps(), 0u);
    const platform::x11::Pointer::Handling key(session.pointer, {1390, 500}, false, false);
    EXPECT_EQ(session.pointer.location(), (Point{1480, 500}));
    EXPECT_EQ(session.pointer.warps(), 1u);
}

TEST_F(X11Pointer, LetsGoWhenTheProgramHasGone) {
    {
        Session other(desktop.display(), GAMMA_GUARD);
        other.pointer.setLocalEventsSuppressionInterval(60);
        other.pointer.warp({700, 300});
    }
    session.sync();
    hand.relative(40, 0);
    EXPECT_EQ(eye.cursor(), (support::Spot{740, 300}));
}

TEST_F(X11Pointer, IsHiddenOnceHoweverOftenItIsAsked) {
    session.cursor.hide();
    session.cursor.hide();
    EXPECT_FALSE(session.cursor.isVisible());
    session.cursor.show();
    EXPECT_FALSE(session.cursor.isVisible());
    session.cursor.show();
    EXPECT_TRUE(session.cursor.isVisible());
    session.cursor.show();
    EXPECT_TRUE(session.cursor.isVisible());
    session.cursor.hide();
    EXPECT_FALSE(session.cursor.isVisible());
    session.cursor.show();
    session.sync();
    // A show without a hide is an error of the server's. The one made here comes after all others.
    xcb_unmap_window(session.connection.xcb(), 0x1234567);
    session.sync();
    ASSERT_TRUE(session.loop.runUntil([&] { return !session.log.lines.empty(); }));
    EXPECT_EQ(session.log.lines,
              (std::vector<std::string>{"X11 error 3 of request 10.0 on 0x1234567"}));
}
