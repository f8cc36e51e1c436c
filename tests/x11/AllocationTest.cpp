// A program of its own, because it replaces the allocation functions.

#include "platform/x11/input/InputEvents.h"
#include "testing/KeptLog.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"

#include "TestLoop.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <poll.h>

namespace {

thread_local long allocations = 0; // the desktop reads its programs on other threads

/// The socket and the clock, in a table that allocates nothing.
struct TwoDescriptors final : platform::Descriptors {
    struct Watch {
        int fd = -1;
        std::function<void()> ready;
    };
    void watchReadable(int watched, std::function<void()> call) override {
        for (Watch& one : watches)
            if (one.fd < 0) {
                one = {watched, std::move(call)};
                return;
            }
    }
    void unwatch(int watched) override {
        for (Watch& one : watches)
            if (one.fd == watched) one.fd = -1;
    }
    void turn() {
        std::array<pollfd, 2> both{};
        for (std::size_t i = 0; i < both.size(); ++i)
            both[i] = {watches[i].fd, POLLIN, 0};
        poll(both.data(), both.size(), 20000);
        for (std::size_t i = 0; i < both.size(); ++i)
            if (both[i].revents != 0 && watches[i].fd == both[i].fd) {
                const auto ready = watches[i].ready; // which may end its own watch
                ready();
            }
    }
    std::array<Watch, 2> watches;
};

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
    TwoDescriptors descriptors;
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
