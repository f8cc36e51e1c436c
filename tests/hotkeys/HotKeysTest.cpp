#include "hotkeys/Keys.h"

#include <gmock/gmock.h>
#include <xcb/xinput.h>

namespace hotkeytests {
namespace {

constexpr Shortcut ctrlAltK{keyK, Shortcut::control | Shortcut::option};
constexpr xcb_keysym_t f10 = 0xffc7;                // openbox switches desktops with those up to F4
constexpr Shortcut superE{keyE, Shortcut::command}; // openbox starts a file manager with it

struct HotKeys : HotKeysOnADesktop {
    void pressCtrlAltK() { hand.chord({key::leftControl, key::leftAlt, 'k'}); }
};

TEST_F(HotKeys, WorkInEveryStateOfTheLockKeys) {
    bind(ctrlAltK);
    int expected = 0;
    for (const auto& [capsLock, numLock] :
         {std::pair{false, false}, {true, false}, {false, true}, {true, true}}) {
        if (capsLock) hand.type(key::capsLock);
        if (numLock) hand.type(key::numLock);
        pressCtrlAltK();
        EXPECT_EQ(pressesSoFar(), ++expected) << capsLock << numLock;
        if (capsLock) hand.type(key::capsLock);
        if (numLock) hand.type(key::numLock);
    }
}

TEST_F(HotKeys, StayClaimedWhenSomebodyAsksForObstacles) {
    using Obstacle = platform::HotKeys::Obstacle;
    bind(ctrlAltK);
    EXPECT_EQ(hotKeys->obstacleTo(ctrlAltK), Obstacle::none);
    EXPECT_EQ(hotKeys->obstacleTo(superE), Obstacle::taken);
    EXPECT_EQ(hotKeys->obstacleTo({keyK, Shortcut::control}), Obstacle::none);
    pressCtrlAltK();
    EXPECT_EQ(pressesSoFar(), 1);
    hand.chord({key::leftControl, 'k'});
    EXPECT_EQ(pressesSoFar(), 1) << "asking claims nothing";
}

TEST_F(HotKeys, AreForTheirModifiersAndNoOthers) {
    bind(ctrlAltK);
    hand.type('k');
    hand.chord({key::leftControl, 'k'});
    hand.chord({key::leftControl, key::leftAlt, key::leftShift, 'k'});
    hand.chord({key::leftControl, key::leftAlt, 'j'});
    EXPECT_EQ(pressesSoFar(), 0);
}

TEST_F(HotKeys, HaveEachModifier) {
    const std::pair<std::uint32_t, xcb_keysym_t> rows[] = {{Shortcut::control, key::leftControl},
                                                           {Shortcut::option, key::leftAlt},
                                                           {Shortcut::shift, key::leftShift},
                                                           {Shortcut::command, key::leftSuper},
                                                           {Shortcut::control, 0xffe4},
                                                           {Shortcut::option, 0xffea},
                                                           {Shortcut::shift, 0xffe2},
                                                           {Shortcut::command, 0xffec}};
    int expected = 0;
    for (const auto& [flag, keysym] : rows) {
        bind({keyK, flag});
        hand.chord({keysym, 'k'});
        EXPECT_EQ(pressesSoFar(), ++expected) << std::hex << keysym;
    }
}

TEST_F(HotKeys, MayBeAFunctionKeyAlone) {
    bind({122, 0});
    hand.type(0xffbe);
    EXPECT_EQ(pressesSoFar(), 1);
}

TEST_F(HotKeys, StayOnTheirKeyWhenTheLayoutChanges) {
    bind({keyZ, Shortcut::control});
    setLayout("de");
    hand.chord({key::leftControl, 'y'}); // in place of the U.S. layout's Z
    EXPECT_EQ(pressesSoFar(), 1);
    hand.chord({key::leftControl, 'z'});
    EXPECT_EQ(pressesSoFar(), 1);
    setLayout("us");
    hand.chord({key::leftControl, 'z'});
    EXPECT_EQ(pressesSoFar(), 2);
}

TEST_F(HotKeys, WorkInASecondLayout) {
    const auto done =
        desktop.spawn("setxkbmap", {"-layout", "us,ru", "-option", "grp:caps_toggle"});
    ASSERT_EQ(done->wait(), 0) << done->errors();
    bind(ctrlAltK);
    hand.type(0xfe08); // ISO_Next_Group, which is CapsLock now
    pressCtrlAltK();
    EXPECT_EQ(pressesSoFar(), 1);
    EXPECT_EQ(hotKeys->keyCodeString(ctrlAltK), "Л");
}

TEST_F(HotKeys, FollowAModifierThatMovesToAnotherBit) {
    bind({keyK, Shortcut::command});
    // Super on the bit that is NumLock's otherwise.
    const auto done = desktop.spawn(
        "xmodmap", {"-e", "clear mod4", "-e", "clear mod2", "-e", "add mod2 = Super_L"});
    ASSERT_EQ(done->wait(), 0) << done->errors();
    ASSERT_TRUE(loop.runUntil([&] {
        hand.chord({key::leftSuper, 'k'});
        return presses > 0;
    }));
}

TEST_F(HotKeys, AreOnePressHoweverLongTheKeyIsHeld) {
    bind(ctrlAltK);
    hand.press(key::leftControl);
    hand.press(key::leftAlt);
    hand.press('k');
    ASSERT_TRUE(loop.runUntil([&] { return presses > 0; }));
    EXPECT_TRUE(hearsPresses(5)) << "the server repeats the key";
    hand.release('k');
    hand.release(key::leftAlt);
    hand.release(key::leftControl);
    EXPECT_EQ(pressesSoFar(), 1);
    pressCtrlAltK();
    EXPECT_EQ(pressesSoFar(), 2);
}

TEST_F(HotKeys, ArePressedAnewAsFastAsAProgramCanType) {
    bind({keyK, Shortcut::control});
    hand.press(key::leftControl);
    for (int i = 0; i < 50; ++i)
        hand.type('k');
    hand.release(key::leftControl);
    EXPECT_EQ(pressesSoFar(), 50);
}

TEST_F(HotKeys, FollowWhatIsStored) {
    bind(ctrlAltK);
    settings.set(storedUnder, Shortcut{keyA, Shortcut::control}.toValue());
    pressCtrlAltK();
    EXPECT_EQ(pressesSoFar(), 0);
    hand.chord({key::leftControl, 'a'});
    EXPECT_EQ(pressesSoFar(), 1);
    settings.remove(storedUnder);
    hand.chord({key::leftControl, 'a'});
    EXPECT_EQ(pressesSoFar(), 1) << "cleared";
    settings.set(storedUnder, ctrlAltK.toValue());
    pressCtrlAltK();
    EXPECT_EQ(pressesSoFar(), 2) << "stored again";
    hotKeys->breakBinding(storedUnder);
    pressCtrlAltK();
    EXPECT_EQ(pressesSoFar(), 2) << "no longer bound";
    settings.set(storedUnder, Shortcut{keyA, Shortcut::control}.toValue());
    hand.chord({key::leftControl, 'a'});
    EXPECT_EQ(pressesSoFar(), 2) << "stored without being bound";
}

TEST_F(HotKeys, AreIgnoredWhereNothingUsefulIsStored) {
    for (const platform::Value& value :
         {platform::Value{std::string("K")}, platform::Value{platform::Dictionary{}},
          Shortcut{4000, Shortcut::control}.toValue()}) {
        settings.set(storedUnder, value);
        hotKeys->bindShortcut(storedUnder, [this] { ++presses; });
        EXPECT_EQ(pressesSoFar(), 0);
    }
}

TEST_F(HotKeys, ThatAreRegisteredAreGivenBackByAnEqualOne) {
    hotKeys->registerShortcut({109, Shortcut::command}, [this] { ++presses; });
    hand.chord({key::leftSuper, f10});
    EXPECT_EQ(pressesSoFar(), 1);
    hotKeys->unregisterShortcut({109, Shortcut::command});
    hand.chord({key::leftSuper, f10});
    EXPECT_EQ(pressesSoFar(), 1);
}

TEST_F(HotKeys, ThatTheWindowManagerHoldsAreRefusedAndToldOnce) {
    bind(superE);
    EXPECT_TRUE(hotKeys->isTaken(superE));
    EXPECT_THAT(log.lines, testing::ElementsAre(
                               "the shortcut Super+E does nothing: another program holds it"));
    settings.set(storedUnder, ctrlAltK.toValue());
    EXPECT_FALSE(hotKeys->isTaken(ctrlAltK));
    EXPECT_FALSE(hotKeys->isTaken(superE)) << "it is not asked for any more";
    settings.set(storedUnder, superE.toValue());
    EXPECT_TRUE(hotKeys->isTaken(superE));
    EXPECT_EQ(log.lines.size(), 1u);
}

TEST_F(HotKeys, ThatAreGrabbedThroughTheInputExtensionAreRefused) {
    support::XConnection other(desktop.display());
    const auto grabByExtension = [&](std::uint16_t device) {
        const std::uint32_t modifiers = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
        const std::uint32_t events = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
        const auto reply = support::own(xcb_input_xi_passive_grab_device_reply(
            other.get(),
            xcb_input_xi_passive_grab_device(other.get(), XCB_CURRENT_TIME, other.root(), XCB_NONE,
                                             45, device, 1, 1, XCB_INPUT_GRAB_TYPE_KEYCODE,
                                             XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_GRAB_MODE_ASYNC, 0,
                                             &events, &modifiers),
            nullptr));
        ASSERT_TRUE(reply);
        ASSERT_EQ(reply->num_modifiers, 0);
    };
    constexpr std::uint16_t masterKeyboard = 3;
    for (const std::uint16_t device :
         {masterKeyboard, std::uint16_t{XCB_INPUT_DEVICE_ALL_MASTER}}) {
        grabByExtension(device);
        bind(ctrlAltK);
        EXPECT_TRUE(hotKeys->isTaken(ctrlAltK)) << device;
        const std::uint32_t modifiers = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
        xcb_input_xi_passive_ungrab_device(other.get(), other.root(), 45, device, 1,
                                           XCB_INPUT_GRAB_TYPE_KEYCODE, &modifiers);
        other.sync();
        bind(ctrlAltK);
        EXPECT_FALSE(hotKeys->isTaken(ctrlAltK)) << device;
        pressCtrlAltK();
        EXPECT_GT(pressesSoFar(), 0) << "asking has left nothing behind";
    }
}

TEST_F(HotKeys, ThatAreOnlyRegisteredAreNobodysBusinessWhereTheyFail) {
    hotKeys->registerShortcut(superE, [] {});
    EXPECT_TRUE(hotKeys->isTaken(superE));
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(HotKeys, ThatAreRefusedInOneStateOfTheLockKeysAreLeftAloneInAll) {
    support::XConnection other(desktop.display());
    xcb_grab_key(other.get(), 0, other.root(),
                 XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_LOCK, 45, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    other.sync();
    bind(ctrlAltK);
    EXPECT_TRUE(hotKeys->isTaken(ctrlAltK));
    opened.connection->sync();
    const auto free = support::own(xcb_request_check(
        other.get(),
        xcb_grab_key_checked(other.get(), 0, other.root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1,
                             45, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    EXPECT_EQ(free, nullptr);
}

TEST_F(HotKeys, AreFreeForOthersWhenTheObjectIsGone) {
    bind(ctrlAltK);
    hotKeys.reset();
    opened.connection->sync();
    support::XConnection other(desktop.display());
    const auto refusal = support::own(xcb_request_check(
        other.get(),
        xcb_grab_key_checked(other.get(), 0, other.root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1,
                             45, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    EXPECT_EQ(refusal, nullptr);
    settings.set(storedUnder, superE.toValue()); // nobody listens any more
}

TEST_F(HotKeys, RunTheirActionFromTheLoopAndMayChangeWhatIsClaimed) {
    settings.set(storedUnder, ctrlAltK.toValue());
    hotKeys->bindShortcut(storedUnder, [this] {
        hotKeys->breakBinding(storedUnder);
        ++presses;
    });
    pressCtrlAltK();
    EXPECT_EQ(pressesSoFar(), 1);
    pressCtrlAltK();
    EXPECT_EQ(pressesSoFar(), 1);
}

} // namespace
} // namespace hotkeytests
