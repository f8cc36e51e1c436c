#pragma once

#include "platform/WakeLock.h"
#include "platform/x11/connection/Connection.h"

#include <optional>

namespace platform::x11 {

/// The X server's own screen saver and its display power management. The server counts suspensions
/// for each connection, and forgets them when it ends. Main thread.
class ScreenSaver final : public WakeLock {
  public:
    explicit ScreenSaver(Connection& x) : connection(x) {}
    /// Ends the suspensions that are left.
    ~ScreenSaver() override;
    ScreenSaver(const ScreenSaver&) = delete;
    ScreenSaver& operator=(const ScreenSaver&) = delete;

    /// The first call takes a round trip.
    bool keep(AssertionId, const std::string&) override;
    /// Without a suspension it does nothing.
    void release(AssertionId) override { resume(); }
    std::string_view missing() const override;

  private:
    bool canSuspend();
    void resume();

    Connection& connection;
    std::optional<bool> able; ///< not known before the first use
    unsigned count = 0;
};

} // namespace platform::x11
