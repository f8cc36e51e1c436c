#pragma once

#include "platform/SystemInfo.h"

namespace platform::memory {

class SystemInfo final : public platform::SystemInfo {
  public:
    Version servicesVersion() const override { return version; }

    void setServicesVersion(Version newVersion) { version = newVersion; }

  private:
    Version version{10, 15, 7};
};

} // namespace platform::memory
