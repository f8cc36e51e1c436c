#pragma once

#include "platform/wayland/Desktop.h"
#include "platform/wayland/keys/KeyRecording.h"
#include "platform/wayland/overlay/IdleInhibitor.h"
#include "platform/wayland/overlay/PopupLayer.h"
#include "platform/wayland/overlay/Windows.h"
#include "platform/wayland/pointer/InputEvents.h"

namespace platform::wayland {

/// What layers, and the pointer and the keyboard over them, do in the same way on every compositor
/// that has them. A family of compositors adds how the cursor is held, moved and hidden, how keys
/// are heard and how workspaces are switched. Main thread.
struct LayerServices {
    /// What is lent must outlive the object.
    LayerServices(Connection& connection, Outputs& outputs, CursorControl& control,
                  Descriptors& descriptors, Log& log, const Desktop::Surroundings& given);
    LayerServices(const LayerServices&) = delete;
    LayerServices& operator=(const LayerServices&) = delete;

    /// Control, Alt and Super are held together, or are so no longer. Each event of a modifier is a
    /// press or a release in turn, and stays a pair: what was pressed in a window of the program is
    /// told to nobody.
    void tellModifiers(bool held);

    std::function<bool()> ownWindowActive;
    bool modifiersTold = false;
    KeyboardSeat keyboard;
    PointerSeat seat;
    Hold hold;
    Pointer pointer;
    InputEvents input;
    KeyRecording recording;
    Windows windows;
    IdleInhibitor idle;
    PopupLayer popups;
};

} // namespace platform::wayland
