#include "platform/wayland/keys/Keyboard.h"

#include "platform/HotKeys.h"
#include "platform/InputEvents.h"

#include <utility>

namespace platform::wayland {

void Keyboard::postKey(std::uint16_t key, bool down, std::uint32_t flags) {
    if (!down) return;
    const bool isArrow = key == keyCodes::leftArrow || key == keyCodes::rightArrow;
    if (isArrow && (flags & Shortcut::modifiers) == Shortcut::control)
        go(key == keyCodes::leftArrow ? -1 : 1);
    else if (!std::exchange(told, true))
        log.write("a key cannot be typed in a Wayland session");
}

} // namespace platform::wayland
