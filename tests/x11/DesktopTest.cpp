#include "Session.h"
#include "platform/HotKeys.h"
#include "platform/x11/connection/Ewmh.h"
#include "platform/x11/keys/DesktopLayout.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/TestWindow.h"

#include <gtest/gtest.h>

using platform::x11::readCardinal;
using x11tests::Session;

namespace {

constexpr std::uint16_t leftArrow = 123, rightArrow = 124, letterA = 0;

std::uint32_t rootCardinal(Session& session, std::string_view name) {
    auto& x = session.connection;
    return readCardinal(x, x.root(), x.intern(name)).value_or(~0u);
}

} // namespace

TEST(X11Keyboard, SwitchesToTheNeighbouringDesktopAndNotPastTheEnds) {
    support::PrivateDesktop desktop;
    desktop.startWindowManager("openbox");
    Session session(desktop.display(), GAMMA_GUARD);
    const auto last = rootCardinal(session, "_NET_NUMBER_OF_DESKTOPS") - 1;
    ASSERT_GE(last, 1u);
    ASSERT_EQ(rootCardinal(session, "_NET_CURRENT_DESKTOP"), 0u);
    auto step = [&](std::uint16_t key) {
        session.keyboard.postKey(key, true, platform::Shortcut::control);
        session.keyboard.postKey(key, false, platform::Shortcut::control);
    };
    auto waitForDesktop = [&](std::uint32_t wanted) {
        return session.loop.runUntil(
            [&] { return rootCardinal(session, "_NET_CURRENT_DESKTOP") == wanted; });
    };
    step(leftArrow);
    step(rightArrow);
    EXPECT_TRUE(waitForDesktop(1)) << "not past the first, then one to the right";
    for (std::uint32_t n = 2; n <= last; ++n) {
        step(rightArrow);
        ASSERT_TRUE(waitForDesktop(n));
    }
    step(rightArrow);
    step(leftArrow);
    EXPECT_TRUE(waitForDesktop(last - 1)) << "not past the last, then one to the left";
}

TEST(X11Keyboard, StaysInTheRowOfTheDesktopsLayout) {
    support::PrivateDesktop desktop;
    desktop.startWindowManager("openbox");
    Session session(desktop.display(), GAMMA_GUARD);
    ASSERT_EQ(rootCardinal(session, "_NET_NUMBER_OF_DESKTOPS"), 4u);
    // As a pager of two rows with the first desktop at the top right: 1 0, 3 2.
    const std::uint32_t layout[] = {0, 2, 2, 1};
    auto& x = session.connection;
    xcb_change_property(x.xcb(), XCB_PROP_MODE_REPLACE, x.root(), x.intern("_NET_DESKTOP_LAYOUT"),
                        XCB_ATOM_CARDINAL, 32, 4, layout);
    session.sync();
    const auto isOn = [&](std::uint32_t wanted) {
        return session.loop.runUntil(
            [&] { return rootCardinal(session, "_NET_CURRENT_DESKTOP") == wanted; });
    };
    const auto step = [&](std::uint16_t key) {
        session.keyboard.postKey(key, true, platform::Shortcut::control);
        session.keyboard.postKey(key, false, platform::Shortcut::control);
    };
    platform::x11::tellWindowManager(x, x.root(), x.intern("_NET_CURRENT_DESKTOP"),
                                     {2, 0, 0, 0, 0});
    ASSERT_TRUE(isOn(2));
    step(leftArrow);
    EXPECT_TRUE(isOn(3));
    step(leftArrow);
    step(rightArrow);
    EXPECT_TRUE(isOn(2)) << "nothing lies left of the fourth";
}

namespace {

/// What a program with the keyboard is told of keys: "+" and "-" with what the key means, and
/// whether Control was held.
struct KeyWatcher {
    explicit KeyWatcher(const std::string& display) : x(display) {
        const std::uint32_t mask = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
        xcb_change_window_attributes(x.get(), x.root(), XCB_CW_EVENT_MASK, &mask);
        x.sync();
    }
    std::vector<std::string> keys() {
        std::vector<std::string> told;
        x.sync();
        while (const auto event = x.nextEvent()) {
            const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
            const int type = event->response_type & 0x7f;
            if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) continue;
            told.push_back((type == XCB_KEY_PRESS ? "+" : "-") + name(key.detail) +
                           (key.state & XCB_MOD_MASK_CONTROL ? " held" : ""));
        }
        return told;
    }
    std::string name(xcb_keycode_t code) const {
        const auto mapping = support::own(xcb_get_keyboard_mapping_reply(
            x.get(), xcb_get_keyboard_mapping(x.get(), code, 1), nullptr));
        if (!mapping) throw std::runtime_error("no such key");
        const xcb_keysym_t meaning = *xcb_get_keyboard_mapping_keysyms(mapping.get());
        if (meaning == support::key::leftControl) return "Control";
        if (meaning == support::key::left) return "Left";
        return meaning == support::key::right ? "Right" : "another key";
    }
    support::XConnection x;
};

} // namespace

TEST(X11Keyboard, TypesTheKeystrokeWhereNoWindowManagerTellsOfDesktops) {
    support::PrivateDesktop desktop;
    Session session(desktop.display(), GAMMA_GUARD);
    support::Hand hand(desktop.display());
    auto& x = session.connection;
    KeyWatcher watcher(desktop.display());
    const auto step = [&](std::uint16_t key) {
        session.keyboard.postKey(key, true, platform::Shortcut::control);
        session.keyboard.postKey(key, false, platform::Shortcut::control);
        session.sync();
        return watcher.keys();
    };
    using Keys = std::vector<std::string>;
    const Keys toTheRight{"+Control", "+Right held", "-Right held", "-Control held"};
    EXPECT_EQ(step(rightArrow), toTheRight);
    EXPECT_EQ(step(leftArrow), (Keys{"+Control", "+Left held", "-Left held", "-Control held"}));

    hand.press(support::key::leftControl);
    watcher.keys();
    EXPECT_EQ(step(rightArrow), (Keys{"+Right held", "-Right held"})) << "the user holds it";
    hand.release(support::key::leftControl);
    watcher.keys();

    // One that has died left its properties behind.
    const std::uint32_t desktops = 4, current = 0, gone = 0x1234567;
    const auto tell = [&](const char* name, std::uint32_t value, xcb_window_t window) {
        xcb_change_property(x.xcb(), XCB_PROP_MODE_REPLACE, window, x.intern(name),
                            XCB_ATOM_CARDINAL, 32, 1, &value);
    };
    tell("_NET_NUMBER_OF_DESKTOPS", desktops, x.root());
    tell("_NET_CURRENT_DESKTOP", current, x.root());
    tell("_NET_SUPPORTED", x.intern("_NET_CURRENT_DESKTOP"), x.root());
    tell("_NET_SUPPORTING_WM_CHECK", gone, x.root());
    EXPECT_EQ(step(rightArrow), toTheRight) << "dead";

    // One that runs and knows no desktops.
    const support::TestWindow check(desktop.display(), {0, 0, 10, 10}, {0, 0, 0});
    tell("_NET_SUPPORTING_WM_CHECK", check.id(), x.root());
    tell("_NET_SUPPORTING_WM_CHECK", check.id(), check.id());
    tell("_NET_SUPPORTED", x.intern("_NET_ACTIVE_WINDOW"), x.root());
    EXPECT_EQ(step(rightArrow), toTheRight) << "without desktops";
    tell("_NET_SUPPORTED", x.intern("_NET_CURRENT_DESKTOP"), x.root());
    EXPECT_EQ(step(rightArrow), Keys{}) << "with them";
}

TEST(X11Keyboard, SaysOnceWhatItCannotPost) {
    support::PrivateDesktop desktop;
    Session session(desktop.display(), GAMMA_GUARD);
    for (int i = 0; i < 2; ++i)
        session.keyboard.postKey(letterA, true, 0);
    EXPECT_EQ(
        session.log.lines,
        (std::vector<std::string>{"keystrokes other than Control with an arrow are not posted"}));
}

TEST(DesktopLayout, TellsWhatLiesLeftAndRight) {
    using platform::x11::DesktopLayout;
    constexpr int none = -1;
    const struct {
        const char* what;
        std::vector<std::uint32_t> property; ///< orientation, columns, rows, corner
        std::uint32_t count, from;
        int left, right;
    } rows[] = {
        {"no layout: one row", {}, 4, 0, none, 1},
        {"no layout: one row", {}, 4, 1, 0, 2},
        {"no layout: one row", {}, 4, 3, 2, none},
        {"two rows", {0, 2, 2, 0}, 4, 1, 0, none},
        {"two rows", {0, 2, 2, 0}, 4, 2, none, 3},
        {"columns as many as are needed", {0, 0, 2, 0}, 5, 2, 1, none},
        {"columns as many as are needed", {0, 0, 2, 0}, 5, 3, none, 4},
        {"nothing behind the last", {0, 3, 0, 0}, 5, 4, 3, none},
        {"without a corner", {0, 2, 2}, 4, 1, 0, none},
        {"from the top right", {0, 2, 2, 1}, 4, 0, 1, none},
        {"from the bottom right", {0, 2, 2, 2}, 4, 3, none, 2},
        {"from the bottom left", {0, 2, 2, 3}, 4, 0, none, 1},
        {"down the columns", {1, 2, 2, 0}, 4, 0, none, 2},
        {"down the columns", {1, 2, 2, 0}, 4, 3, 1, none},
        {"down the columns", {1, 3, 0, 0}, 5, 2, 0, 4},
        {"down the columns", {1, 3, 0, 0}, 5, 3, 1, none},
        {"down the columns from the right", {1, 2, 2, 1}, 4, 0, 2, none},
        {"one column", {0, 1, 0, 0}, 4, 1, none, none},
        {"nonsense", {0, 0, 0, 0}, 4, 1, 0, 2},
    };
    for (const auto& row : rows) {
        const auto layout = DesktopLayout::read(row.property);
        const auto to = [&](int direction) {
            const auto found = layout.neighbour(row.from, row.count, direction);
            return found ? static_cast<int>(*found) : none;
        };
        EXPECT_EQ(to(-1), row.left) << row.what << ", from " << row.from;
        EXPECT_EQ(to(1), row.right) << row.what << ", from " << row.from;
    }
}

TEST(X11Focus, GivesTheFocusBackToTheWindowThatHadItBefore) {
    support::PrivateDesktop desktop;
    desktop.startWindowManager("openbox");
    Session session(desktop.display(), GAMMA_GUARD);
    // The service has learned it too: it asks which window, then whose.
    const auto activeIs = [&](xcb_window_t window) {
        const bool is = session.loop.runUntil(
            [&] { return rootCardinal(session, "_NET_ACTIVE_WINDOW") == window; });
        for (int answers = 0; answers < 3; ++answers) {
            session.connection.sync();
            session.connection.drain();
        }
        return is;
    };
    support::TestWindow foreign(desktop.display(), {100, 100, 300, 200}, {255, 0, 0}, "foreign");
    support::XConnection asUser(desktop.display());
    auto activate = [&](xcb_window_t window) {
        platform::x11::tellWindowManager(session.connection, window,
                                         session.connection.intern("_NET_ACTIVE_WINDOW"),
                                         {2, XCB_CURRENT_TIME, 0, 0, 0});
    };
    activate(foreign.id());
    ASSERT_TRUE(activeIs(foreign.id()));

    support::TestWindow own(desktop.display(), {500, 100, 300, 200}, {0, 0, 255}, "own");
    ASSERT_TRUE(activeIs(own.id())) << "a new window gets the focus";
    const std::uint32_t pid = static_cast<std::uint32_t>(getpid());
    xcb_change_property(asUser.get(), XCB_PROP_MODE_REPLACE, own.id(), asUser.atom("_NET_WM_PID"),
                        XCB_ATOM_CARDINAL, 32, 1, &pid);
    asUser.sync();
    activate(foreign.id());
    ASSERT_TRUE(activeIs(foreign.id()));
    activate(own.id());
    ASSERT_TRUE(activeIs(own.id()));

    EXPECT_TRUE(session.loop.runUntil([&] {
        session.focus.activateFrontmostApplication();
        return rootCardinal(session, "_NET_ACTIVE_WINDOW") == foreign.id();
    }));
}
