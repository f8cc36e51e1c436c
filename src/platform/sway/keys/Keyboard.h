#pragma once

#include "platform/sway/connection/Compositor.h"
#include "platform/wayland/keys/Keyboard.h"
#include "platform/wayland/pointer/Pointer.h"

namespace platform::sway {

/// The desktops are the workspaces of the output where the cursor is.
class Keyboard final : public wayland::Keyboard {
  public:
    Keyboard(Compositor& target, const wayland::Outputs& screens, const wayland::Pointer& cursor,
             Log& writer)
        : wayland::Keyboard(writer), compositor(target), outputs(screens), pointer(cursor) {}

  private:
    void go(int direction) override;

    Compositor& compositor;
    const wayland::Outputs& outputs;
    const wayland::Pointer& pointer;
};

/// The commands that show the workspace after (1) or before (-1) the one that an output shows, by
/// the compositor's list; empty where there is none.
std::string commandTo(int direction, const std::string& output, const JsonValue& workspaces);

} // namespace platform::sway
