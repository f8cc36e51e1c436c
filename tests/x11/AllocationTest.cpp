// A program of its own, because the allocation functions are replaced in it.

#include "platform/x11/input/InputEvents.h"
#include "testing/FewDescriptors.h"
#include "testing/KeptLog.h"
#include "testing/allocations/Allocations.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"

#include "TestLoop.h"

#include <gtest/gtest.h>

TEST(X11InputEvents, AllocateNothingForAnEventOnceRunning) {
    support::PrivateDesktop desktop;
    support::Hand hand(desktop.display());
    testing_support::KeptLog log;
    x11tests::TestLoop timers;
    testing_support::FewDescriptors descriptors;
    auto opened = platform::x11::Connection::open(desktop.display(), descriptors, log, [] {});
    ASSERT_NE(opened.connection, nullptr) << opened.error;
    platform::x11::Displays displays(*opened.connection);
    platform::x11::Hold hold(*opened.connection, displays);
    platform::x11::Pointer pointer(*opened.connection, displays, timers, hold);
    platform::x11::InputEvents input(*opened.connection, descriptors, displays, pointer, hold,
                                     [] { return false; });
    int handled = 0;
    input.addGlobalMonitor(0xFC010FE, [&](const platform::InputEvent& event) {
        ++handled;
        if (event.location.x > 500) pointer.warp({10, 10});
    });
    opened.connection->sync();

    auto moveAndClick = [&](int times) {
        for (int i = 0; i < times; ++i) {
            const int before = handled;
            hand.relative(7, 1);
            hand.click(1);
            while (handled < before + 3)
                descriptors.turn();
        }
    };
    moveAndClick(20);
    handled = 0;
    constexpr int events = 60; // each is told in a frame of its own
    for (int i = 0; i < events; ++i) {
        hand.relative(7, 1);
        const std::size_t handsOwn = support::allocations();
        while (handled <= i)
            descriptors.turn();
        EXPECT_EQ(support::allocations(), handsOwn);
    }
    EXPECT_EQ(handled, events);
}
