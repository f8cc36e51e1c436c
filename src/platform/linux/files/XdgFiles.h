#pragma once

#include "platform/Files.h"
#include "platform/Log.h"

namespace platform::linux {

/// $XDG_CONFIG_HOME, or .config in the home folder; nothing without a home. A relative
/// $XDG_CONFIG_HOME does not count.
std::optional<std::string> configurationFolder();

/// The program's folder for what lasts no longer than the user's session, such as locks: in
/// $XDG_RUNTIME_DIR, or, where there is none, one for the user alone among the temporary files. It
/// is made when it is missing; nothing where it cannot be made, or is not the user's alone.
std::optional<std::string> runtimeFolder();

class XdgFiles final : public Files {
  public:
    explicit XdgFiles(Log& logger) : log(logger) {}

    std::optional<std::string> preferencesFolder() const override;
    bool exists(const std::string& path) const override;
    std::optional<std::string> documentsFolder() const override;
    std::optional<std::string> downloadsFolder() const override;
    std::optional<std::string> desktopFolder() const override;
    bool makeFolder(const std::string& path) override;
    bool write(const std::string& path, std::string_view bytes) override;
    void createEmpty(const std::string& path) override;

  private:
    Log& log;
};

} // namespace platform::linux
