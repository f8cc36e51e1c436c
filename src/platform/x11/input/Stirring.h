#pragma once

#include "platform/x11/connection/Connection.h"

namespace platform::x11 {

/// Tells when the user's pointer stirs after a rest, whoever moves it. Of a move by another program
/// no device tells, and a window under the cursor may keep the motion that comes of it to itself;
/// but it ends the idle time that the server counts. At rest nothing comes, and while a hand moves
/// one event at its beginning.
class Stirring {
  public:
    explicit Stirring(Connection& x) : connection(x) {}

    /// From now on, of the connection's master pointer; again when that may be another one. Round
    /// trips. A server that does not count leaves it at nothing.
    void watch();

    /// The type of the event that tells it; 0 before `watch`, and where the server does not count.
    std::uint8_t eventType() const { return type; }

    /// Whether the event, of that type, is not explained by a device that told something at that
    /// time of the server's.
    static bool isUnexplained(const xcb_generic_event_t& event, std::uint32_t toldTime);

  private:
    std::uint32_t idleCounter() const;

    Connection& connection;
    std::uint8_t type = 0;
    std::uint32_t alarm = XCB_NONE;
    std::uint16_t device = 0; ///< that the alarm is about
};

} // namespace platform::x11
