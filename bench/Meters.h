#pragma once

#include <atomic>
#include <memory>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace support {
class ChildProcess;
} // namespace support

namespace bench {

/// What a process has used from the making of the object until it is asked.
class Usage {
  public:
    explicit Usage(pid_t process);

    /// Of one core, all threads.
    double cpuPercent() const;
    /// Times a second that a thread of the process gave the core away and got it back later.
    double wakeUpsPerSecond() const;

  private:
    pid_t process;
    double begun, usedBefore;
    long switchesBefore;
};

/// Two processes that never rest, one for each core of the machines that this is measured on.
class Load {
  public:
    Load();
    ~Load();
    Load(const Load&) = delete;
    Load& operator=(const Load&) = delete;

  private:
    std::vector<std::unique_ptr<support::ChildProcess>> processes;
};

/// Notices when the machine itself stands still for some milliseconds, as a virtual one does beside
/// busy neighbours. On each core a thread that goes before everything else wakes in short turns;
/// what keeps it waiting is below the system, and nothing that a program did. Without the right to
/// go before everything else no standstill is noticed.
class Standstills {
  public:
    Standstills();
    ~Standstills();
    Standstills(const Standstills&) = delete;
    Standstills& operator=(const Standstills&) = delete;

    /// Whether one was noticed since the last call.
    bool takeAny() { return seen.exchange(false); }

  private:
    void watch(int core);

    std::atomic<bool> seen{false};
    std::atomic<bool> ends{false};
    std::vector<std::thread> watchers;
};

} // namespace bench
