#pragma once

#include "platform/sway/undo/Changes.h"
#include "platform/wayland/keys/ModifierGrab.h"

namespace platform::sway {

/// Finds out when Control, Alt and Super are held together: by a binding for each of the three that
/// may come last, which has to be the left one; one that the user has bound stays the user's, which
/// is logged.
class HeldModifiers {
  public:
    /// `changed` is called from the run loop.
    HeldModifiers(Compositor& compositor, Changes& changes, wayland::Connection& connection,
                  const wayland::Outputs& outputs, wayland::KeyboardSeat& keyboard,
                  Descriptors& descriptors, Log& log, std::function<void(bool held)> changed);
    ~HeldModifiers();
    HeldModifiers(const HeldModifiers&) = delete;
    HeldModifiers& operator=(const HeldModifiers&) = delete;

  private:
    Compositor& compositor;
    Changes& changes;
    wayland::ModifierGrab grab;
};

} // namespace platform::sway
