#pragma once

#include "platform/HotKeys.h"
#include "platform/InputEvents.h"
#include "platform/Keyboard.h"
#include "platform/Log.h"
#include "platform/wayland/keys/Workspaces.h"
#include "platform/wayland/pointer/Pointer.h"

#include <utility>

namespace platform::layershell {

/// Control with an arrow goes to the workspace beside the one that is shown where the cursor is,
/// where the compositor has a protocol for that; nothing else can be typed.
class Keyboard final : public platform::Keyboard {
  public:
    Keyboard(wayland::Connection& connection, const wayland::Outputs& screens,
             const wayland::Pointer& cursor, Log& writer)
        : workspaces(connection), outputs(screens), pointer(cursor), log(writer) {}

    void postKey(std::uint16_t key, bool down, std::uint32_t flags) override {
        if (!down) return;
        const bool isArrow = key == keyCodes::leftArrow || key == keyCodes::rightArrow;
        if (!isArrow || (flags & Shortcut::modifiers) != Shortcut::control) {
            if (!std::exchange(told, true)) log.write("a key cannot be typed in a Wayland session");
            return;
        }
        const auto* const place = outputs.at(outputs.toLayout(pointer.lastPlace()));
        if (place) workspaces.go(key == keyCodes::leftArrow ? -1 : 1, place->output);
    }

  private:
    wayland::Workspaces workspaces;
    const wayland::Outputs& outputs;
    const wayland::Pointer& pointer;
    Log& log;
    bool told = false;
};

} // namespace platform::layershell
