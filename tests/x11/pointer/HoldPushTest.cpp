#include "HeldDesktop.h"

#include <thread>

// What is pushed against the barriers, as the program is told it, and what becomes of its answer.

using platform::EventType;
using platform::InputEvent;
using platform::Point;
using platform::Rect;
using support::Spot;
using x11tests::left;
using x11tests::right;
using x11tests::X11Hold;

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
    EXPECT_EQ(placesAsked[2].first, (Point{1980, 507}));
    EXPECT_EQ(placesAsked[2].second, (Point{1918, 507})) << "where the answer put it";
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

// As it is after each change of what the screens show.
TEST_F(X11Hold, KeepsWhatIsPushedWhereTheSameScreenIsAskedForAgain) {
    start();
    hold();
    answer = [this](const InputEvent& event) { putBack(event); };
    hand->moveTo(1919, 500);
    runPastScroll();
    hand->relative(60, 0);
    session->pointer.holdInside(left);
    runPastScroll();
    EXPECT_EQ(seen.back().location, (Point{1979, 500}));
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
        crossedInTheHandler = support::waitUntil([&] { return eye->cursor() == Spot{1979, 497}; });
        session->pointer.holdInside(right);
    };
    hand->relative(60, -3);
    runPastScroll();
    EXPECT_TRUE(crossedInTheHandler);
    EXPECT_EQ(placesAsked.back().second, (Point{1979, 497}));
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

// A fast mouse, of which only what a barrier stops is told. It is put back in each frame, to where
// it slid to and not to where it was stopped.
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
    const bool slid =
        session->loop.runUntil([&] { return eye->cursor().y >= 100 + stops * between * 8 / 10; },
                               support::milliseconds(3000));
    mover.join();
    EXPECT_TRUE(slid) << "it is at " << eye->cursor().y;
}

TEST_F(X11Hold, TellsWhereACursorBesideTheScreenIsStopped) {
    start("1280x1024+0+1024*,1280x1024+0+0,1280x1024+1280+1024");
    hand->moveTo(600, 1500);
    session->pointer.holdInside(Rect{0, 0, 1280, 1024});
    session->sync();
    runPastScroll();
    hand->moveTo(1279, 500); // on the upper monitor, where the barrier goes on
    runPastScroll();
    hand->relative(60, 0);
    runPastScroll();
    EXPECT_EQ(seen.back().location.y, 500 - 1024);
}

// Each frame would ask once more. So does a rest between two pushes, which a busy machine makes:
// then it is tried again.
TEST_F(X11Hold, AsksNothingWhereABarrierTellsThePlace) {
    start();
    hold();
    // To the edge, where it is then seen to be.
    hand->moveTo(1919, 500);
    runPastScroll();
    hand->relative(0, 1);
    runPastScroll();
    int warps = 0;
    answer = [&](const InputEvent& event) {
        if (left.contains(event.location)) return;
        ++warps;
        putBack(event);
    };
    const auto requests = [this] {
        return xcb_no_operation(session->inputConnection.xcb()).sequence;
    };
    constexpr unsigned pushes = 20, tries = 20;
    unsigned sent = 0;
    for (unsigned i = 0; i < tries && sent != pushes + 1; ++i) {
        const auto before = requests();
        for (const int goal = warps + static_cast<int>(pushes); warps < goal;) {
            const int next = warps + 1;
            hand->relative(5, 0);
            ASSERT_TRUE(session->loop.runUntil([&] { return warps == next; }));
        }
        sent = requests() - before;
    }
    EXPECT_EQ(sent, pushes + 1) << "the warps alone";
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
