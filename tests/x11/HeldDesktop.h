#pragma once

#include "Session.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"

#include <gtest/gtest.h>

namespace x11tests {

// A desktop of two monitors, of which the left one is held.

constexpr platform::EventMask monitorMask = 0xFC010FE;
constexpr platform::Rect left{0, 0, 1920, 1080};
constexpr platform::Rect right{1920, 56, 1280, 1024};

struct X11Hold : testing::Test {
    void start(const std::string& layout = "1920x1080+0+0,1280x1024+1920+56") {
        desktop = std::make_unique<support::PrivateDesktop>(layout);
        session = std::make_unique<Session>(desktop->display(), GAMMA_GUARD);
        hand = std::make_unique<support::Hand>(desktop->display());
        eye = std::make_unique<support::Eye>(desktop->display());
        session->pointer.setLocalEventsSuppressionInterval(0);
        session->input.addGlobalMonitor(monitorMask, [this](const platform::InputEvent& event) {
            seen.push_back(event);
            placesAsked.push_back(session->pointer.location());
            if (const auto reply = answer) reply(event);
            placesAsked.push_back(session->pointer.location());
        });
        session->sync();
    }
    /// In the middle, and held on the left monitor.
    void hold() {
        hand->moveTo(900, 500);
        session->pointer.holdInside(left);
        session->sync();
        runPastScroll();
        seen.clear();
        placesAsked.clear();
    }
    void runPastScroll() {
        hand->click(4);
        ASSERT_TRUE(session->loop.runUntil(
            [&] { return !seen.empty() && seen.back().type == platform::EventType::scrollWheel; }));
        seen.pop_back();
        placesAsked.resize(placesAsked.size() - 2);
    }
    /// The program's answer to a point outside: back to the edge.
    void putBack(const platform::InputEvent& event) {
        if (!left.contains(event.location)) session->pointer.warp({1918, event.location.y});
    }

    std::unique_ptr<support::PrivateDesktop> desktop;
    std::unique_ptr<Session> session;
    std::unique_ptr<support::Hand> hand;
    std::unique_ptr<support::Eye> eye;
    std::vector<platform::InputEvent> seen;
    std::vector<platform::Point> placesAsked;
    std::function<void(const platform::InputEvent&)> answer;
};

} // namespace x11tests
