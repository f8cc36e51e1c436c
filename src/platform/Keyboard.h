#pragma once

#include <cstdint>

namespace platform {

/// Synthetic keystrokes. Main thread.
class Keyboard {
  public:
    virtual ~Keyboard() = default;

    /// Posts one key event to the session. Control with an arrow key is the request for the
    /// neighbouring desktop and is carried out by the window manager; where it cannot be, it is
    /// logged once.
    virtual void postKey(std::uint16_t virtualKeyCode, bool down, std::uint32_t flags) = 0;
};

} // namespace platform
