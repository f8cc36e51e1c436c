#pragma once

#include "platform/Power.h"

#include <string>

namespace platform {

/// One way to keep the displays awake. No one of them covers all desktops. Main thread.
class WakeLock {
  public:
    virtual ~WakeLock() = default;

    /// Whether this way works. `release` follows for the same number, which is not in use, in
    /// either case. `reason` is what the system's power tools show.
    virtual bool keep(AssertionId id, const std::string& reason) = 0;
    virtual void release(AssertionId id) = 0;

    /// Why it does not work where it does not, for the log.
    virtual std::string_view missing() const = 0;
};

} // namespace platform
