#include "platform/x11/pointer/HeldCursor.h"

#include <cmath>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

// At which speed a push crosses, with mice of many kinds: the way of a report from the device to
// the core's rule, without a server and in no time.

using platform::Point;
using platform::x11::Box;
using platform::x11::HeldCursor;
using platform::x11::Side;

namespace {

constexpr double frame = 1.0 / 60;
const Box left{0, 0, 1920, 1080}, right{1920, 0, 3840, 1080};

/// A mouse that moves to the right at one speed.
struct Mouse {
    int hz;
    bool wholePixels;
    double phase; ///< of its reports, and of the pixels that they count; below 1
};

/// The left one of two monitors, a server that holds the cursor there, and a program that lets go
/// of it after a step of more than `threshold` pixels and puts it back one pixel inside otherwise.
class Desk {
  public:
    Desk(const Mouse& owned, double pixelsOfAPush) : mouse(owned), threshold(pixelsOfAPush) {
        cursor.hold(left);
        put(100);
        move(400, 0.4); // as it did before
        put(1918);
    }

    /// Whether the cursor gets out, `phase` of a frame being over when the hand begins.
    bool crosses(double speed, double seconds, double phase) {
        now += 0.2;
        nextFrame = now + phase * frame;
        return move(speed, seconds);
    }

  private:
    void put(double x) {
        place = x;
        cursor.put({x, 500});
    }

    bool move(double speed, double seconds) {
        const double begun = now;
        // Of many reports a frame only what is stopped is told, unless they are of fractions.
        isRead = !mouse.wholePixels || std::min<double>(mouse.hz, speed) * frame <= 9;
        double moved = mouse.phase, reported = mouse.wholePixels ? 0 : moved;
        for (int i = 0; i < seconds * mouse.hz; ++i) {
            const double time = begun + (i + mouse.phase) / mouse.hz;
            while (nextFrame < time)
                if (endFrame()) return true;
            moved += speed / mouse.hz;
            const double step = (mouse.wholePixels ? std::floor(moved) : moved) - reported;
            reported += step;
            if (step != 0) report(step, std::floor(time * 1000) / 1000);
        }
        now = begun + seconds;
        return endFrame();
    }

    void report(double step, double stamp) {
        if (isRead) cursor.moved({step, 0}, stamp, false);
        isPushed = place + step >= left.right;
        place = std::min(place + step, isPushed ? 1919.0 : 1920.0);
        if (isPushed)
            cursor.stopped({.side = Side::right,
                            .at = {1919, 500},
                            .told = {step, 0},
                            .time = stamp,
                            .afterQuestion = false});
        anyReport = true;
    }

    bool endFrame() {
        nextFrame += frame;
        if (!std::exchange(anyReport, false)) return false;
        const double pixel = std::floor(place);
        if (!cursor.stoppedAt()) {
            cursor.asked();
            cursor.placed({pixel, 500});
        }
        const std::vector<Box> both{left, right};
        const auto push = cursor.takePush({pixel, 500}, both);
        if (!push) return false;
        if (push->beyond.x - push->held.x > threshold) return true;
        put(1918);
        return false;
    }

    Mouse mouse;
    double threshold;
    HeldCursor cursor;
    double place = 0, now = 100, nextFrame = 100;
    bool isPushed = false, anyReport = false, isRead = true;
};

/// The speed at which most pushes cross, pixels a second.
double crossingSpeed(int hz, bool wholePixels, double threshold) {
    const auto mostCross = [&](double speed) {
        int crossed = 0, tries = 0;
        for (double phase = 0.05; phase < 1; phase += 0.2)
            for (double framePhase = 0.02; framePhase < 1; framePhase += 0.3, ++tries)
                crossed +=
                    Desk({hz, wholePixels, phase}, threshold).crosses(speed, 0.25, framePhase);
        return 2 * crossed > tries;
    };
    double below = threshold * 60 * 0.3, above = threshold * 60 * 2;
    for (int i = 0; i < 9; ++i) {
        const double middle = (below + above) / 2;
        (mostCross(middle) ? above : below) = middle;
    }
    return above;
}

} // namespace

TEST(Threshold, IsTheSameSpeedWithEveryMouse) {
    for (const double velocity : {10, 50, 100})
        for (const bool wholePixels : {true, false})
            for (const int hz : {35, 40, 50, 60, 125, 250, 500, 1000, 8000}) {
                const double pixels = 0.03 * velocity * velocity;
                const double share = crossingSpeed(hz, wholePixels, pixels) / (60 * pixels);
                EXPECT_NEAR(share, 1, 0.15) << "VELOCITY " << velocity << ", " << hz << " Hz, "
                                            << (wholePixels ? "whole pixels" : "fractions");
            }
}
