#pragma once

#include "platform/linux/files/FileHandle.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

// Other processes, as the kernel tells of them. What cannot be read of one is as if it were not
// there.

namespace platform::linux {

/// Who holds the lock of a `LockFile`; nothing where nobody of this user does. Neither makes the
/// file nor tries the lock.
std::optional<pid_t> holderOf(const std::string& lockFile);

/// The user's own processes whose programs have one of these names and were started with a $DISPLAY
/// that `isDisplay` likes; each name once, in the order given. Of a long name the kernel knows 15
/// letters.
std::vector<std::string>
runningOf(const std::vector<std::string>& names,
          const std::function<bool(const std::string& display)>& isDisplay);

/// A process of this user's, told from a later one with the same number.
class OtherProcess {
  public:
    explicit OtherProcess(pid_t process);

    /// Whether it is there and this user's.
    explicit operator bool() const { return isOwn; }
    pid_t id() const { return process; }

    /// The name of its executable without the folder, also where the file is there no more; empty
    /// where it cannot be read.
    std::string executable() const;

    /// Whether a signal or a debugger holds it still.
    bool isStopped() const;

    /// False where it has gone.
    bool signal(int number) const;

    /// Waits for its end; false when it still runs after that.
    bool endsWithin(std::chrono::milliseconds limit) const;

  private:
    pid_t process;
    FileHandle handle; ///< readable when it has ended
    bool isOwn = false;
};

} // namespace platform::linux
