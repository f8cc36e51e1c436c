#pragma once

#include "platform/Descriptors.h"
#include "platform/Json.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform::layershell::wayfire {

/// The socket of Wayfire's plugin "ipc". Answers come in the order of the questions, from the run
/// loop. What comes is refused where it is cut, too large or nested too deeply, and the socket is
/// of no use then: nothing is answered any more. Main thread.
class Ipc {
  public:
    using Handler = std::function<void(const JsonValue&)>;

    /// What comes longer than this is refused.
    static constexpr std::uint32_t longest = 1U << 20;

    /// Null where nobody listens there. What is lent must outlive the object.
    static std::unique_ptr<Ipc> open(const std::string& path, Descriptors& descriptors);
    ~Ipc();
    Ipc(const Ipc&) = delete;
    Ipc& operator=(const Ipc&) = delete;

    bool isBroken() const { return broken; }
    /// `data` is JSON. Does not wait.
    void ask(std::string_view method, std::string_view data, Handler answered);
    /// One handler.
    void onEvent(Handler happened) { eventHandler = std::move(happened); }

  private:
    Ipc(int connected, Descriptors& descriptors);
    void transfer();
    bool handleNext();

    int socket;
    Descriptors& descriptors;
    std::string out, in;
    std::deque<Handler> unanswered;
    Handler eventHandler;
    bool broken = false;
};

} // namespace platform::layershell::wayfire
