#pragma once

#include "platform/Keyboard.h"
#include "platform/Log.h"

#include <utility>

namespace platform::layershell {

/// Nothing can be typed.
class Keyboard final : public platform::Keyboard {
  public:
    explicit Keyboard(Log& writer) : log(writer) {}

    void postKey(std::uint16_t, bool, std::uint32_t) override {
        if (!std::exchange(told, true)) log.write("a key cannot be typed in a Wayland session");
    }

  private:
    Log& log;
    bool told = false;
};

} // namespace platform::layershell
