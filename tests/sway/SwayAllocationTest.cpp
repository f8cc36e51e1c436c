// A program of its own, because it replaces the allocation functions.

#include "sway/SwayServices.h"
#include "testing/FewDescriptors.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

namespace {

thread_local long allocations = 0; // witnesses read on other threads

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

namespace swaytests {
namespace {

// What is pushed against the edge and refused, from the socket to the answer.
TEST(SwayInputEvents, AllocateNothingForAPushOnceRunning) {
    if (const auto reason = support::PrivateSway::missing()) GTEST_SKIP() << *reason;
    testing_support::FewDescriptors loop;
    Services session(loop, [](const auto& work) { work(); });
    int outside = 0;
    session->input.addGlobalMonitor(platform::maskOf(platform::EventType::mouseMoved),
                                    [&](const platform::InputEvent& event) {
                                        if (event.location.x < 1920) return;
                                        ++outside;
                                        session->pointer.warp({1918, event.location.y});
                                    });
    session->input.watch({.pushes = true});
    session->pointer.holdInside(platform::Rect{0, 0, 1920, 1080});
    session.hand.moveTo(1900, 500);
    const auto pushOnce = [&] {
        const int before = outside;
        session.hand.relative(30, 0);
        const long handsOwn = allocations;
        while (outside == before)
            loop.turn();
        return allocations - handsOwn;
    };
    // The first ones may come before the strip.
    for (int i = 0; outside < 20; ++i) {
        session.hand.relative(30, 0);
        loop.turn();
    }
    for (int i = 0; i < 60; ++i)
        EXPECT_EQ(pushOnce(), 0);
}

} // namespace
} // namespace swaytests
