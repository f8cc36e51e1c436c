#pragma once

#include "platform/Notifications.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

class Notifications final : public platform::Notifications {
  public:
    explicit Notifications(Effects& stream) : effects(stream) {}

    void deliver(const Notification& notification) override {
        effects.emit("notification", Member{"title", orNull(notification.title)},
                     Member{"text", orNull(notification.text)},
                     Member{"sound", orNull(notification.sound)},
                     Member{"identifier", orNull(notification.identifier)});
    }

  private:
    Effects& effects;
};

} // namespace platform::memory
