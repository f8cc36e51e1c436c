#include "testing/desktop/PrivateDesktop.h"
#include "tests/x11/SeenEvents.h"

// What is told while a window of the program is active.

using platform::EventType;
using platform::InputEvent;
using x11tests::Session;
namespace key = support::key;

namespace {

struct OwnWindow : testing::Test {
    OwnWindow() {
        const auto isScroll = [](const InputEvent& e) { return e.type == EventType::scrollWheel; };
        session.input.addGlobalMonitor(x11tests::SeenEvents::monitorMask,
                                       [this, isScroll](const InputEvent& e) {
                                           if (!isScroll(e)) monitored.push_back(e);
                                       });
        session.input.addTap({.mask = x11tests::SeenEvents::monitorMask},
                             [this, isScroll](const InputEvent& e) {
                                 if (isScroll(e))
                                     ++turns;
                                 else
                                     tapped.push_back(e);
                             });
        session.sync();
    }

    /// What the hand did before belongs to the time before.
    void setActive(bool on) {
        settle();
        session.ownWindowActive = on;
        session.input.ownWindowChanged();
    }
    /// Taps are told everything, a turn of the wheel included, which comes last.
    void settle() {
        const int before = turns;
        hand.click(4);
        ASSERT_TRUE(session.loop.runUntil([&] { return turns == before + 1; }));
    }
    /// What is down for somebody who takes each event of a key for a change of its state.
    std::vector<int> heldByToggling() const {
        std::vector<int> held;
        for (const InputEvent& e : monitored)
            if (std::erase(held, e.keyCode) == 0) held.push_back(e.keyCode);
        return held;
    }

    support::PrivateDesktop desktop{"1920x1080+0+0,1280x1024+1920+56"};
    Session session{desktop.display(), GAMMA_GUARD};
    support::Hand hand{desktop.display()};
    std::vector<InputEvent> monitored, tapped;
    int turns = 0;
};

} // namespace

TEST_F(OwnWindow, KeepsPointerEventsAndModifierChangesFromAMonitorButNotFromATap) {
    setActive(true);
    hand.moveTo(500, 500);
    hand.click(1);
    hand.type(key::leftAlt);
    settle();
    EXPECT_EQ(monitored.size(), 0u);
    EXPECT_EQ(tapped.size(), 5u);
    setActive(false);
    hand.type(key::leftAlt);
    settle();
    EXPECT_EQ(monitored.size(), 2u);
}

TEST_F(OwnWindow, IsToldTheReleaseOfAKeyThatWasPressedOutsideAndNotOfOnePressedInIt) {
    hand.press(key::leftControl);
    setActive(true);
    hand.release(key::leftControl);
    hand.press(key::leftAlt);
    hand.press(key::leftSuper);
    hand.release(key::leftSuper);
    setActive(false);
    hand.release(key::leftAlt);
    settle();
    ASSERT_EQ(monitored.size(), 2u);
    EXPECT_EQ(monitored[0].keyCode, platform::keyCodes::control);
    EXPECT_EQ(monitored[1].keyCode, platform::keyCodes::control);
    EXPECT_EQ(tapped.size(), 6u);
}

TEST_F(OwnWindow, NeverLeavesAKeyHeldForSomebodyWhoTogglesIt) {
    const xcb_keysym_t keys[] = {key::leftControl, key::leftAlt, key::leftSuper};
    // Each key goes down before, in or after the window's time, and up no earlier.
    constexpr int times = 3;
    for (int down = 0; down < times; ++down)
        for (int up = down; up < times; ++up)
            for (const xcb_keysym_t one : keys) {
                for (int time = 0; time < times; ++time) {
                    setActive(time == 1);
                    if (time == down) hand.press(one);
                    if (time == up) hand.release(one);
                }
                settle();
                EXPECT_EQ(heldByToggling(), std::vector<int>{}) << one << " " << down << " " << up;
            }
    hand.press(key::leftControl);
    settle();
    EXPECT_EQ(heldByToggling(), std::vector<int>{platform::keyCodes::control});
}
