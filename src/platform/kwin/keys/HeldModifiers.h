#pragma once

#include "platform/kwin/keys/KeyState.h"
#include "platform/session/Pace.h"
#include "platform/wayland/connection/Layer.h"
#include "platform/wayland/keys/KeyboardSeat.h"

namespace platform::kwin {

/// Finds out when the left Control, Alt and Super are held together and when they are let go. The
/// compositor tells the kinds; when all three are held an invisible layer takes the keyboard for a
/// moment, and is told which keys are down.
class HeldModifiers {
  public:
    /// `changed` is called from the run loop.
    HeldModifiers(wayland::Connection& connection, const wayland::Outputs& outputs,
                  wayland::KeyboardSeat& keyboard, Descriptors& descriptors,
                  std::function<void(bool held)> changed);
    ~HeldModifiers();
    HeldModifiers(const HeldModifiers&) = delete;
    HeldModifiers& operator=(const HeldModifiers&) = delete;

    bool canTell() const { return state.isThere(); }

  private:
    void update();
    void ask();

    wayland::Connection& connection;
    const wayland::Outputs& outputs;
    wayland::KeyboardSeat& keyboard;
    std::function<void(bool)> changed;
    std::uint32_t kinds = 0;                 ///< that are held
    std::unique_ptr<wayland::Layer> layer;   ///< while it is asked
    bool isAnswered = false, isLeft = false; ///< the question; by the three left keys
    bool isAsked = false;                    ///< since all kinds are held
    bool isTold = false;                     ///< that they are held
    session::Pace patience;
    KeyState state;
};

} // namespace platform::kwin
