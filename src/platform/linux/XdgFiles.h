#pragma once

#include "platform/Files.h"
#include "platform/Log.h"

namespace platform::linux {

/// $XDG_CONFIG_HOME, or .config in the home folder; nothing without a home. A relative
/// $XDG_CONFIG_HOME does not count.
std::optional<std::string> configurationFolder();

class XdgFiles final : public Files {
  public:
    explicit XdgFiles(Log& logger) : log(logger) {}

    std::optional<std::string> preferencesFolder() const override;
    bool exists(const std::string& path) const override;
    void createEmpty(const std::string& path) override;

  private:
    Log& log;
};

} // namespace platform::linux
