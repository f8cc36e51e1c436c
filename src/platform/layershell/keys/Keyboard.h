#pragma once

#include "platform/wayland/keys/Keyboard.h"
#include "platform/wayland/keys/Workspaces.h"
#include "platform/wayland/pointer/Pointer.h"

namespace platform::layershell {

/// The desktops are the workspaces of the output where the cursor is, where the compositor has a
/// protocol for them.
class Keyboard final : public wayland::Keyboard {
  public:
    Keyboard(wayland::Connection& connection, const wayland::Outputs& screens,
             const wayland::Pointer& cursor, Log& writer)
        : wayland::Keyboard(writer), workspaces(connection), outputs(screens), pointer(cursor) {}

  private:
    void go(int direction) override {
        const auto* const place = outputs.at(outputs.toLayout(pointer.lastPlace()));
        if (place) workspaces.go(direction, place->output);
    }

    wayland::Workspaces workspaces;
    const wayland::Outputs& outputs;
    const wayland::Pointer& pointer;
};

} // namespace platform::layershell
