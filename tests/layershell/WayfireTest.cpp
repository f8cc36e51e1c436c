#include "platform/layershell/wayfire/Ipc.h"
#include "platform/layershell/wayfire/KeyNames.h"
#include "platform/session/PhysicalKeys.h"
#include "testing/TempFolder.h"

#include <cstring>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

// What Wayfire is told and tells, without a Wayfire.

namespace wayfiretests {
namespace {

using platform::JsonValue;
using platform::Shortcut;
using platform::layershell::wayfire::bindingOf;
using platform::layershell::wayfire::Ipc;

/// The kernel's names of keys, from the header that it gives to programs.
std::map<std::string, int> kernelKeys() {
    std::map<std::string, int> keys;
    std::ifstream header("/usr/include/linux/input-event-codes.h");
    for (std::string line; std::getline(header, line);) {
        std::istringstream words(line);
        std::string define, name, number;
        words >> define >> name >> number;
        if (define == "#define" && name.starts_with("KEY_") && !number.empty() &&
            number.find_first_not_of("0123456789abcdefx") == std::string::npos)
            keys[name] = std::stoi(number, nullptr, 0);
    }
    return keys;
}

TEST(WayfireKeys, AreCalledAsTheKernelCallsThem) {
    const auto kernel = kernelKeys();
    ASSERT_GT(kernel.size(), 200U);
    int seen = 0;
    for (std::uint16_t code = 0; code < 128; ++code) {
        const auto* const key = platform::session::physicalKey(code);
        if (!key) continue;
        ++seen;
        const std::string name = bindingOf({code, 0});
        const auto found = kernel.find(name);
        ASSERT_NE(found, kernel.end()) << name;
        EXPECT_EQ(found->second, key->evdevCode) << name;
    }
    EXPECT_GT(seen, 90);
}

TEST(WayfireKeys, StandBehindTheirModifiers) {
    constexpr std::uint16_t f9 = 101;
    EXPECT_EQ(bindingOf({f9, Shortcut::modifiers}), "<ctrl> <alt> <shift> <super> KEY_F9");
    EXPECT_EQ(bindingOf({f9, Shortcut::command}), "<super> KEY_F9");
    EXPECT_EQ(bindingOf({500, 0}), "");
}

/// A run loop that turns by hand, and a compositor that says what it is told to.
struct Spoken : platform::Descriptors {
    Spoken() : listener(::socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, folder.path("socket").c_str());
        EXPECT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(listener, 1), 0);
        ipc = Ipc::open(folder.path("socket"), *this);
        client = ::accept(listener, nullptr, nullptr);
    }
    ~Spoken() override {
        ipc.reset();
        ::close(client);
        ::close(listener);
    }
    Spoken(const Spoken&) = delete;
    Spoken& operator=(const Spoken&) = delete;

    void watchReadable(int descriptor, std::function<void()> ready) override {
        handlers[descriptor] = std::move(ready);
    }
    void unwatch(int descriptor) override { handlers.erase(descriptor); }
    bool isWatched() const { return !handlers.empty(); }

    void say(const std::string& text) {
        ASSERT_EQ(::send(client, text.data(), text.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(text.size()));
        for (const auto& [descriptor, ready] : std::map(handlers))
            ready();
    }

    testing_support::TempFolder folder;
    std::map<int, std::function<void()>> handlers;
    int listener, client = -1;
    std::unique_ptr<Ipc> ipc;
};

std::string message(const std::string& text, std::uint32_t told) {
    return std::string(reinterpret_cast<const char*>(&told), sizeof told) + text;
}
std::string message(const std::string& text) {
    return message(text, static_cast<std::uint32_t>(text.size()));
}

TEST(WayfireIpc, TellsAnswersInTheirOrderAndEventsApart) {
    Spoken wayfire;
    ASSERT_TRUE(wayfire.ipc);
    std::vector<std::string> told;
    const auto note = [&told](const std::string& name) {
        return [&told, name](const JsonValue&) { told.push_back(name); };
    };
    wayfire.ipc->onEvent(note("event"));
    wayfire.ipc->ask("a", "{}", note("first"));
    wayfire.ipc->ask("b", "{}", note("second"));
    const std::string all =
        message(R"({"event":"x"})") + message(R"({"result":"ok"})") + message(R"({"error":"no"})");
    wayfire.say(all.substr(0, 20));
    wayfire.say(all.substr(20));
    EXPECT_EQ(told, (std::vector<std::string>{"event", "first", "second"}));
    EXPECT_TRUE(wayfire.isWatched());
}

TEST(WayfireIpc, GivesUpOnWhatIsHugeNestedOrNoMessage) {
    const std::string deep = std::string(200, '[') + std::string(200, ']');
    for (const std::string& text : {message("{}", Ipc::longest + 1), message("{}", 0xffffffff),
                                    message(deep), message("\xff"), message(R"({"event":)")}) {
        Spoken wayfire;
        wayfire.ipc->onEvent([](const JsonValue&) { FAIL() << "nothing was told"; });
        wayfire.say(text);
        EXPECT_TRUE(wayfire.ipc->isBroken()) << text.substr(0, 20);
        EXPECT_FALSE(wayfire.isWatched()) << "it would wake the loop for ever";
    }
}

TEST(WayfireIpc, IsNoneWhereNobodyListens) {
    Spoken loop;
    EXPECT_FALSE(Ipc::open(loop.folder.path("none"), loop));
    EXPECT_FALSE(Ipc::open("", loop));
    EXPECT_FALSE(Ipc::open(std::string(500, 'x'), loop));
}

} // namespace
} // namespace wayfiretests
