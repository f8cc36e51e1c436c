#pragma once

#include "platform/Files.h"
#include "platform/memory/Bundle.h"
#include "platform/memory/Settings.h"

#include <map>
#include <set>

namespace platform::memory {

/// Files by name, and the user's folders. The settings file is there once the settings have been
/// saved.
class Files final : public platform::Files {
  public:
    Files(const Bundle& ownBundle, const Settings& ownSettings)
        : bundle(ownBundle), settings(ownSettings) {}

    std::optional<std::string> preferencesFolder() const override { return folder; }
    bool exists(const std::string& path) const override;
    std::optional<std::string> documentsFolder() const override { return inHome("Documents"); }
    std::optional<std::string> downloadsFolder() const override { return inHome("Downloads"); }
    std::optional<std::string> desktopFolder() const override { return inHome("Desktop"); }
    bool makeFolder(const std::string& path) override;
    bool write(const std::string& path, std::string_view bytes) override;
    void createEmpty(const std::string& path) override { files.emplace(path, std::string()); }

    void removePreferencesFolder() { folder = std::nullopt; }

    /// Where the user's folders are from now on; nothing for a user without any.
    void setHome(std::optional<std::string> path) { home = std::move(path); }

    /// What a file holds; nothing where there is none.
    std::optional<std::string> contents(const std::string& path) const;

  private:
    std::optional<std::string> inHome(const std::string& name) const;

    const Bundle& bundle;
    const Settings& settings;
    std::optional<std::string> folder = "/memory/Preferences";
    std::optional<std::string> home = "/memory/home";
    std::set<std::string> folders{"/"};
    std::map<std::string, std::string> files;
};

} // namespace platform::memory
