#pragma once

#include "platform/Keyboard.h"
#include "platform/x11/connection/Connection.h"

namespace platform::x11 {

/// Carries out what a keystroke asks for, where the window manager can be asked directly.
class Keyboard final : public platform::Keyboard {
  public:
    Keyboard(Connection& x, Log& writer) : connection(x), log(writer) {}

    void postKey(std::uint16_t virtualKeyCode, bool down, std::uint32_t flags) override;

  private:
    void switchDesktop(int step);

    Connection& connection;
    Log& log;
    bool toldNoDesktops = false;
    bool toldOtherKey = false;
};

} // namespace platform::x11
