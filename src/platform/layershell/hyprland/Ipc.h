#pragma once

#include "platform/Descriptors.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform::layershell::hyprland {

/// Hyprland's two sockets: one takes a request a connection, the other tells events. Nothing here
/// waits. What comes is refused where it is longer than `longest`. Main thread.
class Ipc {
  public:
    /// Called from the run loop; nothing where the answer was refused or nobody answered.
    using Answered = std::function<void(const std::optional<std::string>& answer)>;
    using Happened = std::function<void(std::string_view event, std::string_view data)>;

    /// Bytes of one answer, and of one event.
    static constexpr std::size_t longest = 1U << 20;

    /// `folder` is that of the instance. Null where nobody tells events there. What is lent must
    /// outlive the object.
    static std::unique_ptr<Ipc> open(std::string folder, Descriptors& descriptors);
    ~Ipc();
    Ipc(const Ipc&) = delete;
    Ipc& operator=(const Ipc&) = delete;

    /// Requests are answered one after the other, in their order.
    void ask(std::string request, Answered answered);
    /// One handler.
    void onEvent(Happened happened) { eventHandler = std::move(happened); }
    /// Makes a request and waits until it was carried out, a tenth of a second at most: for what is
    /// the last one.
    void askLast(const std::string& request) const;

  private:
    struct Question {
        std::string request;
        Answered answered;
    };

    Ipc(std::string folder, int events, Descriptors& descriptors);
    std::string requests() const { return folder + "/.socket.sock"; }
    void askNext();
    void readAnswer();
    void finish(std::optional<std::string> whole);
    void readEvents();

    std::string folder;
    Descriptors& descriptors;
    int events;
    std::string told; ///< of events, without its end
    Happened eventHandler;
    std::deque<Question> questions; ///< the first one is being answered
    int asking = -1;                ///< its connection
    std::string answer;             ///< so far
};

} // namespace platform::layershell::hyprland
