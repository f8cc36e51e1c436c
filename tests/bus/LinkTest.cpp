#include "bus/SingleInstance.h"
#include "testing/KeptLog.h"
#include "testing/PolledDescriptors.h"
#include "testing/SessionBus.h"

#include <cstdlib>
#include <gtest/gtest.h>

// One turn of the run loop at a time.

namespace bus {
namespace {

TEST(Link, TakesFourMessagesATurnWhateverIsWaiting) {
    const support::SessionBus server({{"PATH", std::getenv("PATH")}});
    ::setenv("DBUS_SESSION_BUS_ADDRESS", server.address().c_str(), 1);
    testing_support::PolledDescriptors loop;
    testing_support::KeptLog log;
    Link link(loop, log);
    SingleInstance instance("com.tamberlo.test", link, log);
    ASSERT_EQ(link.wait(), Link::State::up);
    ASSERT_TRUE(instance.claim());
    int done = 0;
    instance.onActivate([&] { ++done; });
    link.start();

    sd_bus* made = nullptr;
    ASSERT_GE(sd_bus_open_user(&made), 0);
    const Connection caller(made);
    int answered = 0;
    const auto count = [](sd_bus_message*, void* into, sd_bus_error*) {
        ++*static_cast<int*>(into);
        return 0;
    };
    const auto call = [&] {
        ASSERT_GE(sd_bus_call_method_async(made, nullptr, "com.tamberlo.test", "/com/tamberlo/test",
                                           "org.freedesktop.Application", "Activate", count,
                                           &answered, "a{sv}", 0),
                  0);
    };
    const auto turnUntil = [&](int calls) {
        return support::waitUntil([&] {
            loop.poll();
            while (sd_bus_process(made, nullptr) > 0) {
            }
            return answered == calls;
        });
    };
    call(); // who calls is known from now on
    ASSERT_TRUE(turnUntil(1));
    constexpr int waiting = 40;
    for (int index = 0; index < waiting; ++index)
        call();
    // The bus has passed on what came before a question that it has answered.
    ASSERT_GE(sd_bus_flush(made), 0);
    ASSERT_GE(sd_bus_call_method(made, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", "GetId", nullptr, nullptr, ""),
              0);
    done = 0;
    loop.poll();
    EXPECT_EQ(done, 4);
    EXPECT_TRUE(turnUntil(1 + waiting));
    EXPECT_EQ(done, waiting);
}

} // namespace
} // namespace bus
