// A program of its own, because the allocation functions are replaced in it.

#include "sway/SwayServices.h"
#include "testing/FewDescriptors.h"
#include "testing/allocations/Allocations.h"

#include <gtest/gtest.h>

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
        const std::size_t handsOwn = support::allocations();
        while (outside == before)
            loop.turn();
        return support::allocations() - handsOwn;
    };
    // The first ones may come before the strip.
    while (outside < 20) {
        session.hand.relative(30, 0);
        loop.turn();
    }
    for (int i = 0; i < 60; ++i)
        EXPECT_EQ(pushOnce(), 0U);
}

} // namespace
} // namespace swaytests
