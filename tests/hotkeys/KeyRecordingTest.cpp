#include "hotkeys/Keys.h"
#include "testing/desktop/TestWindow.h"

#include <gmock/gmock.h>

namespace hotkeytests {
namespace {

using Stroke = platform::x11::KeyRecording::Stroke;

struct KeyRecording : HotKeysOnADesktop {
    void record() {
        ASSERT_TRUE(hotKeys->startRecording(
            [this](const Stroke& stroke) {
                if (stroke.unknownKey) {
                    ++unknownKeys;
                } else if (stroke.keyCode) {
                    keys.push_back({*stroke.keyCode, stroke.modifierFlags});
                    if (stopAtOnce) hotKeys->stopRecording();
                } else {
                    modifiers.push_back(stroke.modifierFlags);
                }
            },
            [this] { ++timesLeft; }));
    }
    bool recorded(std::size_t count) {
        return loop.runUntil([&] { return keys.size() >= count; });
    }

    std::vector<Shortcut> keys;
    std::vector<std::uint32_t> modifiers;
    bool stopAtOnce = true;
    int unknownKeys = 0;
    int timesLeft = 0;
};

TEST_F(KeyRecording, TellsThePlaceOfTheKeyAndTheHeldModifiers) {
    setLayout("de");
    record();
    hand.chord({key::leftControl, key::leftAlt, 'y'});
    ASSERT_TRUE(recorded(1));
    EXPECT_EQ(keys.front(), (Shortcut{keyZ, Shortcut::control | Shortcut::option}));
    EXPECT_THAT(modifiers,
                testing::ElementsAre(Shortcut::control, Shortcut::control | Shortcut::option));
}

TEST_F(KeyRecording, DoesNotMindTheLockKeys) {
    hand.type(key::capsLock);
    hand.type(key::numLock);
    record();
    hand.chord({key::leftControl, 'k'});
    ASSERT_TRUE(recorded(1));
    EXPECT_EQ(keys.front(), (Shortcut{keyK, Shortcut::control}));
}

TEST_F(KeyRecording, TellsWhenAModifierIsReleased) {
    record();
    hand.chord({key::leftControl, key::leftShift});
    hand.type('a');
    ASSERT_TRUE(recorded(1));
    EXPECT_THAT(modifiers,
                testing::ElementsAre(Shortcut::control, Shortcut::control | Shortcut::shift,
                                     Shortcut::control, 0u));
}

TEST_F(KeyRecording, HearsWhatTheWindowManagerAndTheProgramItselfHold) {
    stopAtOnce = false;
    bind({keyK, Shortcut::control});
    record();
    hand.chord({key::leftSuper, 'e'});
    hand.chord({key::leftAlt, 0xff09}); // openbox would switch windows
    hand.chord({key::leftControl, 'k'});
    ASSERT_TRUE(recorded(3));
    EXPECT_THAT(keys, testing::ElementsAre(Shortcut{keyE, Shortcut::command},
                                           Shortcut{tab, Shortcut::option},
                                           Shortcut{keyK, Shortcut::control}));
    EXPECT_EQ(presses, 0);
    hotKeys->stopRecording();
    hand.chord({key::leftControl, 'k'});
    EXPECT_EQ(pressesSoFar(), 1) << "restored";
}

TEST_F(KeyRecording, LetsTheCombinationsGoMeanwhile) {
    bind({keyK, Shortcut::control});
    support::XConnection other(desktop.display());
    const auto grabbed = [&] {
        const auto refusal = support::own(xcb_request_check(
            other.get(), xcb_grab_key_checked(other.get(), 0, other.root(), XCB_MOD_MASK_CONTROL,
                                              45, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        return refusal == nullptr;
    };
    EXPECT_FALSE(grabbed());
    record();
    opened.connection->sync();
    EXPECT_TRUE(grabbed());
    hotKeys->stopRecording();
    EXPECT_TRUE(hotKeys->isTaken({keyK, Shortcut::control}));
}

TEST_F(KeyRecording, OfAKeyThatIsStillHeldDoesNotPressIt) {
    const Shortcut recordedOne{keyK, Shortcut::control};
    hotKeys->bindShortcut(storedUnder, [this] { ++presses; });
    record();
    hand.press(key::leftControl);
    hand.press('k');
    ASSERT_TRUE(recorded(1));
    settings.set(storedUnder, recordedOne.toValue());
    EXPECT_TRUE(hearsPresses(5)) << "it repeats";
    hand.release('k');
    hand.release(key::leftControl);
    EXPECT_EQ(pressesSoFar(), 0);
    EXPECT_EQ(keys.size(), 1u);
    hand.chord({key::leftControl, 'k'});
    EXPECT_EQ(pressesSoFar(), 1);
}

TEST_F(KeyRecording, GivesTheKeyboardBack) {
    support::XConnection other(desktop.display());
    const auto grab = [&] {
        const auto reply = support::own(xcb_grab_keyboard_reply(
            other.get(),
            xcb_grab_keyboard(other.get(), 0, other.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                              XCB_GRAB_MODE_ASYNC),
            nullptr));
        return reply ? reply->status : 255;
    };
    record();
    EXPECT_EQ(grab(), XCB_GRAB_STATUS_ALREADY_GRABBED);
    hotKeys->stopRecording();
    opened.connection->sync();
    EXPECT_EQ(grab(), XCB_GRAB_STATUS_SUCCESS);
    // And is not started while another program has it.
    EXPECT_FALSE(hotKeys->startRecording([](const Stroke&) {}, [] {}));
    EXPECT_THAT(log.lines,
                testing::Contains("no shortcut can be recorded: another program has the keyboard"));
}

TEST_F(KeyRecording, TellsWhatKeepsACombinationFromBeingChosen) {
    using Obstacle = platform::RecordableHotKeys::Obstacle;
    hotKeys->registerShortcut({120, Shortcut::command}, [] {});
    bind({keyK, Shortcut::control});
    record();
    EXPECT_EQ(hotKeys->obstacleTo({120, Shortcut::command}), Obstacle::fixed);
    EXPECT_EQ(hotKeys->obstacleTo({keyE, Shortcut::command}), Obstacle::taken);
    EXPECT_EQ(hotKeys->obstacleTo({keyK, Shortcut::control}), Obstacle::none) << "its own";
    EXPECT_EQ(hotKeys->obstacleTo({keyA, Shortcut::control}), Obstacle::none);
    support::XConnection other(desktop.display());
    const auto refusal = support::own(xcb_request_check(
        other.get(), xcb_grab_key_checked(other.get(), 0, other.root(), XCB_MOD_MASK_CONTROL, 38,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    EXPECT_EQ(refusal, nullptr) << "asking does not claim it";
    hotKeys->stopRecording();
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(KeyRecording, TellsOfAKeyThatHasNoCode) {
    record();
    hand.type(0x1008ff2f); // XF86Sleep
    EXPECT_TRUE(loop.runUntil([&] { return unknownKeys == 1; }));
    EXPECT_TRUE(keys.empty());
}

TEST_F(KeyRecording, TellsThatAnotherWindowGetsTheFocusAndNotThatItHasTheKeyboardItself) {
    support::TestWindow first(desktop.display(), {100, 100, 300, 200}, {255, 255, 255});
    support::TestWindow second(desktop.display(), {600, 100, 300, 200}, {255, 255, 255});
    support::XConnection other(desktop.display());
    const auto focus = [&](const support::TestWindow& window) {
        hand.clickAt(window.area().x + 50, window.area().y + 50);
        EXPECT_TRUE(loop.runUntil([&] {
            const auto now = support::own(
                xcb_get_input_focus_reply(other.get(), xcb_get_input_focus(other.get()), nullptr));
            return now && now->focus == window.id();
        }));
    };
    stopAtOnce = false;
    focus(first);
    record();
    hand.chord({key::leftControl, 'k'});
    ASSERT_TRUE(recorded(1));
    EXPECT_EQ(timesLeft, 0);
    focus(second);
    EXPECT_TRUE(loop.runUntil([&] { return timesLeft == 1; }));
    hotKeys->stopRecording();
    focus(first);
    EXPECT_EQ(pressesSoFar(), 0);
    EXPECT_EQ(timesLeft, 1) << "nothing is being recorded";
}

} // namespace
} // namespace hotkeytests
