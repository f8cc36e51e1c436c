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

std::string shortcut(int keyCode, int flags) {
    return "<key>customShortcut</key><dict><key>keyCode</key><integer>" + std::to_string(keyCode) +
           "</integer><key>modifierFlags</key><integer>" + std::to_string(flags) +
           "</integer></dict>";
}
const std::string ctrlAltK = shortcut(40, 0xC0000);
const std::string ctrlAltJ = shortcut(38, 0xC0000);
const std::string superE = shortcut(14, 0x100000);

TEST(Shortcut, RecordedInThePopupSwitchesTheProgramInEveryStateOfTheLockKeys) {
    Popup popup;
    ASSERT_TRUE(popup.isUp()) << popup.program->errors();
    EXPECT_FALSE(popup.isRecording()) << "it opened recording";
    ASSERT_TRUE(popup.startRecording());
    popup.hand.chord({key::leftControl, key::leftAlt, 'k'});
    ASSERT_TRUE(popup.stores(ctrlAltK)) << popup.stored();
    ASSERT_TRUE(popup.endsRecording());
    popup.leave();
    ASSERT_TRUE(popup.isGone());
    ASSERT_TRUE(popup.program->waitForText("10.14"));
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
    Popup popup(ctrlAltK);
    ASSERT_TRUE(popup.program->waitForText("10.14"));
    popup.hand.chord({key::leftControl, key::leftAlt, 'k'});
    ASSERT_TRUE(popup.turns(false));
    popup.openFromMenu();
    ASSERT_TRUE(popup.isUp());
    ASSERT_TRUE(popup.startRecording());
    popup.hand.type(backspace);
    ASSERT_TRUE(
        popup.soon([&] { return popup.stored().find("customShortcut") == std::string::npos; }));
    ASSERT_TRUE(popup.endsRecording());
    popup.hand.chord({key::leftControl, key::leftAlt, 'k'});
    // The popup cannot be left without one. The field still has the focus.
    ASSERT_TRUE(popup.soon([&] {
        popup.hand.type(0x20);
        return popup.isRecording();
    }));
    popup.hand.chord({key::leftControl, key::leftAlt, 'j'});
    ASSERT_TRUE(popup.stores(ctrlAltJ));
    EXPECT_FALSE(popup.isSwitchedOn()) << "the old one has switched it";
    ASSERT_TRUE(popup.endsRecording());
    popup.hand.chord({key::leftControl, key::leftAlt, 'j'});
    EXPECT_TRUE(popup.turns(true)) << "the new one works at once, also while the popup is up";
}

TEST(Shortcut, IsShownInTheLayoutThatTheUserGoesTo) {
    constexpr xcb_keysym_t nextLayout = 0xfe08;
    Popup popup(ctrlAltK);
    ASSERT_TRUE(popup.program->waitForText("10.14"));
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
    ASSERT_TRUE(popup.stores(superE));
    EXPECT_TRUE(popup.program->waitForText("Super+E does nothing: another program holds it"));
}

TEST(Shortcut, IsAskedForAgainUntilThereIsOne) {
    Popup popup;
    ASSERT_TRUE(popup.isUp());
    for (int times = 0; times < 2; ++times) {
        popup.done();
        ASSERT_TRUE(popup.isUp()) << "it was left";
    }
    EXPECT_EQ(popup.stored().find("customShortcut"), std::string::npos);
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
    Popup popup("<key>customShortcutEnabled</key><false/>" + ctrlAltK);
    ASSERT_TRUE(popup.isUp());
    popup.hand.type(0xff09);
    popup.hand.type(0x20); // on the button, since the field is disabled
    ASSERT_TRUE(popup.isUp()) << "it was left";
    EXPECT_FALSE(popup.isRecording());
    popup.program->signal(SIGTERM);
    EXPECT_EQ(popup.program->wait(), 0);
}

TEST(Shortcut, RecordingIsCancelledByEscapeAndByLeavingThePopup) {
    Popup popup(ctrlAltK);
    ASSERT_TRUE(popup.program->waitForText("10.14"));
    popup.openFromMenu();
    ASSERT_TRUE(popup.isUp());
    ASSERT_TRUE(popup.startRecording());
    popup.hand.type(key::escape);
    ASSERT_TRUE(popup.endsRecording());
    EXPECT_NE(popup.stored().find(ctrlAltK), std::string::npos);
    popup.hand.type(0x20);
    ASSERT_TRUE(popup.soon([&] { return popup.isRecording(); }));
    // Longer than the toolkit waits before it takes a window for left.
    const auto later = support::Clock::now() + std::chrono::milliseconds(500);
    while (support::Clock::now() < later)
        ASSERT_TRUE(popup.isRecording());
    support::TestWindow other(popup.desktop.display(), {20, 600, 200, 150}, {255, 255, 255});
    popup.hand.clickAt(100, 700);
    EXPECT_TRUE(popup.endsRecording()) << "by a click on another program's window";
}

} // namespace
} // namespace hotkeytests
