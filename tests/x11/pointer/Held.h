#pragma once

#include "platform/x11/pointer/HeldCursor.h"

#include <gtest/gtest.h>
#include <vector>

// A cursor that is held on the middle one of five monitors, without a server.

namespace x11tests {

using platform::Point;
using platform::x11::Box;
using platform::x11::HeldCursor;
using platform::x11::Side;

inline const Box middle{1000, 1000, 2000, 2000};
inline const std::vector<Box> monitors{middle,
                                       {0, 1000, 1000, 2000},
                                       {2000, 1000, 3000, 2000},
                                       {1000, 0, 2000, 1000},
                                       {1000, 2000, 2000, 3000}};

struct Held : testing::Test {
    Held() { cursor.hold(middle); }

    /// A motion that a side stops, `milliseconds` after the one before.
    void push(Side side, Point at, Point step, int milliseconds = 8) {
        move(step, milliseconds);
        stop(side, at, step);
    }
    void move(Point step, int milliseconds = 8) {
        now += milliseconds / 1000.0;
        cursor.moved(step, now, asksAlready);
    }
    void stop(Side side, Point at, Point step) {
        cursor.stopped(
            {.side = side, .at = at, .told = step, .time = now, .afterQuestion = asksAlready});
    }
    void seeAt(Point place) {
        cursor.asked();
        cursor.placed(place);
    }
    /// Where the push began, and how far it leads.
    struct Step {
        Point from, way;
        bool operator==(const Step&) const = default;
    };
    std::optional<Step> take(Point place) {
        const auto push = cursor.takePush(place, monitors);
        if (!push) return std::nullopt;
        return Step{push->held, {push->beyond.x - push->held.x, push->beyond.y - push->held.y}};
    }
    void expectPush(Point place, Point from, Point way) {
        const auto step = take(place);
        ASSERT_TRUE(step);
        EXPECT_NEAR(step->from.x, from.x, 1e-9);
        EXPECT_NEAR(step->from.y, from.y, 1e-9);
        EXPECT_NEAR(step->way.x, way.x, 1e-9);
        EXPECT_NEAR(step->way.y, way.y, 1e-9);
    }

    HeldCursor cursor;
    double now = 50;
    bool asksAlready = false;
};

} // namespace x11tests
