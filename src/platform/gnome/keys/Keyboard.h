#pragma once

#include "platform/HotKeys.h"
#include "platform/InputEvents.h"
#include "platform/Keyboard.h"
#include "platform/Log.h"
#include "platform/gnome/connection/Hand.h"

#include <utility>

namespace platform::gnome {

/// Control with an arrow goes to the neighbouring workspace; nothing else can be typed.
class Keyboard final : public platform::Keyboard {
  public:
    Keyboard(Hand& extension, Log& writer) : hand(extension), log(writer) {}

    void postKey(std::uint16_t key, bool down, std::uint32_t flags) override {
        if (!down) return;
        const bool isArrow = key == keyCodes::leftArrow || key == keyCodes::rightArrow;
        if (isArrow && (flags & Shortcut::modifiers) == Shortcut::control)
            hand.switchWorkspace(key == keyCodes::leftArrow ? -1 : 1);
        else if (!std::exchange(told, true))
            log.write("a key cannot be typed in a Wayland session");
    }

  private:
    Hand& hand;
    Log& log;
    bool told = false;
};

} // namespace platform::gnome
