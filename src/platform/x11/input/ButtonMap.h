#pragma once

#include "platform/x11/connection/Connection.h"

namespace platform::x11 {

/// The user's swapping of the buttons, from before which raw events carry the physical number.
class ButtonMap {
  public:
    /// A round trip.
    void read(Connection& connection);
    unsigned logical(std::uint32_t physical) const;

  private:
    std::array<std::uint8_t, 256> map{}; ///< by the physical number, 0 for an unknown one
};

} // namespace platform::x11
