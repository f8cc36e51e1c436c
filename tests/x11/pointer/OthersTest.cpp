#include "HeldDesktop.h"
#include "testing/desktop/TestWindow.h"
#include "testing/desktop/Watcher.h"

// Other programs that want the cursor for themselves: games and virtual machines.

using platform::InputEvent;
using platform::Point;
using support::Spot;
using x11tests::left;
using x11tests::right;
using x11tests::X11Hold;

namespace {

constexpr support::Area wholeLeft{0, 0, 1920, 1080};

struct X11HoldAndOthers : X11Hold {
    void start(const std::string& layout = "1920x1080+0+0,1280x1024+1920+56") {
        X11Hold::start(layout);
        game = std::make_unique<support::XConnection>(desktop->display());
    }
    /// Runs until all that was done before has been read. What the cursor does may be told to
    /// nobody.
    void runPastKey() {
        hand->type(support::key::leftAlt);
        std::size_t keys = 0;
        ASSERT_TRUE(session->loop.runUntil([&] {
            keys += std::erase_if(seen, [](const InputEvent& event) {
                return event.type == platform::EventType::flagsChanged;
            });
            return keys == 2;
        }));
    }
    /// As a game does it that wants to know only how far the hand goes.
    void takeToTheMiddle() const {
        xcb_warp_pointer(game->get(), XCB_NONE, game->root(), 0, 0, 0, 0, 960, 540);
        game->sync();
    }
    static bool isOutside(const InputEvent& event, const platform::Rect& screen) {
        return event.type != platform::EventType::flagsChanged && !screen.contains(event.location);
    }
    std::size_t toldOutside(const platform::Rect& screen) const {
        std::size_t count = 0;
        for (const InputEvent& event : seen)
            count += isOutside(event, screen) ? 1 : 0;
        return count;
    }
    /// The left monitor's game keeps the cursor while the right one is held.
    void startGameOnTheOtherMonitor(const support::TestWindow& window) {
        hand->moveTo(2500, 500);
        session->pointer.holdInside(right);
        session->sync();
        runPastScroll();
        ASSERT_TRUE(game->grabPointer(window.id()));
        seen.clear();
        answer = [this](const InputEvent& event) {
            if (isOutside(event, right)) session->pointer.warp({1921, event.location.y});
        };
    }

    std::unique_ptr<support::XConnection> game;
};

} // namespace

TEST_F(X11HoldAndOthers, TellsNoPushWhereAnotherProgramConfinesTheCursor) {
    start();
    const support::TestWindow window(desktop->display(), wholeLeft, {20, 20, 20});
    hold();
    ASSERT_TRUE(game->grabPointer(window.id()));
    hand->moveTo(1919, 500);
    runPastScroll();
    seen.clear();
    for (int i = 0; i < 5; ++i) {
        hand->relative(60, 1);
        runPastScroll();
    }
    EXPECT_FALSE(seen.empty()) << "motion is told";
    EXPECT_EQ(toldOutside(left), 0u);
    EXPECT_EQ(eye->cursor(), (Spot{1919, 505})) << "and nothing moves the cursor";

    game->ungrabPointer();
    hand->relative(60, 0);
    runPastScroll();
    EXPECT_EQ(seen.back().location, (Point{1979, 505}));
    EXPECT_EQ(eye->cursor(), (Spot{1979, 505}));
}

// The window of a virtual machine may lie across monitors.
TEST_F(X11HoldAndOthers, TellsAPushWhereTheCursorIsConfinedToBothMonitors) {
    start();
    const support::TestWindow window(desktop->display(), {1000, 100, 1500, 800}, {20, 20, 20});
    hold();
    hand->moveTo(1919, 500);
    ASSERT_TRUE(game->grabPointer(window.id()));
    runPastScroll();
    hand->relative(60, 0);
    runPastScroll();
    EXPECT_EQ(seen.back().location, (Point{1979, 500}));
    EXPECT_EQ(eye->cursor(), (Spot{1979, 500}));
}

TEST_F(X11HoldAndOthers, TellsAPushOnEachSideWhileAMenuIsOpen) {
    // The held one lies in the middle of four.
    start("1280x1024+800+800*,800x1024+0+800,800x1024+2080+800,1280x800+800+0,1280x800+800+1824");
    const platform::Rect middle{0, 0, 1280, 1024};
    ASSERT_TRUE(game->grabPointer());
    session->pointer.holdInside(middle);
    session->sync();
    answer = [&](const InputEvent& event) {
        if (!middle.contains(event.location)) session->pointer.warp({600, 500});
    };
    struct Push {
        int x, y, dx, dy;
        Point told;
    };
    for (const Push& push : {Push{800, 1300, -50, 0, {-50, 500}},
                             {2079, 1300, 50, 0, {1329, 500}},
                             {1400, 800, 0, -50, {600, -50}},
                             {1400, 1823, 0, 50, {600, 1073}}}) {
        hand->moveTo(push.x, push.y);
        runPastScroll();
        support::Watcher watcher(desktop->display(), {800, 800, 1280, 1024});
        hand->relative(push.dx, push.dy);
        runPastScroll();
        EXPECT_EQ(seen.back().location, push.told);
        EXPECT_EQ(watcher.finish().farthestOutside, 0);
    }
}

TEST_F(X11HoldAndOthers, LeavesACursorAloneThatIsConfinedToAnotherMonitor) {
    start();
    const support::TestWindow window(desktop->display(), wholeLeft, {20, 20, 20});
    startGameOnTheOtherMonitor(window);
    hand->moveTo(900, 500);
    runPastKey();
    for (int i = 0; i < 10; ++i) {
        const Spot before = eye->cursor();
        support::Watcher watcher(desktop->display(), {before.x - 40, before.y - 1, 42, 3});
        hand->relative(-20, 0);
        runPastKey();
        EXPECT_EQ(eye->cursor(), (Spot{before.x - 20, before.y}));
        EXPECT_EQ(watcher.finish().farthestOutside, 0);
    }
    EXPECT_TRUE(seen.empty()) << "there is no answer to what happens there";

    game->ungrabPointer();
    hand->relative(-20, 0);
    ASSERT_TRUE(session->loop.runUntil([&] { return eye->cursor().x == 1921; }));
}

TEST_F(X11HoldAndOthers, TellsNoPushOfACursorThatAnotherProgramHasTakenToTheMiddle) {
    start();
    for (const bool grabs : {false, true}) {
        hold();
        answer = [this](const InputEvent& event) { putBack(event); };
        if (grabs) {
            ASSERT_TRUE(game->grabPointer());
        }
        for (const int step : {30, 30, 30, 1500, 2900, 30}) {
            hand->relative(step, 0);
            takeToTheMiddle();
            runPastScroll();
            EXPECT_EQ(eye->cursor(), (Spot{960, 540}));
        }
        EXPECT_EQ(toldOutside(left), 0u);
    }
}

TEST_F(X11HoldAndOthers, DoesNotFightAboutACursorThatAnotherProgramTakesToTheMiddleAllTheTime) {
    start();
    for (const bool grabs : {false, true}) {
        game->ungrabPointer();
        hand->moveTo(2500, 500);
        session->pointer.holdInside(std::nullopt);
        session->pointer.holdInside(right);
        session->sync();
        runPastScroll();
        int thrown = 0;
        answer = [&](const InputEvent& event) {
            if (!isOutside(event, right)) return;
            ++thrown;
            session->pointer.warp({1921, event.location.y});
        };
        if (grabs) {
            ASSERT_TRUE(game->grabPointer());
        }
        for (int i = 0; i < 12; ++i) {
            takeToTheMiddle();
            hand->relative(10, 0);
            runPastKey();
        }
        EXPECT_LE(thrown, 3);
        EXPECT_EQ(eye->cursor(), (Spot{970, 540}));
        hand->relative(1200, 0);
        hand->relative(-400, 0);
        EXPECT_EQ(eye->cursor(), (Spot{1920, 540})) << "it is held once it has come in";
        runPastScroll();
        hand->moveTo(960, 540);
        ASSERT_TRUE(session->loop.runUntil([&] { return eye->cursor() == Spot{1921, 540}; }));
        answer = {};
    }
}

// A pen is no program that insists.
TEST_F(X11HoldAndOthers, PutsBackWhatAPenPutsOutsideHoweverOften) {
    X11Hold::start("1920x1080+0+0,1280x1024+1920+56", {support::Device::pen});
    if (!desktop->hasDevices()) GTEST_SKIP() << "needs Xorg and its driver inputtest";
    const auto pen = desktop->device(0);
    hold();
    answer = [this](const InputEvent& event) { putBack(event); };
    for (int i = 1; i <= 12; ++i) {
        pen->place(2000 + 10 * i, 500);
        ASSERT_TRUE(session->loop.runUntil([&] { return eye->cursor() == Spot{1918, 500}; })) << i;
    }
}
