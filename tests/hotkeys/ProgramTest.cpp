#include "hotkeys/Popup.h"
#include "testing/desktop/TestWindow.h"

#include <csignal>
#include <gtest/gtest.h>

// A shortcut of the real program, from the first popup on, with real key presses.

namespace hotkeytests {
namespace {

namespace key = support::key;

constexpr xcb_keysym_t backspace = 0xff08, f4 = 0xffc1;

const std::string ctrlAltK = desktop::shortcut(40, 0xC0000);
const std::string ctrlAltJ = desktop::shortcut(38, 0xC0000);
const std::string superE = desktop::shortcut(14, 0x100000);

std::string asShortcut(const std::string& value) {
    return desktop::entry("customShortcut", value);
}

TEST(Shortcut, RecordedInThePopupSwitchesTheProgramInEveryStateOfTheLockKeys) {
    Popup popup;
    ASSERT_TRUE(popup.isUp()) << popup.program->errors();
    ASSERT_TRUE(popup.beginsRecording()) << "by itself";
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

TEST(Shortcut, ThatTheWindowManagerHoldsIsRefusedAndTheOldOneStays) {
    Popup popup({{"customShortcut", ctrlAltK}});
    ASSERT_TRUE(popup.saysThatItStarts());
    popup.openFromMenu();
    ASSERT_TRUE(popup.isUp());
    EXPECT_FALSE(popup.isRecording()) << "there is one";
    ASSERT_TRUE(popup.startRecording());
    popup.hand.chord({key::leftSuper, 'e'});
    popup.hand.chord({key::leftSuper, key::f2}); // the program's own
    popup.hand.type(key::escape);
    ASSERT_TRUE(popup.endsRecording());
    popup.hand.chord({key::leftControl, key::leftAlt, 'k'});
    EXPECT_TRUE(popup.turns(false)) << "it works at once";
    EXPECT_NE(popup.storedSettings().find(asShortcut(ctrlAltK)), std::string::npos);
    EXPECT_EQ(popup.program->errors().find("another program holds it"), std::string::npos)
        << "what fails of the program's own is nobody's business: " << popup.program->errors();
}

TEST(Shortcut, PopupStaysAndTakesTheKeyboardHoweverItIsLeftWithoutOne) {
    Popup popup;
    ASSERT_TRUE(popup.isUp());
    ASSERT_TRUE(popup.beginsRecording());
    const xcb_window_t first = popup.current;
    popup.done(); // for the recorder, which refuses it
    const auto leave = [&popup](int way) {
        const support::Area area = popup.area();
        switch (way) {
        case 0:
            popup.hand.type(key::escape);
            break;
        case 1:
            popup.hand.chord({key::leftAlt, f4});
            break;
        default:
            popup.hand.clickAt(area.x + area.width - 60, area.y + area.height - 30); // "Done"
        }
    };
    for (int way = 0; way < 3; ++way) {
        popup.hand.type(key::escape);
        ASSERT_TRUE(popup.endsRecording()) << way;
        ASSERT_TRUE(popup.canBeTypedInto());
        leave(way);
        EXPECT_TRUE(popup.beginsRecording()) << way;
    }
    popup.hand.chord({key::leftControl, key::leftAlt, 'k'});
    EXPECT_TRUE(popup.stores(asShortcut(ctrlAltK)));
    EXPECT_EQ(popup.current, first) << "one window all the time";
    ASSERT_TRUE(popup.endsRecording());
    popup.leave();
    EXPECT_TRUE(popup.isGone());
}

TEST(Shortcut, PopupComesToTheFrontAtASecondStart) {
    Popup popup;
    ASSERT_TRUE(popup.isUp());
    ASSERT_TRUE(popup.beginsRecording());
    popup.hand.type(key::escape);
    ASSERT_TRUE(popup.endsRecording());
    const support::Area area = popup.area();
    const support::Colour green{10, 200, 10};
    support::TestWindow film(popup.desktop.display(), {0, 0, 300, 200}, green, "film");
    film.makeFullScreen();
    const auto isCovered = [&] {
        return popup.eye.colour(area.x + area.width / 2, area.y + area.height - 10) == green;
    };
    ASSERT_TRUE(popup.eye.waitUntilSeen(isCovered)) << "it may be covered";
    EXPECT_EQ(popup.run()->wait(), 0);
    EXPECT_TRUE(popup.eye.waitUntilSeen([&] { return !isCovered(); }));

    popup.minimise();
    ASSERT_TRUE(popup.eye.waitUntilSeen(isCovered));
    EXPECT_EQ(popup.run()->wait(), 0);
    EXPECT_TRUE(popup.eye.waitUntilSeen([&] { return !isCovered(); }));
}

TEST(Shortcut, CanBeLeftUnrecordedByTheEndOfTheSession) {
    for (const bool recording : {true, false}) {
        Popup popup;
        ASSERT_TRUE(popup.isUp());
        ASSERT_TRUE(popup.beginsRecording());
        if (!recording) {
            popup.hand.type(key::escape);
            ASSERT_TRUE(popup.endsRecording());
        }
        popup.program->signal(SIGTERM);
        EXPECT_EQ(popup.program->wait(), 0) << recording;
        EXPECT_FALSE(popup.isRecording());
    }
}

TEST(Shortcut, CanBeLeftUnrecordedByTheEndOfTheSessionWhereItIsSwitchedOff) {
    Popup popup({{"customShortcut", ctrlAltK}, {"customShortcutEnabled", desktop::flag(false)}});
    ASSERT_TRUE(popup.isUp());
    popup.hand.type(key::escape);
    popup.hand.type(key::tab);
    popup.hand.type(key::space); // on the button, since the field is disabled
    EXPECT_FALSE(support::waitUntil([&] { return !popup.isShown(); }, support::milliseconds(500)))
        << "it was left";
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
