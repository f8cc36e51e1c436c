#include "HeldDesktop.h"
#include "testing/desktop/Watcher.h"

#include <random>
#include <thread>

using platform::EventType;
using platform::InputEvent;
using platform::Point;
using platform::Rect;
using support::Spot;
using x11tests::left;
using x11tests::right;
using x11tests::Session;
using x11tests::X11Hold;

TEST_F(X11Hold, NeverLetsTheCursorOut) {
    // Beside, over a corner, of another height, all around, and with room between.
    for (const char* layout : {"1920x1080+0+0,1280x1024+1920+56",
                               "1280x1024+1280+1024*,1280x1024+0+0,1280x1024+2560+2048",
                               "1280x1024+800+300*,800x600+0+0,800x1624+2080+0,1280x300+800+1324",
                               "1024x768+1280+0*,1280x1024+0+0,1280x1024+2304+0"}) {
        start(layout);
        answer = [this](const InputEvent& event) {
            const auto home = session->displays.screens()[0].frame;
            const bool inside = Rect{0, 0, home.width, home.height}.contains(event.location);
            if (!inside) session->pointer.warp({home.width / 2, home.height / 2});
        };
        const support::Area home = desktop->monitors()[0].area;
        hand->moveTo(home.x + home.width / 2, home.y + home.height / 2);
        session->pointer.holdInside(
            Rect{0, 0, static_cast<double>(home.width), static_cast<double>(home.height)});
        session->sync();
        runPastScroll();
        support::Watcher watcher(desktop->display(), home);
        std::mt19937 random(7);
        std::uniform_int_distribution<int> step(-90, 90), corner(0, 3), few(0, 5);
        for (int burst = 0; burst < 150; ++burst) {
            // From next to a corner, where a slanting step may slip out.
            const int at = corner(random);
            hand->moveTo(at % 2 ? home.x + home.width - 1 - few(random) : home.x + few(random),
                         at / 2 ? home.y + home.height - 1 - few(random) : home.y + few(random));
            for (int i = 0; i < 10; ++i)
                hand->relative(step(random), step(random));
            if (burst % 10 == 9) runPastScroll();
        }
        EXPECT_EQ(watcher.finish().farthestOutside, 0) << layout;
        session.reset();
    }
}

TEST_F(X11Hold, IsTheSameWhileAButtonIsHeldAndAnotherProgramGrabs) {
    start();
    hold();
    answer = [this](const InputEvent& event) { putBack(event); };
    const support::XConnection other(desktop->display());
    ASSERT_TRUE(other.grabPointer());
    hand->moveTo(1919, 500);
    hand->pressButton(1);
    runPastScroll();
    support::Watcher watcher(desktop->display(), desktop->monitors()[0].area);
    hand->relative(60, 0);
    runPastScroll();
    EXPECT_EQ(seen.back().location, (Point{1979, 500}));
    EXPECT_EQ(seen.back().type, EventType::leftMouseDragged);
    EXPECT_EQ(watcher.finish().farthestOutside, 0);
    hand->releaseButton(1);
}

TEST_F(X11Hold, IsOffWhileAWindowOfTheProgramIsActive) {
    start();
    hold();
    session->ownWindowActive = true;
    session->input.ownWindowChanged();
    session->sync();
    hand->relative(1100, 0);
    EXPECT_EQ(eye->cursor(), (Spot{2000, 500}));
    hand->moveTo(900, 500);
    session->ownWindowActive = false;
    session->input.ownWindowChanged();
    session->sync();
    hand->relative(1100, 0);
    EXPECT_EQ(eye->cursor(), (Spot{1919, 500}));
}

TEST_F(X11Hold, EndsWhenNothingIsToBeHeldAndWithTheService) {
    start();
    hold();
    session->pointer.holdInside(std::nullopt);
    session->sync();
    hand->relative(1100, 0);
    EXPECT_EQ(eye->cursor(), (Spot{2000, 500}));
    hold();
    session.reset();
    hand->relative(1100, 0);
    EXPECT_EQ(eye->cursor(), (Spot{2000, 500}));
}

TEST_F(X11Hold, GoesAlongToTheScreenThatTheProgramPutsTheCursorOn) {
    start();
    hold();
    session->pointer.holdInside(right);
    session->pointer.warp({2560, 568});
    session->sync();
    EXPECT_EQ(eye->cursor(), (Spot{2560, 568}));
    hand->relative(-1100, 0);
    EXPECT_EQ(eye->cursor(), (Spot{1920, 568}));
    runPastScroll();
    EXPECT_EQ(seen.back().location, (Point{1460, 568})) << "the push, from where it was put";
}

TEST_F(X11Hold, DoesNotTrapTheCursorOnAScreenThatIsNoMore) {
    start();
    if (!desktop->canPlugOutputs()) GTEST_SKIP() << "needs Xorg with the dummy driver";
    hold();
    desktop->setLayout("1280x1024+0+0,1280x1024+1280+0");
    ASSERT_TRUE(session->loop.runUntil([&] {
        return session->displays.screens()[0].frame == Rect{0, 0, 1280, 1024};
    }));
    session->sync();
    hand->moveTo(900, 500);
    hand->relative(1500, 0);
    EXPECT_EQ(eye->cursor(), (Spot{2400, 500}));
}

// The held screen stays where it is to the program, as its origin is the primary monitor.
TEST_F(X11Hold, StandsOnTheSideOnWhichAMonitorComes) {
    start();
    if (!desktop->canPlugOutputs()) GTEST_SKIP() << "needs Xorg with the dummy driver";
    hold();
    struct Row {
        const char* layout;
        Spot from; ///< next to the side
        int dx, dy;
        Spot stopped;
    };
    for (const Row& row :
         {Row{"1920x1080+1280+0*,1280x1024+0+56", {1300, 500}, -200, 0, {1280, 500}},
          Row{"1920x1080+0+1024*,1280x1024+0+0", {500, 1040}, 0, -200, {500, 1024}},
          Row{"1920x1080+0+0*,1280x1024+0+1080", {500, 1060}, 0, 200, {500, 1079}},
          Row{"1920x1080+0+0*,1280x1024+1920+56", {1900, 500}, 200, 0, {1919, 500}}}) {
        const auto before = session->displays.screens()[1].frame;
        desktop->setLayout(row.layout);
        ASSERT_TRUE(
            session->loop.runUntil([&] { return session->displays.screens()[1].frame != before; }));
        session->sync();
        hand->moveTo(row.from.x, row.from.y);
        hand->relative(row.dx, row.dy);
        EXPECT_EQ(eye->cursor(), row.stopped) << row.layout;
        hand->relative(-row.dx, -row.dy);
        EXPECT_NE(eye->cursor(), row.stopped) << "and nowhere else";
    }
}

TEST_F(X11Hold, IsNotThereWhereItIsNotAllowed) {
    start();
    session = std::make_unique<Session>(desktop->display(), GAMMA_GUARD, false);
    hand->moveTo(900, 500);
    session->pointer.holdInside(left);
    session->sync();
    hand->relative(1100, 0);
    EXPECT_EQ(eye->cursor(), (Spot{2000, 500}));
}

TEST_F(X11Hold, TellsWhereTheProgramPutTheCursorBeforeItIsOutAgain) {
    start();
    session->pointer.holdInside(std::nullopt);
    session = std::make_unique<Session>(desktop->display(), GAMMA_GUARD, false);
    session->pointer.setLocalEventsSuppressionInterval(0);
    session->input.addGlobalMonitor(monitorMask, [this](const InputEvent& event) {
        seen.push_back(event);
        placesAsked.emplace_back(event.location, event.location);
        if (event.type == EventType::mouseMoved) putBack(event);
    });
    hold();
    hand->relative(1100, 0);
    runPastScroll();
    hand->relative(70, 0);
    runPastScroll();
    std::vector<Point> places;
    for (const InputEvent& event : seen)
        places.push_back(event.location);
    EXPECT_EQ(places, (std::vector<Point>{{2000, 500}, {1918, 500}, {1988, 500}}));
}

TEST_F(X11Hold, TellsMotionWhereTheCursorCannotMove) {
    start();
    hand->moveTo(0, 500);
    runPastScroll();
    for (int i = 0; i < 3; ++i) {
        seen.clear();
        hand->push(-5, 0, 50, 1000);
        ASSERT_TRUE(session->loop.runUntil([&] { return !seen.empty(); }));
        EXPECT_EQ(seen.back().type, EventType::mouseMoved);
        EXPECT_EQ(seen.back().location, (Point{0, 500}));
    }
}

TEST_F(X11Hold, TellsMotionAtThePaceOfADisplayAndWhereItEnds) {
    start();
    hand->moveTo(10, 500);
    runPastScroll();
    seen.clear();
    const auto begun = support::Clock::now();
    std::thread mover([&] { hand->push(1, 0, 800, 4000); });
    ASSERT_TRUE(session->loop.runUntil([&] {
        return !seen.empty() && seen.back().location == Point{810, 500};
    }));
    const std::chrono::duration<double> took = support::Clock::now() - begun;
    mover.join();
    EXPECT_LE(static_cast<double>(seen.size()), took.count() * 60 + 2);
}
