#pragma once

#include "platform/sway/connection/Messages.h"

#include <chrono>
#include <memory>

namespace platform::sway {

/// One socket of the compositor's interface, for questions or for events. Replies come in the order
/// of the questions. After a message that is refused the socket is of no use. Main thread.
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
        bindingState = 12,
    };
    /// The type of an event has this bit.
    static constexpr std::uint32_t eventBit = 0x80000000;

    /// Null where nobody listens there.
    static std::unique_ptr<Ipc> open(const std::string& path);
    ~Ipc();
    Ipc(const Ipc&) = delete;
    Ipc& operator=(const Ipc&) = delete;

    int descriptor() const { return socket; }
    bool isBroken() const { return broken; }
    /// Whether there are questions without a reply.
    bool isWaiting() const { return unanswered > 0 && !broken; }

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
    std::string out;
    Messages in;
    unsigned unanswered = 0;
    bool broken = false;
};

/// The first of the reply's commands that failed, as the compositor says it; empty where none did.
std::string failureIn(const JsonValue& reply);

/// The same commands, where a mode of bindings is in force. What is bound while the compositor runs
/// belongs to that mode, and cannot be unbound in another one; so the mode is the first one
/// meanwhile, if they bind anything.
std::string inFirstMode(const std::string& commands, const std::string& mode);

} // namespace platform::sway
