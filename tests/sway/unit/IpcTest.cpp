#include "platform/sway/connection/Ipc.h"
#include "testing/TempFolder.h"

#include <cstring>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

// What comes from the compositor's socket is not trusted.

namespace {

using platform::JsonValue;
using platform::sway::failureIn;
using platform::sway::inFirstMode;
using platform::sway::Ipc;
using platform::sway::Messages;

std::string message(std::uint32_t type, const std::string& text,
                    std::optional<std::uint32_t> told = {}) {
    const std::uint32_t numbers[] = {told.value_or(static_cast<std::uint32_t>(text.size())), type};
    return "i3-ipc" + std::string(reinterpret_cast<const char*>(numbers), sizeof numbers) + text;
}

/// A compositor that says one thing to whoever comes, and hangs up.
struct OneAnswer {
    explicit OneAnswer(std::string text) : listener(::socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, path().c_str());
        EXPECT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(listener, 1), 0);
        thread = std::thread([this, answer = std::move(text)] {
            const int client = ::accept(listener, nullptr, nullptr);
            for (std::size_t sent = 0; sent < answer.size();) {
                const ssize_t now =
                    ::send(client, answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
                if (now <= 0) break;
                sent += static_cast<std::size_t>(now);
            }
            // Whoever hangs up on a question that was not read takes the answer back as well.
            ::shutdown(client, SHUT_WR);
            for (char unread[256]; ::recv(client, unread, sizeof unread, 0) > 0;)
                ;
            ::close(client);
        });
    }
    ~OneAnswer() {
        thread.join();
        ::close(listener);
    }
    std::string path() const { return folder.path("socket"); }

    testing_support::TempFolder folder;
    int listener;
    std::thread thread;
};

std::optional<JsonValue> answerOf(const std::string& text) {
    const OneAnswer server(text);
    const auto ipc = Ipc::open(server.path());
    if (!ipc) throw std::runtime_error("nobody listens");
    return ipc->ask(Ipc::Type::version, "", Ipc::Clock::now() + std::chrono::seconds(30));
}

TEST(SwayIpc, ReadsAReply) {
    const auto reply = answerOf(message(7, R"({"minor":9})"));
    ASSERT_TRUE(reply);
    EXPECT_EQ(*reply->member("minor"), JsonValue{std::int64_t{9}});
}

TEST(SwayIpc, PassesOverEventsAndReadsTheReplyBehindThem) {
    const auto reply =
        answerOf(message(Ipc::eventBit | 5, R"({"change":"run"})") + message(7, R"({"minor":9})"));
    ASSERT_TRUE(reply);
    EXPECT_TRUE(reply->member("minor"));
}

TEST(SwayIpc, RefusesWhatIsCutHugeNestedOrNoMessage) {
    const std::string deep = std::string(200, '[') + std::string(200, ']');
    for (const std::string& text :
         {std::string(), message(7, R"({"minor":9})").substr(0, 20), message(7, R"({"mi)"),
          message(7, "{}", Messages::longest + 1), message(7, "{}", 0xffffffff), message(7, deep),
          std::string(100, 'x'), message(7, "\xff")})
        EXPECT_FALSE(answerOf(text)) << text.substr(0, 40);
}

TEST(SwayIpc, ReadsAReplyOfTheLargestSizeAndNoneBeyond) {
    const auto sized = [](std::size_t size) { return "[\"" + std::string(size - 4, 'x') + "\"]"; };
    EXPECT_TRUE(answerOf(message(7, sized(Messages::longest))));
    EXPECT_FALSE(answerOf(message(7, sized(Messages::longest + 1))));
}

TEST(SwayIpc, IsNoneWhereNobodyListens) {
    const testing_support::TempFolder folder;
    EXPECT_FALSE(Ipc::open(folder.path("socket")));
    EXPECT_FALSE(Ipc::open(""));
    EXPECT_FALSE(Ipc::open(std::string(500, 'x')));
}

TEST(SwayIpc, TellsTheFirstFailureOfSeveralCommands) {
    const auto reply =
        answerOf(message(0, R"([{"success":true},{"success":false,"error":"No such output"}])"));
    ASSERT_TRUE(reply);
    EXPECT_EQ(failureIn(*reply), "No such output");
    EXPECT_EQ(failureIn(JsonValue{}), "");
}

TEST(SwayIpc, BindsInTheFirstModeOfBindingsWhateverTheModeIs) {
    const std::string map = "input type:pointer map_to_output A", bind = "bindcode Mod1+60 nop x";
    EXPECT_EQ(inFirstMode(bind, "default"), bind);
    EXPECT_EQ(inFirstMode(bind, ""), bind);
    EXPECT_EQ(inFirstMode(map, "resize"), map);
    EXPECT_EQ(inFirstMode(bind, "a; b"), "mode default; " + bind + "; mode \"a; b\"");
    EXPECT_EQ(inFirstMode("un" + bind, "a\"b"), "mode default; un" + bind + "; mode 'a\"b'");
}

} // namespace
