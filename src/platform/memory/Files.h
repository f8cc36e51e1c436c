#pragma once

#include "platform/Files.h"
#include "platform/memory/Bundle.h"
#include "platform/memory/Settings.h"

#include <set>

namespace platform::memory {

/// Files by name, without contents. The settings file is there once the settings have been saved.
class Files final : public platform::Files {
  public:
    Files(const Bundle& ownBundle, const Settings& ownSettings)
        : bundle(ownBundle), settings(ownSettings) {}

    std::optional<std::string> preferencesFolder() const override { return folder; }
    bool exists(const std::string& path) const override;
    void createEmpty(const std::string& path) override { made.insert(path); }

    void removePreferencesFolder() { folder = std::nullopt; }

  private:
    const Bundle& bundle;
    const Settings& settings;
    std::optional<std::string> folder = "/memory/Preferences";
    std::set<std::string> made;
};

} // namespace platform::memory
