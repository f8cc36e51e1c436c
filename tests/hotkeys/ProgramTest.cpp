#include "hotkeys/Popup.h"
#include "testing/desktop/TestWindow.h"

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>

// A shortcut of the real program, from the first popup on, with real key presses.

namespace hotkeytests {
namespace {

namespace key = support::key;

constexpr xcb_keysym_t backspace = 0xff08;

const std::string ctrlAltK = desktop::shortcut(40, 0xC0000);
const std::string ctrlAltJ = desktop::shortcut(38, 0xC0000);
const std::string superE = desktop::shortcut(14, 0x100000);

std::string asShortcut(const std::string& value) {
    return desktop::entry("customShortcut", value);
}

TEST(Shortcut, RecordedInThePopupSwitchesTheProgramInEveryStateOfTheLockKeys) {
    Popup popup;
    ASSERT_TRUE(popup.isUp()) << popup.program->errors();
    EXPECT_FALSE(popup.isRecording()) << "it opened recording";
    ASSERT_TRUE(popup.startRecording());
    popup.hand.chord({key::leftControl, key::leftAlt, 'k'});
    ASSERT_TRUE(popup.stores(asShortcut(ctrlAltK))) << popup.storedSettings();
    ASSERT_TRUE(popup.endsRecording());
    popup.leave();
    ASSERT_TRUE(popup.isGone());
    ASSERT_TRUE(popup.saysThatItStarts());
    bool on = popup.isSwitchedOn();
    const auto toggles = [&] {
        popup.hand.chord({key::leftControl, key::leftAlt, 'k'});
        return popup.turns(on = !on);
    };
    EXPECT_TRUE(toggles()) << "plain";
    popup.hand.type(key::capsLock);
    EXPECT_TRUE(toggles()) << "CapsLock";
    popup.hand.type(key::numLock);
    EXPECT_TRUE(toggles()) << "both";
    popup.hand.type(key::capsLock);
    EXPECT_TRUE(toggles()) << "NumLock";
    popup.hand.type(key::numLock);
    ASSERT_EQ(popup.desktop.spawn("setxkbmap", {"de"})->wait(), 0);
    EXPECT_TRUE(toggles()) << "another layout";
}

TEST(Shortcut, ThatIsClearedDoesNothingAnyMore) {
    Popup popup({{"customShortcut", ctrlAltK}});
    ASSERT_TRUE(popup.saysThatItStarts());
    popup.hand.chord({key::leftControl, key::leftAlt, 'k'});
    ASSERT_TRUE(popup.turns(false));
    popup.openFromMenu();
    ASSERT_TRUE(popup.isUp());
    ASSERT_TRUE(popup.startRecording());
    popup.hand.type(backspace);
    ASSERT_TRUE(support::waitUntil(
        [&] { return popup.storedSettings().find("customShortcut") == std::string::npos; }));
    ASSERT_TRUE(popup.endsRecording());
    popup.hand.chord({key::leftControl, key::leftAlt, 'k'});
    // The popup cannot be left without one. The field still has the focus.
    ASSERT_TRUE(support::waitUntil([&] {
        popup.hand.type(key::space);
        return popup.isRecording();
    }));
    popup.hand.chord({key::leftControl, key::leftAlt, 'j'});
    ASSERT_TRUE(popup.stores(asShortcut(ctrlAltJ)));
    EXPECT_FALSE(popup.isSwitchedOn()) << "the old one has switched it";
    ASSERT_TRUE(popup.endsRecording());
    popup.hand.chord({key::leftControl, key::leftAlt, 'j'});
    EXPECT_TRUE(popup.turns(true)) << "the new one works at once, also while the popup is up";
}

TEST(Shortcut, IsShownInTheLayoutThatTheUserGoesTo) {
    constexpr xcb_keysym_t nextLayout = 0xfe08;
    Popup popup({{"customShortcut", ctrlAltK}});
    ASSERT_TRUE(popup.saysThatItStarts());
    const auto done =
        popup.desktop.spawn("setxkbmap", {"-layout", "us,ru", "-option", "grp:caps_toggle"});
    ASSERT_EQ(done->wait(), 0) << done->errors();
    popup.openFromMenu();
    ASSERT_TRUE(popup.isUp());
    // The frame is the window manager's, the rest is painted at once.
    const support::Area frame = popup.area();
    constexpr int border = 30;
    const auto look = [&] {
        return popup.eye
            .picture({frame.x + border, frame.y + border, frame.width - 2 * border,
                      frame.height - 2 * border})
            .pixels;
    };
    std::vector<support::Colour> latin;
    ASSERT_TRUE(popup.eye.waitUntilSeen([&] {
        latin = look();
        return std::ranges::count(latin, latin.front()) != std::ssize(latin);
    }));
    popup.hand.type(nextLayout);
    EXPECT_TRUE(popup.eye.waitUntilSeen([&] { return look() != latin; }));
    popup.hand.type(nextLayout);
    EXPECT_TRUE(popup.eye.waitUntilSeen([&] { return look() == latin; }));
}

TEST(Shortcut, ThatTheWindowManagerHoldsIsRefused) {
    Popup popup;
    ASSERT_TRUE(popup.isUp());
    ASSERT_TRUE(popup.startRecording());
    popup.hand.chord({key::leftSuper, 'e'});
    ASSERT_TRUE(popup.stores(asShortcut(superE)));
    EXPECT_TRUE(popup.program->waitForText("Super+E does nothing: another program holds it"));
}

TEST(Shortcut, IsAskedForAgainUntilThereIsOne) {
    Popup popup;
    ASSERT_TRUE(popup.isUp());
    for (int times = 0; times < 2; ++times) {
        popup.done();
        ASSERT_TRUE(popup.isUp()) << "it was left";
    }
    EXPECT_EQ(popup.storedSettings().find("customShortcut"), std::string::npos);
}

TEST(Shortcut, CanBeLeftUnrecordedByTheEndOfTheSession) {
    for (const bool secondShowing : {false, true})
        for (const bool recording : {false, true}) {
            Popup popup;
            ASSERT_TRUE(popup.isUp());
            if (secondShowing) {
                popup.done();
                ASSERT_TRUE(popup.isUp());
            }
            if (recording) {
                ASSERT_TRUE(popup.startRecording());
            }
            popup.program->signal(SIGTERM);
            EXPECT_EQ(popup.program->wait(), 0) << secondShowing << recording;
            EXPECT_FALSE(popup.isRecording());
        }
}

TEST(Shortcut, CanBeLeftUnrecordedByTheEndOfTheSessionWhereItIsSwitchedOff) {
    Popup popup({{"customShortcut", ctrlAltK}, {"customShortcutEnabled", desktop::flag(false)}});
    ASSERT_TRUE(popup.isUp());
    popup.hand.type(key::tab);
    popup.hand.type(key::space); // on the button, since the field is disabled
    ASSERT_TRUE(popup.isUp()) << "it was left";
    EXPECT_FALSE(popup.isRecording());
    popup.program->signal(SIGTERM);
    EXPECT_EQ(popup.program->wait(), 0);
}

TEST(Shortcut, RecordingIsCancelledByEscapeAndByLeavingThePopup) {
    Popup popup({{"customShortcut", ctrlAltK}});
    ASSERT_TRUE(popup.saysThatItStarts());
    popup.openFromMenu();
    ASSERT_TRUE(popup.isUp());
    ASSERT_TRUE(popup.startRecording());
    popup.hand.type(key::escape);
    ASSERT_TRUE(popup.endsRecording());
    EXPECT_NE(popup.storedSettings().find(asShortcut(ctrlAltK)), std::string::npos);
    popup.hand.type(key::space);
    ASSERT_TRUE(support::waitUntil([&] { return popup.isRecording(); }));
    // Longer than the toolkit waits before it takes a window for left.
    ASSERT_FALSE(
        support::waitUntil([&] { return !popup.isRecording(); }, support::milliseconds(500)));
    support::TestWindow other(popup.desktop.display(), {20, 600, 200, 150}, {255, 255, 255});
    popup.hand.clickAt(100, 700);
    EXPECT_TRUE(popup.endsRecording()) << "by a click on another program's window";
}

} // namespace
} // namespace hotkeytests
