#pragma once

#include "platform/x11/connection/Connection.h"

#include <optional>

namespace platform::x11 {

/// The X server's own screen saver and its display power management. The server counts suspensions
/// for each connection, and forgets them when it ends. Main thread.
class ScreenSaver {
  public:
    explicit ScreenSaver(Connection& x) : connection(x) {}
    /// Ends the suspensions that are left.
    ~ScreenSaver();
    ScreenSaver(const ScreenSaver&) = delete;
    ScreenSaver& operator=(const ScreenSaver&) = delete;

    /// Keeps the screen from being blanked until `resume` has been called as often. False where
    /// the server cannot do that. The first call takes a round trip.
    bool suspend();
    /// Without a suspension it does nothing.
    void resume();

  private:
    bool canSuspend();

    Connection& connection;
    std::optional<bool> able; ///< not known before the first use
    unsigned count = 0;
};

} // namespace platform::x11
