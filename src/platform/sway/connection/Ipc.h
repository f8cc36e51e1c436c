#pragma once

#include "platform/Json.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform::sway {

/// One socket of the compositor's interface, for questions or for events. Replies come in the order
/// of the questions. What comes is refused where it is cut, too large or nested too deeply, and the
/// socket is of no use then. Main thread.
class Ipc {
  public:
    using Clock = std::chrono::steady_clock;

    enum class Type : std::uint32_t {
        command = 0,
        workspaces = 1,
        subscribe = 2,
        outputs = 3,
        version = 7,
        configuration = 9,
    };
    /// The type of an event has this bit.
    static constexpr std::uint32_t eventBit = 0x80000000;

    struct Message {
        std::uint32_t type = 0;
        JsonValue value;
    };
    /// What comes longer than this is refused; the largest that is asked for is the user's
    /// configuration.
    static constexpr std::uint32_t longest = 4U << 20;

    /// Null where nobody listens there.
    static std::unique_ptr<Ipc> open(const std::string& path);
    ~Ipc();
    Ipc(const Ipc&) = delete;
    Ipc& operator=(const Ipc&) = delete;

    int descriptor() const { return socket; }
    bool isBroken() const { return broken; }

    /// Sends and does not wait; `next` has the reply later.
    void send(Type type, std::string_view payload);
    /// Sends what did not go at once, and reads what has come.
    void transfer();
    /// What has been read; nothing where no message is whole.
    std::optional<Message> next();
    /// Sends and waits for the reply, until the deadline. The replies to what was sent before are
    /// left out.
    std::optional<JsonValue> ask(Type type, std::string_view payload, Clock::time_point deadline);

  private:
    explicit Ipc(int connected) : socket(connected) {}

    int socket;
    std::string out, in;
    unsigned unanswered = 0;
    bool broken = false;
};

/// The first of the reply's commands that failed, as the compositor says it; empty where none did.
std::string failureIn(const JsonValue& reply);

} // namespace platform::sway
