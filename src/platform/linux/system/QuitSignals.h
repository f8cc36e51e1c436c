#pragma once

#include "platform/Descriptors.h"
#include "platform/linux/files/FileHandle.h"

#include <array>
#include <csignal>
#include <functional>

namespace platform::linux {

inline constexpr unsigned never = 0;

/// The process ends after so many seconds as if it were killed, whatever it waits for then. The
/// last call counts. May be called in a signal handler.
void endAfter(unsigned seconds);

/// Turns SIGTERM, SIGINT and SIGHUP into a call from the run loop, also while a modal alert runs.
/// The second signal of a kind ends the process at once, and the first one after a while, for a
/// loop that no longer turns. A SIGHUP that the parent has switched off (nohup) stays off. One
/// object a process.
///
/// SIGUSR1 is for whoever has put another version of the program in the place of this one: it asks
/// the program to start again.
class QuitSignals {
  public:
    QuitSignals(Descriptors& descriptors, std::function<void()> quit,
                std::function<void()> startAgain, unsigned seconds = 3);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

  private:
    struct Previous {
        int number;
        struct sigaction action;
    };

    Descriptors& descriptors;
    FileHandle readEnd;
    FileHandle writeEnd;
    std::array<Previous, 4> previous{{{SIGTERM, {}}, {SIGINT, {}}, {SIGHUP, {}}, {SIGUSR1, {}}}};
};

} // namespace platform::linux
