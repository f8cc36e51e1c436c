#pragma once

#include <memory>
#include <sys/types.h>
#include <vector>

namespace support {
class ChildProcess;
class PrivateDesktop;
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
    explicit Load(const support::PrivateDesktop& desktop);
    ~Load();
    Load(const Load&) = delete;
    Load& operator=(const Load&) = delete;

  private:
    std::vector<std::unique_ptr<support::ChildProcess>> processes;
};

} // namespace bench
