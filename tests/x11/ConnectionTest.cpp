#include "Session.h"
#include "testing/desktop/PrivateDesktop.h"

#include <gtest/gtest.h>

using testing_support::KeptLog;
using x11tests::Session;
using x11tests::TestLoop;

TEST(X11Connection, SaysWhichDisplayCannotBeOpened) {
    TestLoop loop;
    KeptLog log;
    const auto opened = platform::x11::Connection::open("nowhere.invalid:7", loop, log, [] {});
    EXPECT_EQ(opened.connection, nullptr);
    EXPECT_EQ(opened.error, "cannot open display 'nowhere.invalid:7'; start it in an X11 session, "
                            "or set DISPLAY");
}

TEST(X11Connection, NamesTheExtensionThatTheServerLacks) {
    support::PrivateDesktop desktop; // for the folders that the servers need
    for (const std::string extension : {"RANDR", "XFIXES"}) {
        const auto server = support::startServer(
            {"Xvfb", "-displayfd", "3", "-extension", extension}, desktop.environment());
        TestLoop loop;
        KeptLog log;
        const auto opened = platform::x11::Connection::open(":" + server.line, loop, log, [] {});
        EXPECT_EQ(opened.connection, nullptr);
        EXPECT_EQ(opened.error, "the X server lacks the extension " + extension);
    }
}

TEST(X11Connection, TellsOnceThatTheServerHasGone) {
    auto desktop = std::make_unique<support::PrivateDesktop>();
    Session session(desktop->display(), GAMMA_GUARD);
    desktop.reset();
    EXPECT_TRUE(session.loop.runUntil([&] { return session.lost; }));
    session.lost = false;
    session.connection.sync();
    session.pointer.warp({1, 1});
    EXPECT_FALSE(session.loop.runUntil([&] { return session.lost; }, {}));
}

TEST(X11Connection, LogsARefusedRequestAndGoesOn) {
    support::PrivateDesktop desktop;
    Session session(desktop.display(), GAMMA_GUARD);
    xcb_unmap_window(session.connection.xcb(), 0x1234567);
    session.connection.sync();
    EXPECT_TRUE(session.loop.runUntil([&] { return !session.log.lines.empty(); }));
    EXPECT_EQ(session.log.lines.front(), "X11 error 3 of request 10.0 on 0x1234567");
    EXPECT_FALSE(session.lost);
}
