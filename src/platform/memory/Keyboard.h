#pragma once

#include "platform/Keyboard.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

class Keyboard final : public platform::Keyboard {
  public:
    explicit Keyboard(Effects& stream) : effects(stream) {}

    void postKey(std::uint16_t virtualKeyCode, bool down, std::uint32_t flags) override {
        effects.emit("postKey", Member{"keyCode", virtualKeyCode}, Member{"down", down},
                     Member{"flags", flags});
    }

  private:
    Effects& effects;
};

} // namespace platform::memory
