#pragma once

#include <compare>

namespace platform {

struct Version {
    int major = 0;
    int minor = 0;
    int patch = 0;
    auto operator<=>(const Version&) const = default;
};

/// Facts about the running system. Any thread.
class SystemInfo {
  public:
    virtual ~SystemInfo() = default;

    /// The generation of the platform's services, for choosing between an older and a newer
    /// mechanism. It is not the version number of the running system.
    virtual Version servicesVersion() const = 0;
};

} // namespace platform
