#pragma once

#include "platform/Log.h"

#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

namespace platform::session {

/// The process that undoes something on the desktop when this one is killed. It is started when it
/// is first asked, and anew where it has ended or does not answer. Nothing here waits for longer
/// than a second.
class GuardProcess {
  public:
    /// The log's line is the name, what is wrong, and the consequence.
    struct Words {
        std::string name;        ///< "the gamma guard"
        std::string consequence; ///< of there being none
    };

    GuardProcess(std::string executable, Words words, Log& log);
    /// As letGo(false).
    ~GuardProcess();
    GuardProcess(const GuardProcess&) = delete;
    GuardProcess& operator=(const GuardProcess&) = delete;

    /// Whether there is a helper that answers now. `arguments` are for one that has to be started;
    /// one that cannot be is logged once. After one that was silent from the start no other is
    /// tried for a while, since each takes its time.
    bool answers(const std::vector<std::string>& arguments);

    /// Whether there was one and it has gone. Does not wait.
    bool hasEnded() const;

    /// Readable when the helper has ended; another one after each that `answers` has started, and
    /// -1 where there is none.
    int descriptor() const { return socket; }

    /// The helper looks what there is left to do, and ends. One that has nothing to do is waited
    /// for and, where it does not end, made to; one that is still needed is left to itself.
    void letGo(bool isNeeded);

  private:
    using Clock = std::chrono::steady_clock;

    void start(const std::vector<std::string>& arguments);
    bool echoes(Clock::time_point deadline);
    bool endsBy(Clock::time_point deadline);
    void kill();
    void closeSocket();
    void tell(const std::string& failure);

    std::string executable;
    Words words;
    Log& log;
    pid_t child = 0;
    int socket = -1;
    Clock::time_point nextStart{};
    bool told = false;
};

} // namespace platform::session
