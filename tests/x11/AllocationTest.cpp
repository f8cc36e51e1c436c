// A program of its own, because it replaces the allocation functions.

#include "platform/x11/input/InputEvents.h"
#include "testing/FewDescriptors.h"
#include "testing/KeptLog.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"

#include "TestLoop.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

namespace {

thread_local long allocations = 0; // the desktop reads its programs on other threads

} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
// The sanitizer's own would not fit the deletes below.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++allocations;
    return std::malloc(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

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
        const long handsOwn = allocations;
        while (handled <= i)
            descriptors.turn();
        EXPECT_EQ(allocations, handsOwn);
    }
    EXPECT_EQ(handled, events);
}
