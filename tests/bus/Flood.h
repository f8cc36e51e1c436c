#pragma once

#include "bus/Handles.h"
#include "testing/Wait.h"

#include <atomic>
#include <string>
#include <thread>

namespace desktop {

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
        const auto begun = support::Clock::now();
        while (!over) {
            const std::chrono::duration<double> passed = support::Clock::now() - begun;
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

} // namespace desktop
