#pragma once

#include "platform/RecordableHotKeys.h"

namespace platform::wayland {

/// Takes the keyboard for as long as a shortcut is recorded. Main thread.
class KeyTaking {
  public:
    using Handler = std::function<void(const RecordableHotKeys::Stroke&)>;
    /// Calls an operation from the run loop, also while a modal alert runs.
    using Later = std::function<void(std::function<void()>)>;

    virtual ~KeyTaking() = default;

    virtual bool isOn() const = 0;
    /// False where the keyboard cannot be had.
    virtual bool start(Handler pressed) = 0;
    virtual void stop() = 0;
};

} // namespace platform::wayland
