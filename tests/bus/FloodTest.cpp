#include "bus/Flood.h"
#include "bus/Stage.h"

#include <algorithm>
#include <cstdio>

// A caller that asks without an end.

namespace desktop {
namespace {

using support::Clock;

/// How long the cursor that a mouse has moved to the other monitor is there before it is put back,
/// in milliseconds: the median of many, since a busy machine stalls anything now and then.
double timeOutside(Product& product) {
    std::vector<double> times;
    for (int round = 0; round < 31; ++round) {
        product.moveNextTo(0, 1);
        const auto before = Clock::now();
        product.hand.relative(60, 0);
        EXPECT_TRUE(waitUntil([&] { return product.cursorIsOn(0); }));
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - before).count());
    }
    std::ranges::nth_element(times, times.begin() + 15);
    return times[15];
}

void expectNoDelay(double callsASecond) {
    BusStage stage;
    stage.start({.hold = false});
    const double quiet = timeOutside(stage);
    Flood flood(stage.desktop.environment().at("DBUS_SESSION_BUS_ADDRESS"), callsASecond);
    ASSERT_TRUE(waitUntil([&] { return flood.answered > 1000; }));
    const int before = flood.answered;
    const auto begun = Clock::now();
    const double flooded = timeOutside(stage);
    const double seconds = std::chrono::duration<double>(Clock::now() - begun).count();
    std::printf("put back after %.1f ms, and after %.1f ms with %.0f calls answered a second\n",
                quiet, flooded, (flood.answered - before) / seconds);
    EXPECT_LT(flooded - quiet, 16.7);
}

TEST(Flood, OfTenThousandCallsASecondDelaysNoPointerEventByMoreThanAFrame) {
    expectNoDelay(10'000);
}

// So that there is always a further one waiting.
TEST(Flood, OfMoreCallsThanCanBeAnsweredDelaysNoneByMoreThanAFrameEither) {
    expectNoDelay(1'000'000);
}

} // namespace
} // namespace desktop
