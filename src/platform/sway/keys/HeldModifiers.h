#pragma once

#include "platform/session/Pace.h"
#include "platform/sway/undo/Changes.h"
#include "platform/wayland/connection/Layer.h"
#include "platform/wayland/keys/KeyboardSeat.h"

namespace platform::sway {

/// Finds out when Control, Alt and Super are held together and when they are let go. The first is a
/// binding for each of the three that may come last, which has to be the left one; one that the
/// user has bound stays the user's, which is logged. From then on an
/// invisible layer has the keyboard, and is told of the release; nobody types meanwhile.
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
    void pressed();
    void released();

    Compositor& compositor;
    Changes& changes;
    wayland::Connection& connection;
    const wayland::Outputs& outputs;
    wayland::KeyboardSeat& keyboard;
    std::function<void(bool)> changed;
    std::unique_ptr<wayland::Layer> layer; ///< while they are held
    bool isKnown = false;                  ///< whether the keyboard has told
    bool isReleased = false;
    session::Pace patience; ///< until the keyboard tells
};

} // namespace platform::sway
