#pragma once

#include "platform/session/Pace.h"
#include "platform/wayland/connection/Layer.h"
#include "platform/wayland/keys/KeyboardSeat.h"

namespace platform::wayland {

/// From the moment on that somebody knows Control, Alt and Super to be held together an invisible
/// layer has the keyboard, and is told when they are let go; nobody types meanwhile. Main thread.
class ModifierGrab {
  public:
    /// `changed` is called from the run loop.
    ModifierGrab(Connection& connection, const Outputs& outputs, KeyboardSeat& keyboard,
                 Descriptors& descriptors, std::function<void(bool held)> changed);
    ~ModifierGrab();
    ModifierGrab(const ModifierGrab&) = delete;
    ModifierGrab& operator=(const ModifierGrab&) = delete;

    /// They are held now. Calls `changed`.
    void begin();

  private:
    void end();

    Connection& connection;
    const Outputs& outputs;
    KeyboardSeat& keyboard;
    std::function<void(bool)> changed;
    std::unique_ptr<Layer> layer; ///< while they are held
    bool isKnown = false;         ///< whether the keyboard has told
    bool isReleased = false;
    session::Pace patience; ///< until the keyboard tells
};

} // namespace platform::wayland
