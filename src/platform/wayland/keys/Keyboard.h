#pragma once

#include "platform/Keyboard.h"
#include "platform/Log.h"

namespace platform::wayland {

/// A compositor lets no program type. What is typed to reach the next desktop, Control with an
/// arrow, is asked of it in its own way; of anything else it is said once that it cannot be.
class Keyboard : public platform::Keyboard {
  public:
    explicit Keyboard(Log& writer) : log(writer) {}

    void postKey(std::uint16_t key, bool down, std::uint32_t flags) final;

  private:
    /// Shows the desktop after (1) or before (-1) the one that is shown, where there is one.
    virtual void go(int direction) = 0;

    Log& log;
    bool told = false;
};

} // namespace platform::wayland
