#pragma once

#include "platform/SystemInfo.h"

namespace platform::linux {

class LinuxSystemInfo final : public SystemInfo {
  public:
    /// The generation that has the global event monitor; there is no older mechanism here.
    Version servicesVersion() const override { return {10, 14, 0}; }
};

} // namespace platform::linux
