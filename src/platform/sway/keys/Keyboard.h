#pragma once

#include "platform/HotKeys.h"
#include "platform/InputEvents.h"
#include "platform/Keyboard.h"
#include "platform/sway/connection/Compositor.h"
#include "platform/wayland/pointer/Pointer.h"

namespace platform::sway {

/// Control with an arrow goes to the workspace beside the one that is shown where the cursor is,
/// and nowhere from the first or the last one; nothing else can be typed.
class Keyboard final : public platform::Keyboard {
  public:
    Keyboard(Compositor& target, const wayland::Outputs& screens, const wayland::Pointer& cursor,
             Log& writer)
        : compositor(target), outputs(screens), pointer(cursor), log(writer) {}

    void postKey(std::uint16_t key, bool down, std::uint32_t flags) override;

  private:
    Compositor& compositor;
    const wayland::Outputs& outputs;
    const wayland::Pointer& pointer;
    Log& log;
    bool told = false;
};

/// The commands that show the workspace after (1) or before (-1) the one that an output shows, by
/// the compositor's list; empty where there is none.
std::string commandTo(int direction, const std::string& output, const JsonValue& workspaces);

} // namespace platform::sway
