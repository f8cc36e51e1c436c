#pragma once

#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"
#include "tests/x11/SeenEvents.h"

namespace x11tests {

// A desktop of two monitors, of which the left one is held.

constexpr platform::Rect left{0, 0, 1920, 1080};
constexpr platform::Rect right{1920, 56, 1280, 1024};

struct X11Hold : SeenEvents, testing::Test {
    void start(const std::string& layout = "1920x1080+0+0,1280x1024+1920+56",
               std::vector<std::string> devices = {}) {
        support::PrivateDesktop::Options options;
        options.layout = layout;
        options.devices = std::move(devices);
        desktop = std::make_unique<support::PrivateDesktop>(options);
        session = std::make_unique<Session>(desktop->display(), GAMMA_GUARD);
        hand = std::make_unique<support::Hand>(desktop->display());
        eye = std::make_unique<support::Eye>(desktop->display());
        session->pointer.setLocalEventsSuppressionInterval(0);
        monitor(*session);
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
    void runPastScroll() { SeenEvents::runPastScroll(*session, *hand); }
    /// The program's answer to a point outside: back to the edge.
    void putBack(const platform::InputEvent& event) {
        if (!left.contains(event.location)) session->pointer.warp({1918, event.location.y});
    }

    std::unique_ptr<support::PrivateDesktop> desktop;
    std::unique_ptr<Session> session;
    std::unique_ptr<support::Hand> hand;
    std::unique_ptr<support::Eye> eye;
};

} // namespace x11tests
