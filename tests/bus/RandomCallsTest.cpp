#include "bus/RandomCalls.h"
#include "bus/Names.h"
#include "bus/ProductObject.h"
#include "bus/SingleInstance.h"
#include "testing/KeptLog.h"
#include "testing/PolledDescriptors.h"
#include "testing/SessionBus.h"
#include "unit/Program.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <unistd.h>

// What anybody of the session may send, at random, to the interface over the platform in memory.
// PALISOR_RANDOM_CALLS has more than the usual number sent, PALISOR_RANDOM_SEED others.

namespace bus {
namespace {

namespace control = palisor::control;

constexpr const char* busName = "com.tamberlo.palisor";
constexpr int variants[] = {1, 2, 3, 5, 7, 8, 9};

long fromEnvironment(const char* name, long otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::atol(text) : otherwise;
}

long residentPages() {
    long whole = 0, resident = 0;
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    if (file == nullptr) return 0;
    if (std::fscanf(file, "%ld %ld", &whole, &resident) != 2) resident = 0;
    std::fclose(file);
    return resident;
}

/// The running program as far as calls reach it.
class Served {
  public:
    explicit Served(int variant) : program(variant) {
        program.platform.bundle.set("CFBundleIdentifier", platform::Value{busName});
        program.launched();
        link.wait();
        instance.claim();
        instance.onActivate([this] { ++deeds; });
        object.watch(&program.app);
        link.start();
    }

    /// All that a call might change.
    struct Look {
        control::State state;
        platform::Dictionary stored;
        int deeds = 0; ///< menus that were shown, requests to quit
        bool operator==(const Look&) const = default;
    };
    Look look() const {
        return {control::state(program.app), program.platform.settings.persistentValues(), deeds};
    }

    void passTime(double seconds) {
        program.platform.runLoop.advance(seconds);
        program.platform.effects.clear();
    }

    testing_support::PolledDescriptors loop;
    bool isStarting = false;
    int deeds = 0;

  private:
    platform::Capabilities capabilities() const {
        return {{"hold", isActive(), "A reason."}, {"tray", false, ""}};
    }
    bool isActive() const { return control::state(program.app).active; }
    void report(const std::function<void(const ProductObject::Report&)>& done) {
        const bool isThere = ++reports % 2 == 0;
        done(isThere ? ProductObject::Report{"{}", ""}
                     : ProductObject::Report{std::nullopt, "There is none."});
    }

    palisor::Program program;
    testing_support::KeptLog log;
    Link link{loop, log};
    SingleInstance instance{busName, link, log};
    int reports = 0;
    ProductObject object{{.name = busName,
                          .version = "1.0",
                          .delegate = [this] { return isStarting ? nullptr : &program.app; },
                          .capabilities = [this] { return capabilities(); },
                          .showMenu = [this] { ++deeds; },
                          .quit = [this] { ++deeds; },
                          .report = [this](auto done) { report(done); }},
                         link};
};

/// Somebody who asks, and waits for each answer while the program works.
class Caller {
  public:
    explicit Caller(Served& one) : served(one) { connect(); }

    void connect() {
        sd_bus* made = nullptr;
        if (sd_bus_open_user(&made) < 0) throw std::runtime_error("no bus");
        connection.reset(made);
    }
    sd_bus* bus() const { return connection.get(); }

    /// Null where none comes.
    Message answerTo(sd_bus_message* call) {
        sd_bus_message* reply = nullptr;
        const auto take = [](sd_bus_message* message, void* into, sd_bus_error*) {
            *static_cast<sd_bus_message**>(into) = sd_bus_message_ref(message);
            return 1;
        };
        if (sd_bus_call_async(bus(), nullptr, call, take, &reply, UINT64_MAX) < 0) return nullptr;
        turnUntil([&reply] { return reply != nullptr; });
        return Message(reply);
    }

    /// Whatever was sent before has been handled.
    bool settle() {
        sd_bus_message* made = nullptr;
        if (sd_bus_message_new_method_call(bus(), &made, busName, "/com/tamberlo/palisor",
                                           "org.freedesktop.DBus.Peer", "Ping") < 0)
            return false;
        const Message ping(made);
        return answerTo(made) != nullptr;
    }

  private:
    void turnUntil(const std::function<bool()>& reached) {
        support::waitUntil(
            [&] {
                while (sd_bus_process(bus(), nullptr) > 0) {
                }
                served.loop.poll();
                return reached();
            },
            support::generous,
            [&](auto deadline) {
                std::vector<pollfd> ask{{sd_bus_get_fd(bus()), POLLIN, 0}};
                for (const auto& watch : served.loop.watches)
                    ask.push_back({watch.first, POLLIN, 0});
                (void)sd_bus_flush(bus());
                (void)::poll(ask.data(), ask.size(), support::millisecondsUntil(deadline));
            });
    }

    Served& served;
    Connection connection;
};

bool onlyLooks(sd_bus_message* call) {
    const std::string_view member = sd_bus_message_get_member(call);
    return member.starts_with("Get") || member == "ListSettings" || member == "Introspect" ||
           member == "Ping" || member == "Report";
}

struct Counted {
    std::map<std::string, long> errors; ///< by their names, "" for what was done
    long changes = 0;
};

struct RandomCallsTest : testing::Test {
    RandomCallsTest() { ::setenv("DBUS_SESSION_BUS_ADDRESS", server.address().c_str(), 1); }

    void send(Served& served, Caller& caller, RandomCalls& calls) {
        served.isStarting = calls.below(40) == 0;
        constexpr double frame = 0.016, longer = 4;
        served.passTime(calls.below(50) == 0 ? longer : frame);
        if (calls.below(400) == 0) caller.connect();
        const Message call = calls.next(caller.bus());
        if (!call) return;
        const Served::Look before = served.look();
        if (sd_bus_message_get_expect_reply(call.get()) == 0) {
            ASSERT_GE(sd_bus_send(caller.bus(), call.get(), nullptr), 0);
            ASSERT_TRUE(caller.settle());
            return;
        }
        const Message answer = caller.answerTo(call.get());
        if (!answer) {
            tell(*call);
            FAIL() << "no answer";
        }
        const bool isRefused = sd_bus_message_is_method_error(answer.get(), nullptr) > 0;
        const std::string error =
            isRefused ? std::string(sd_bus_message_get_error(answer.get())->name) : "";
        ++counted.errors[error];
        const Served::Look after = served.look();
        counted.changes += before == after ? 0 : 1;
        if (isRefused || onlyLooks(call.get())) {
            EXPECT_TRUE(before == after) << error;
        }
        EXPECT_FALSE(error.starts_with("System.")) << error << ": a number and no reason";
        if (HasFailure()) tell(*call);
    }

    static void tell(sd_bus_message& call) {
        (void)sd_bus_message_rewind(&call, 1);
        (void)sd_bus_message_dump(&call, stderr, SD_BUS_MESSAGE_DUMP_WITH_HEADER);
    }

    const support::SessionBus server{{{"PATH", std::getenv("PATH")}}};
    Counted counted;
};

TEST_F(RandomCallsTest, AreAnsweredAndChangeNothingWhereTheyAreRefused) {
    const long count = fromEnvironment("PALISOR_RANDOM_CALLS", 14'000) / std::ssize(variants);
    const auto seed = static_cast<unsigned>(fromEnvironment("PALISOR_RANDOM_SEED", 1));
    for (const int variant : variants) {
        SCOPED_TRACE("product " + std::to_string(variant));
        Served served(variant);
        Caller caller(served);
        RandomCalls calls(seed + static_cast<unsigned>(variant), busName);
        long early = 0;
        for (long index = 0; index < count && !HasFailure(); ++index) {
            SCOPED_TRACE("call " + std::to_string(index));
            send(served, caller, calls);
            if (index == count / 5) early = residentPages();
        }
        if (HasFailure()) return;
        std::printf("product %d: %ld calls, %ld pages more\n", variant, count,
                    residentPages() - early);
#ifndef __SANITIZE_ADDRESS__ // which keeps what is freed, and finds leaks itself
        constexpr long mostPages = 1024;
        EXPECT_LT(residentPages() - early, mostPages);
#endif
    }
    for (const auto& [name, times] : counted.errors)
        std::printf("%8ld %s\n", times, name.empty() ? "done" : name.c_str());
    std::printf("%8ld changed something\n", counted.changes);
    EXPECT_GT(counted.changes, count / 10) << "or this shows little";
    using namespace errors;
    for (const char* known : {unknownMonitor, unknownSetting, notOfThisProduct, wrongType,
                              outOfRange, starting, notPossible, noReport})
        EXPECT_GT(counted.errors[known], 0) << known;
}

} // namespace
} // namespace bus
