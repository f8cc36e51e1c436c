#pragma once

#include "platform/kwin/script/Script.h"
#include "platform/wayland/keys/Keyboard.h"

namespace platform::kwin {

/// The desktops are the compositor's virtual ones.
class Keyboard final : public wayland::Keyboard {
  public:
    Keyboard(Script& inside, Log& writer) : wayland::Keyboard(writer), script(inside) {}

  private:
    void go(int direction) override {
        script.run("desktop", {std::string(direction < 0 ? "left" : "right")});
    }

    Script& script;
};

} // namespace platform::kwin
