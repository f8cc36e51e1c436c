#include "Session.h"
#include "platform/HotKeys.h"
#include "platform/x11/connection/Ewmh.h"
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

TEST(X11Keyboard, SaysOnceWhatItCannotPost) {
    support::PrivateDesktop desktop;
    Session session(desktop.display(), GAMMA_GUARD);
    for (int i = 0; i < 2; ++i) {
        session.keyboard.postKey(rightArrow, true, platform::Shortcut::control);
        session.keyboard.postKey(letterA, true, 0);
    }
    EXPECT_EQ(session.log.lines,
              (std::vector<std::string>{
                  "the desktop cannot be switched: no window manager tells of desktops",
                  "keystrokes other than Control with an arrow are not posted"}));
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
