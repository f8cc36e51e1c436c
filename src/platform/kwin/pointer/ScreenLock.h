#pragma once

#include "bus/Link.h"

#include <functional>

namespace platform::kwin {

/// Whether the session's screen is locked, as its lock screen tells on the bus. Nothing here waits.
/// Main thread.
class ScreenLock final : public bus::Link::User {
  public:
    /// `changed` is told, from the run loop, of each change from not being locked on. The link must
    /// outlive the object.
    ScreenLock(bus::Link& link, std::function<void(bool isLocked)> changed);
    ~ScreenLock() override;
    ScreenLock(const ScreenLock&) = delete;
    ScreenLock& operator=(const ScreenLock&) = delete;

  private:
    void attach(sd_bus& bus) override;
    void up() override;
    static int told(sd_bus_message* message, void* own, sd_bus_error* error);

    bus::Link& link;
    std::function<void(bool)> changed;
    bool isLocked = false;
    bus::Slot watch, question;
};

} // namespace platform::kwin
