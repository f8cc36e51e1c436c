#pragma once

#include "platform/HotKeys.h"

namespace platform {

/// Hot keys that the user can choose on the keyboard itself.
class RecordableHotKeys : public HotKeys {
  public:
    struct Stroke {
        std::optional<std::uint16_t> keyCode{}; ///< virtual; nothing when only modifiers changed
        std::uint32_t modifierFlags = 0;        ///< those that are held
        bool unknownKey = false;                ///< a key was pressed that has no virtual key code
    };

    /// `changed` is called from the run loop when the strings of the keys are others than before:
    /// the user has gone to another layout, or to another keyboard. One handler.
    virtual void onLabelsChange(std::function<void()> changed) = 0;

    /// `taken` is called when the combination stored under a settings key is bound and another
    /// program holds it, and not for one that the user records just then. One handler.
    virtual void onTaken(std::function<void(const Shortcut&)> taken) = 0;

    /// Whether another program held the combination when it was last claimed.
    virtual bool isTaken(const Shortcut& shortcut) const = 0;

    /// From now on every key goes to `pressed`, called from the run loop, and to nobody else; the
    /// program's own combinations do nothing meanwhile. `left` is called, from the run loop, when
    /// the user goes to another window. False, and logged once, when another program has the
    /// keyboard.
    virtual bool startRecording(std::function<void(const Stroke&)> pressed,
                                std::function<void()> left) = 0;

    /// The combinations are claimed when it returns. Without a recording nothing happens.
    virtual void stopRecording() = 0;
};

} // namespace platform
