#pragma once

#include "Session.h"
#include "testing/desktop/Hand.h"

#include <gtest/gtest.h>
#include <utility>

namespace x11tests {

/// What a program is told of the hand's doings.
struct SeenEvents {
    static constexpr platform::EventMask monitorMask = 0xFC010FE;

    /// Keeps what comes from now on, and where the pointer is said to be before and after `answer`.
    void monitor(Session& session) {
        session.input.addGlobalMonitor(
            monitorMask, [&](const platform::InputEvent& event) { keep(event, session); });
        session.sync();
    }
    void keep(const platform::InputEvent& event, Session& session) {
        const auto before = session.pointer.location();
        seen.push_back(event);
        if (const auto reply = answer) reply(event);
        placesAsked.emplace_back(before, session.pointer.location());
    }

    /// Runs until all that was done before has been told: a turn of the wheel comes last, and is
    /// dropped.
    void runPastScroll(Session& session, support::Hand& hand) {
        hand.click(4);
        ASSERT_TRUE(session.loop.runUntil(
            [&] { return !seen.empty() && seen.back().type == platform::EventType::scrollWheel; }));
        seen.pop_back();
        placesAsked.pop_back();
    }

    std::vector<platform::InputEvent> seen;
    std::vector<std::pair<platform::Point, platform::Point>> placesAsked; ///< for each of them
    std::function<void(const platform::InputEvent&)> answer;
};

} // namespace x11tests
