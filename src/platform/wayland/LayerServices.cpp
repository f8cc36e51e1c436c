#include "platform/wayland/LayerServices.h"

namespace platform::wayland {

LayerServices::LayerServices(Connection& connection, Outputs& outputs, CursorControl& control,
                             Descriptors& descriptors, Log& log, const Desktop::Surroundings& given)
    : ownWindowActive(given.ownWindowActive),
      keyboard(connection),
      seat(connection, keyboard),
      hold(connection, outputs, seat, control, given.holds),
      pointer(connection, outputs, seat, control, hold),
      input(connection, descriptors, outputs, seat, pointer, hold, given.ownWindowActive),
      recording(connection, outputs, keyboard, given.later),
      windows(connection, outputs, seat, log),
      idle(connection, outputs),
      // Of several layers some compositors have the first one on top, and others the last.
      popups(connection, outputs, given.later,
             [this](bool isOpen) { windows.letPointerThrough(isOpen); }) {}

void LayerServices::tellModifiers(bool held) {
    const bool isTold = held ? !ownWindowActive() && !recording.isOn() : modifiersTold;
    modifiersTold = held && isTold;
    if (!isTold) return;
    for (const auto code : {keyCodes::control, keyCodes::option, keyCodes::command})
        input.tellModifier(code);
}

} // namespace platform::wayland
