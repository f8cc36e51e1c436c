#include "platform/session/HoldGeometry.h"
#include "platform/session/PushMeter.h"
#include "platform/x11/input/MotionWatch.h"

#include <cmath>
#include <gtest/gtest.h>

// What needs no server: how a push is added up, and where the barriers stand.

using platform::Point;
using platform::session::Box;
using namespace platform::session;
using platform::session::PushMeter;
using platform::session::Side;
using platform::x11::MotionWatch;

namespace {

/// What a hand at `speed` pixels a second pushes in the best of some frames, as a mouse of `hz`
/// reports it and a clock that counts whole milliseconds stamps it.
double measured(double speed, int hz) {
    PushMeter meter;
    double best = 0, nextTick = 1.0 / 60, before = 0;
    for (int report = 1; report < hz / 2; ++report) {
        const double time = static_cast<double>(report) / hz;
        const double stamp = std::floor(time * 1000) / 1000;
        if (time > nextTick) {
            if (const auto sum = meter.take()) best = std::max(best, sum->cutOff.x);
            nextTick += 1.0 / 60;
        }
        meter.add({stamp, stamp - before, {}, {speed / hz, 0}});
        before = stamp;
    }
    return best;
}

} // namespace

TEST(Push, IsTheSameAtEveryPollingRate) {
    for (const double speed : {300.0, 4500.0, 18000.0})
        for (const int hz : {60, 125, 500, 1000, 8000})
            EXPECT_NEAR(measured(speed, hz), speed / 60, speed / 60 * 0.06) << speed << " " << hz;
}

TEST(Push, CountsAReportByTheShareOfItsSpanThatLiesInTheFrame) {
    PushMeter meter;
    meter.add({1.000, 0.016, {}, {100, 0}});
    meter.add({1.012, 0.012, {}, {10, 0}});
    const auto sum = meter.take();
    ASSERT_TRUE(sum);
    EXPECT_NEAR(sum->cutOff.x, 25 + 10, 0.01) << "4 of 16 ms, and 12 of 12";
}

// Three pixels in a frame are VELOCITY 10, which two reports of a mouse at 125 Hz make just.
TEST(Push, CountsNoThirdReportWhereTwoCameALittleEarly) {
    PushMeter meter;
    meter.add({1.0000, 0.0080, {}, {1, 0}});
    meter.add({1.0079, 0.0079, {}, {2, 0}});
    meter.add({1.0158, 0.0079, {}, {1, 0}});
    const auto sum = meter.take();
    ASSERT_TRUE(sum);
    EXPECT_EQ(sum->cutOff.x, 3);
}

// The server's clock is a large number of which a frame is a small difference.
TEST(Push, HasNoRoundingAtTheFramesEdge) {
    for (int milliseconds = 4'000'000; milliseconds < 4'000'100; ++milliseconds) {
        const double before = (milliseconds - 16) / 1000.0, time = milliseconds / 1000.0;
        PushMeter meter;
        meter.add({before, 0.004, {1, 1}, {50, 0}});
        meter.add({time, time - before, {2, 2}, {60, 0}});
        const auto sum = meter.take();
        ASSERT_TRUE(sum);
        EXPECT_EQ(sum->cutOff, (Point{60, 0})) << milliseconds;
        EXPECT_EQ(sum->from, (Point{2, 2})) << milliseconds;
    }
}

TEST(Push, OfAHandThatHadRestedCountsWhole) {
    PushMeter meter;
    meter.add({5.000, 4.0, {}, {100, 0}});
    const auto sum = meter.take();
    ASSERT_TRUE(sum);
    EXPECT_EQ(sum->cutOff, (Point{100, 0}));
}

TEST(Push, IsOfOneFrameAndNothingOlder) {
    PushMeter meter;
    meter.add({1.000, 0, {7, 7}, {500, 0}});
    meter.add({1.040, 0.008, {1919, 30}, {8, 0}});
    meter.add({1.048, 0.008, {1919, 31}, {8, 0}});
    const auto sum = meter.take();
    ASSERT_TRUE(sum);
    EXPECT_NEAR(sum->cutOff.x, 16, 0.01);
    EXPECT_EQ(sum->from, (Point{1919, 30}));
    EXPECT_FALSE(meter.take()) << "it is told once";
}

TEST(Push, TellsTheWayFromWhereTheCursorWasPutBackApart) {
    PushMeter meter;
    meter.add({1.000, 0.008, {1920, 30}, {}, {-1, 0}});
    EXPECT_FALSE(meter.take()) << "nothing was cut off";
    meter.add({1.020, 0.008, {1920, 30}, {}, {-1, 0}});
    meter.add({1.028, 0.008, {1920, 31}, {-2, 0}, {}});
    const auto sum = meter.take();
    ASSERT_TRUE(sum);
    EXPECT_EQ(sum->lead, (Point{-1, 0}));
    EXPECT_EQ(sum->cutOff, (Point{-2, 0}));
    EXPECT_EQ(sum->from, (Point{1920, 31}));
}

TEST(Push, OfASlowDeviceIsTheMeanOfItsLastTwoReports) {
    PushMeter meter;
    double time = 1;
    const auto after = [&](double pause, double cutOff, double lead = 0) {
        time += pause;
        meter.add({time, pause, {time, 0}, {cutOff, 0}, {lead, 0}});
    };
    const auto report = [&](int times, double span) {
        for (int i = 0; i < times; ++i)
            meter.reported(span);
    };
    const auto expectSum = [&](double cutOff, double lead = 0) {
        const auto sum = meter.take();
        ASSERT_TRUE(sum);
        EXPECT_NEAR(sum->cutOff.x, cutOff, 1e-9);
        EXPECT_NEAR(sum->lead.x, lead, 1e-9);
        EXPECT_EQ(sum->from.x, time);
    };
    report(8, 0.04); // rests are no rate
    report(7, 0.025);
    after(0.025, 10);
    expectSum(10);
    report(1, 0.025);
    after(0.1, 10);
    expectSum(6.4); // 16 of 25 ms
    after(0.025, 20, 5);
    expectSum(9.6, 1.6);
    after(0.04, 20);
    expectSum(12.8); // the one before is of another push
    after(0.1, 2);
    after(0.025, 4);
    after(0.025, 8);
    expectSum(3.84);
    after(0.025, 0, 1);
    time -= 0.025;
    const auto sum = meter.take();
    ASSERT_TRUE(sum);
    EXPECT_NEAR(sum->cutOff.x, 2.56, 1e-9);
    EXPECT_EQ(sum->from.x, time) << "where something was cut off";
    time += 0.025;
    after(0.025, 0, 1);
    EXPECT_FALSE(meter.take()) << "nothing was cut off";
    after(0.025, 10);
    meter.clear();
    after(0.025, 10);
    expectSum(6.4);
    report(30, 0.001); // another device
    after(0.1, 10);
    expectSum(10);
}

TEST(Barriers, StandOnTheSidesBeyondWhichAnotherMonitorLies) {
    using Sides = std::vector<Side>;
    const Box screen{0, 0, 1920, 1080};
    const auto sides = [&](std::vector<Box> others) {
        others.push_back(screen);
        return innerSides(screen, others);
    };
    EXPECT_EQ(sides({}), Sides{});
    EXPECT_EQ(sides({screen}), Sides{}) << "mirrored";
    EXPECT_EQ(sides({{1920, 0, 3200, 1024}}), Sides{Side::right});
    EXPECT_EQ(sides({{-1280, 0, 0, 1024}}), Sides{Side::left});
    EXPECT_EQ(sides({{0, 1080, 1920, 2160}}), Sides{Side::bottom});
    EXPECT_EQ(sides({{1920, -500, 3200, 524}}), (Sides{Side::right, Side::top}))
        << "a slanting way leads through the upper side too";
}

TEST(HoldGeometry, TellsWhatOfAMonitorLiesBeyondASide) {
    const Box screen{1000, 1000, 2000, 2000}, other{500, 700, 2300, 2400};
    EXPECT_EQ(partBeyond(Side::left, screen, other), (Box{500, 700, 1000, 2400}));
    EXPECT_EQ(partBeyond(Side::right, screen, other), (Box{2000, 700, 2300, 2400}));
    EXPECT_EQ(partBeyond(Side::top, screen, other), (Box{500, 700, 2300, 1000}));
    EXPECT_EQ(partBeyond(Side::bottom, screen, other), (Box{500, 2000, 2300, 2400}));
    const Box beside{2500, 2500, 3000, 3000};
    EXPECT_EQ(partBeyond(Side::right, screen, beside), beside);
}

TEST(HoldGeometry, ClampsAPointOutsideAsTheServerWould) {
    const Box held{0, 0, 1920, 1080}, other{1920, 56, 3200, 1080};
    const std::vector<Box> both{held, other};
    EXPECT_EQ(onDesktop({2000, 500}, held, both), (Point{2000, 500}));
    EXPECT_EQ(onDesktop({9000, 500}, held, both), (Point{3199, 500}));
    EXPECT_EQ(onDesktop({2000, 2000}, held, both), (Point{2000, 1079}));
    EXPECT_EQ(onDesktop({2000, 30}, held, both), (Point{1919, 30})) << "there is no monitor";
}

namespace {
constexpr std::uint16_t mouse = 10; // the server's number
}

TEST(MotionWatch, ReadsEventsAtRestAndWhereTheCursorCannotMove) {
    MotionWatch watch;
    EXPECT_TRUE(watch.readsEvents());
    const auto fastFrame = [&](bool moves) {
        for (int i = 0; i < 130; ++i)
            watch.event({1, 0}, mouse);
        watch.looked(moves);
        return watch.frameEnded();
    };
    EXPECT_FALSE(fastFrame(false)) << "at an outer edge";
    EXPECT_TRUE(fastFrame(true));
    EXPECT_FALSE(watch.readsEvents());
    watch.looked(true);
    EXPECT_FALSE(watch.frameEnded());
    watch.looked(false);
    EXPECT_TRUE(watch.frameEnded()) << "it has come to rest, or to an outer edge";
    EXPECT_TRUE(watch.looks()) << "what came before the first event";
}

TEST(MotionWatch, ReadsTheEventsOfASlowMouseAndFractionsAtABarrier) {
    MotionWatch watch;
    for (int i = 0; i < 3; ++i)
        watch.event({5, 0}, mouse);
    watch.looked(true);
    EXPECT_FALSE(watch.frameEnded());
    for (int i = 0; i < 130; ++i)
        watch.event({0.6, 0}, mouse);
    watch.looked(true);
    EXPECT_TRUE(watch.frameEnded());
    watch.looked(false);
    watch.stopped(mouse);
    EXPECT_TRUE(watch.frameEnded());
    EXPECT_TRUE(watch.readsEvents());
}

TEST(MotionWatch, TakesTheFractionsOfOneDeviceForNoneOfAnother) {
    constexpr std::uint16_t pad = 11;
    for (const bool padStops : {false, true}) {
        MotionWatch watch;
        watch.event({0.5, 0}, pad);
        for (int i = 0; i < 130; ++i)
            watch.event({1, 0}, mouse);
        watch.looked(true);
        watch.stopped(padStops ? pad : mouse);
        watch.frameEnded();
        EXPECT_EQ(watch.readsEvents(), padStops);
    }
}
