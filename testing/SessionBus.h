#pragma once

#include "testing/Child.h"

namespace support {

/// A session bus of the test's own, which ends with the object.
class SessionBus {
  public:
    /// `surroundings` are for the bus and for what it starts; `configuration` is a file in place of
    /// the usual one. Throws std::runtime_error when it does not start.
    explicit SessionBus(const Environment& surroundings, const std::string& configuration = {});

    /// The value of DBUS_SESSION_BUS_ADDRESS for what is to use it.
    const std::string& address() const { return server.line; }
    pid_t pid() const { return server.process->pid(); }

  private:
    Announced server;
};

} // namespace support
