#include "Session.h"
#include "support/Eye.h"
#include "support/Hand.h"
#include "support/PrivateDesktop.h"
#include "support/Watcher.h"

#include <gtest/gtest.h>
#include <random>
#include <thread>

using platform::EventType;
using platform::InputEvent;
using platform::Point;
using platform::Rect;
using support::Spot;
using x11tests::Session;

namespace {

constexpr platform::EventMask monitorMask = 0xFC010FE;
constexpr Rect left{0, 0, 1920, 1080};
constexpr Rect right{1920, 56, 1280, 1024};

struct X11Hold : testing::Test {
    void start(const std::string& layout = "1920x1080+0+0,1280x1024+1920+56") {
        desktop = std::make_unique<support::PrivateDesktop>(layout);
        session = std::make_unique<Session>(desktop->display(), GAMMA_GUARD);
        hand = std::make_unique<support::Hand>(desktop->display());
        eye = std::make_unique<support::Eye>(desktop->display());
        session->pointer.setLocalEventsSuppressionInterval(0);
        session->input.addGlobalMonitor(monitorMask, [this](const InputEvent& event) {
            seen.push_back(event);
            placesAsked.push_back(session->pointer.location());
            if (const auto reply = answer) reply(event);
            placesAsked.push_back(session->pointer.location());
        });
        session->sync();
    }
    /// In the middle, and held on the left monitor.
    void hold() {
        hand->moveTo(900, 500);
        session->pointer.holdInside(left);
        session->sync();
        runPastScroll();
        seen.clear();
        placesAsked.clear();
    }
    void runPastScroll() {
        hand->click(4);
        ASSERT_TRUE(session->loop.runUntil(
            [&] { return !seen.empty() && seen.back().type == EventType::scrollWheel; }));
        seen.pop_back();
        placesAsked.resize(placesAsked.size() - 2);
    }
    /// The program's answer to a point outside: back to the edge.
    void putBack(const InputEvent& event) {
        if (!left.contains(event.location)) session->pointer.warp({1918, event.location.y});
    }

    std::unique_ptr<support::PrivateDesktop> desktop;
    std::unique_ptr<Session> session;
    std::unique_ptr<support::Hand> hand;
    std::unique_ptr<support::Eye> eye;
    std::vector<InputEvent> seen;
    std::vector<Point> placesAsked;
    std::function<void(const InputEvent&)> answer;
};

} // namespace

TEST_F(X11Hold, TellsAPushAsAStepFromWhereTheCursorWasHeld) {
    start();
    hold();
    answer = [this](const InputEvent& event) { putBack(event); };
    hand->relative(1000, 0);
    runPastScroll(); // 19 pixels from the edge are left
    hand->relative(80, 7);
    runPastScroll();
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[0].location, (Point{1900, 500}));
    EXPECT_EQ(seen[1].location, (Point{1919, 500}));
    EXPECT_EQ(seen[2].location, (Point{1980, 507}));
    EXPECT_EQ(placesAsked[4], (Point{1980, 507}));
    EXPECT_EQ(placesAsked[5], (Point{1918, 507})) << "where the answer put it";
    EXPECT_EQ(eye->cursor(), (Spot{1918, 507}));
}

TEST_F(X11Hold, LetsTheCursorThroughToThePointThatIsNotAnsweredByAWarp) {
    start();
    hold();
    hand->moveTo(1919, 500);
    runPastScroll();
    hand->relative(60, -3);
    runPastScroll();
    EXPECT_EQ(seen.back().location, (Point{1979, 497}));
    EXPECT_EQ(eye->cursor(), (Spot{1979, 497}));
}

// What else the program does at a crossing, windows and all, comes after it.
TEST_F(X11Hold, LetsTheCursorThroughAsSoonAsItHoldsItNoMore) {
    start();
    hold();
    hand->moveTo(1919, 500);
    runPastScroll();
    bool crossedInTheHandler = false;
    answer = [&](const InputEvent& event) {
        if (left.contains(event.location) || crossedInTheHandler) return;
        session->pointer.holdInside(left);
        EXPECT_EQ(eye->cursor(), (Spot{1919, 497})) << "it is held as before";
        session->pointer.holdInside(std::nullopt);
        const auto deadline = support::Clock::now() + support::generous;
        while (!crossedInTheHandler && support::Clock::now() < deadline)
            crossedInTheHandler = eye->cursor() == Spot{1979, 497};
        session->pointer.holdInside(right);
    };
    hand->relative(60, -3);
    runPastScroll();
    EXPECT_TRUE(crossedInTheHandler);
    EXPECT_EQ(placesAsked.back(), (Point{1979, 497}));
    hand->relative(-200, 0);
    EXPECT_EQ(eye->cursor(), (Spot{1920, 497})) << "it is held on the other side";
}

TEST_F(X11Hold, FollowsTheCursorFromWhereItWasLetThrough) {
    start();
    hold();
    hand->moveTo(1919, 500);
    runPastScroll();
    answer = [&](const InputEvent& event) {
        if (left.contains(event.location)) return;
        session->pointer.holdInside(std::nullopt);
        session->pointer.holdInside(right);
        answer = {};
    };
    hand->relative(60, 0);
    ASSERT_TRUE(session->loop.runUntil([&] { return !answer; }));
    session->sync();
    seen.clear();
    hand->relative(-100, 0); // from 1979
    runPastScroll();
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[1].location.x - seen[0].location.x, -100);
    EXPECT_EQ(seen[1].location, (Point{1879, 500}));
}

// A fast mouse, of which only what a wall stops is told. It is put back in each frame, to where it
// slid to and not to where it was stopped.
TEST_F(X11Hold, LosesNothingOfASlideAlongTheEdge) {
    start();
    hold();
    answer = [this](const InputEvent& event) { putBack(event); };
    hand->moveTo(1919, 100);
    runPastScroll();
    constexpr int stops = 40, between = 15;
    std::thread mover([&] {
        for (int i = 0; i < stops; ++i) {
            hand->push(2, 0, 1, 1000);
            hand->push(0, 1, between, 1000);
        }
    });
    const bool slid = session->loop.runUntil(
        [&] { return eye->cursor().y >= 100 + stops * between * 8 / 10; }, 3);
    mover.join();
    EXPECT_TRUE(slid) << "it is at " << eye->cursor().y;
}

TEST_F(X11Hold, TellsWhereACursorBesideTheScreenIsStopped) {
    start("1280x1024+0+1024*,1280x1024+0+0,1280x1024+1280+1024");
    hand->moveTo(600, 1500);
    session->pointer.holdInside(Rect{0, 0, 1280, 1024});
    session->sync();
    runPastScroll();
    hand->moveTo(1279, 500); // on the upper monitor, where the wall goes on
    runPastScroll();
    hand->relative(60, 0);
    runPastScroll();
    EXPECT_EQ(seen.back().location.y, 500 - 1024);
}

// Each frame would ask once more.
TEST_F(X11Hold, AsksNothingWhereABarrierTellsThePlace) {
    start();
    hold();
    hand->moveTo(1919, 500);
    runPastScroll();
    constexpr int pushes = 20;
    const auto requests = [this] {
        return xcb_no_operation(session->inputConnection.xcb()).sequence;
    };
    int warps = 0;
    answer = [&](const InputEvent& event) {
        if (left.contains(event.location)) return;
        ++warps;
        putBack(event);
    };
    const auto before = requests();
    for (int i = 1; i <= pushes; ++i) {
        hand->relative(5, 0);
        ASSERT_TRUE(session->loop.runUntil([&] { return warps == i; }));
    }
    EXPECT_EQ(requests() - before, static_cast<unsigned>(pushes) + 1) << "the warps alone";
}

TEST_F(X11Hold, TellsWhichButtonsAreDownInAPush) {
    start();
    hold();
    answer = [this](const InputEvent& event) { putBack(event); };
    const auto typesOf = [this](auto&& act) {
        seen.clear();
        act();
        hand->relative(60, 0);
        EXPECT_TRUE(session->loop.runUntil(
            [&] { return !seen.empty() && !left.contains(seen.back().location); }));
        std::vector<EventType> types;
        for (const InputEvent& event : seen)
            if (types.empty() || types.back() != event.type) types.push_back(event.type);
        return types;
    };
    hand->moveTo(1919, 500);
    runPastScroll();
    using Types = std::vector<EventType>;
    EXPECT_EQ(typesOf([] {}), (Types{EventType::mouseMoved}));
    EXPECT_EQ(typesOf([this] { hand->pressButton(1); }),
              (Types{EventType::leftMouseDown, EventType::leftMouseDragged}));
    EXPECT_EQ(typesOf([] {}), (Types{EventType::leftMouseDragged}));
    EXPECT_EQ(typesOf([this] { hand->pressButton(3); }),
              (Types{EventType::rightMouseDown, EventType::leftMouseDragged}));
    EXPECT_EQ(typesOf([this] { hand->releaseButton(1); }),
              (Types{EventType::leftMouseUp, EventType::rightMouseDragged}));
    EXPECT_EQ(typesOf([this] { hand->releaseButton(3); }),
              (Types{EventType::rightMouseUp, EventType::mouseMoved}));
}

TEST_F(X11Hold, ClampsAPointOutsideToTheDesktop) {
    start();
    hold();
    answer = [this](const InputEvent& event) { putBack(event); };
    hand->relative(9000, 0);
    runPastScroll();
    EXPECT_EQ(seen.back().location, (Point{3199, 500}));
    seen.clear();
    hand->moveTo(1919, 20);
    runPastScroll();
    hand->relative(50, 0);
    runPastScroll();
    EXPECT_EQ(seen.back().location, (Point{1919, 20})) << "no monitor lies beside this height";
}

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
        placesAsked.insert(placesAsked.end(), 2, event.location);
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
