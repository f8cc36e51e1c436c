#pragma once

#include "platform/SystemInfo.h"

namespace platform::linux {

/// The version of the toolkit that runs.
std::string toolkitVersion();

/// Of the session's environment, what it was when the object was made.
class LinuxSystemInfo final : public SystemInfo {
  public:
    /// The machine is known to `applicationIdentifier` by an identifier of its own. `root` goes
    /// before the paths of the system's files, for tests.
    explicit LinuxSystemInfo(std::string applicationIdentifier, std::string root = {});

    /// There is no older mechanism here.
    Version servicesVersion() const override { return firstWithGlobalMonitor; }

    /// The kernel's: every distribution has one, and numbers it in three parts.
    std::optional<Version> systemVersion() const override;

    /// The firmware's name for the product, or the device tree's.
    std::string machineModel() const override;

    std::optional<std::string> machineIdentifier() const override;
    std::vector<std::string> languages() const override { return preferredLanguages; }
    std::optional<std::string> countryCode() const override { return country; }
    LocalTime localTime() const override;

  private:
    std::string application;
    std::string root;
    std::vector<std::string> preferredLanguages;
    std::optional<std::string> country;
};

/// The numbers that a text such as "6.1.0-18-amd64" begins with, 0 for those that it lacks; nothing
/// where it begins with none.
std::optional<Version> leadingVersion(std::string_view text);

} // namespace platform::linux
