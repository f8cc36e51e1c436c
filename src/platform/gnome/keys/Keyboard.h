#pragma once

#include "platform/gnome/connection/Hand.h"
#include "platform/wayland/keys/Keyboard.h"

namespace platform::gnome {

/// The desktops are the shell's workspaces.
class Keyboard final : public wayland::Keyboard {
  public:
    Keyboard(Hand& extension, Log& writer) : wayland::Keyboard(writer), hand(extension) {}

  private:
    void go(int direction) override { hand.switchWorkspace(direction); }

    Hand& hand;
};

} // namespace platform::gnome
