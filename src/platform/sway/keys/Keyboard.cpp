#include "platform/sway/keys/Keyboard.h"

#include <utility>

namespace platform::sway {

void Keyboard::postKey(std::uint16_t key, bool down, std::uint32_t flags) {
    if (!down) return;
    const bool isArrow = key == keyCodes::leftArrow || key == keyCodes::rightArrow;
    if (isArrow && (flags & Shortcut::modifiers) == Shortcut::control)
        compositor.run(key == keyCodes::leftArrow ? "workspace prev_on_output"
                                                  : "workspace next_on_output");
    else if (!std::exchange(told, true))
        log.write("a key cannot be typed in a Wayland session");
}

} // namespace platform::sway
