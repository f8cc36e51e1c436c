#pragma once

#include "bus/SingleInstance.h"
#include "platform/linux/files/LockFile.h"
#include "platform/linux/settings/FileWatch.h"

#include <functional>
#include <optional>
#include <string>

/// One program a product, user and display. A lock in the runtime folder tells, whether or not
/// there is a session bus; where there is no such folder the name on the bus does. A further start
/// ends, and has the menu shown where a person asked for it. Main thread.
class OneInstance {
  public:
    /// `name` is the product's on the bus; `display` tells the user's displays apart. What is lent
    /// must outlive the object.
    OneInstance(const std::string& name, const std::string& display, bus::Link& link,
                platform::Descriptors& descriptors, platform::Log& log);

    /// False when this is a further start; the first one has then been asked for its menu, unless
    /// it is the session that starts.
    bool claim(bool atLogin);

    /// Called from the run loop for a further start by a person, and for launchers.
    void onActivate(const std::function<void()>& handler);

  private:
    platform::Descriptors& descriptors;
    platform::Log& log;
    std::optional<platform::linux::LockFile> lock; ///< nothing without a folder for it
    bus::SingleInstance onBus;
    std::optional<platform::linux::FileWatch> knocks;
};
