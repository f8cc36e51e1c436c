#pragma once

#include <functional>

namespace platform {

/// Lets a backend with a connection of its own be woken by the run loop. Main thread.
class Descriptors {
  public:
    virtual ~Descriptors() = default;

    /// Calls `ready` from the run loop, modal alerts and open menus included, for as long as `fd`
    /// is readable. One watch a descriptor; the descriptor stays the caller's.
    virtual void watchReadable(int fd, std::function<void()> ready) = 0;

    /// Ends the watch; may be called from inside `ready`. A descriptor without one is ignored.
    virtual void unwatch(int fd) = 0;
};

} // namespace platform
