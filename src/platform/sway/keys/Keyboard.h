#pragma once

#include "platform/HotKeys.h"
#include "platform/InputEvents.h"
#include "platform/Keyboard.h"
#include "platform/sway/connection/Compositor.h"

namespace platform::sway {

/// Control with an arrow goes to the next workspace of the output; nothing else can be typed.
class Keyboard final : public platform::Keyboard {
  public:
    Keyboard(Compositor& target, Log& writer) : compositor(target), log(writer) {}

    void postKey(std::uint16_t key, bool down, std::uint32_t flags) override;

  private:
    Compositor& compositor;
    Log& log;
    bool told = false;
};

} // namespace platform::sway
