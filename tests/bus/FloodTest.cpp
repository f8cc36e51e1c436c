#include "bus/Names.h"
#include "bus/Stage.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>

// A caller that asks without an end.

namespace desktop {
namespace {

using support::Clock;

/// Asks that many times a second, in hundreds, from a connection and a thread of its own.
class Flood {
  public:
    Flood(std::string address, double callsASecond)
        : rate(callsASecond), thread([this, place = std::move(address)] { run(place); }) {}
    ~Flood() {
        over = true;
        thread.join();
    }
    std::atomic<int> answered = 0;

  private:
    static int count(sd_bus_message*, void* own, sd_bus_error*) {
        ++static_cast<Flood*>(own)->answered;
        return 0;
    }

    void run(const std::string& address) {
        sd_bus* made = nullptr;
        sd_bus_new(&made);
        const bus::Connection connection(made);
        sd_bus_set_address(made, address.c_str());
        sd_bus_set_bus_client(made, 1);
        sd_bus_start(made);
        int asked = 0;
        const auto begun = Clock::now();
        while (!over) {
            const std::chrono::duration<double> passed = Clock::now() - begun;
            constexpr int mostUnderWay = 20'000;
            for (int index = 0;
                 index < 100 && asked < passed.count() * rate && asked - answered < mostUnderWay;
                 ++index, ++asked)
                sd_bus_call_method_async(made, nullptr, "com.tamberlo.palisor",
                                         "/com/tamberlo/palisor", "org.freedesktop.DBus.Properties",
                                         "Get", count, this, "ss", "com.tamberlo.Product1",
                                         "Active");
            while (sd_bus_process(made, nullptr) > 0) {
            }
            sd_bus_wait(made, 1000);
        }
    }

    double rate;
    std::atomic<bool> over = false;
    std::thread thread;
};

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
