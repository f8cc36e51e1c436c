#pragma once

#include "platform/HotKeys.h"
#include "platform/memory/Settings.h"

#include <map>
#include <vector>

namespace platform::memory {

/// Combinations that are pressed by a call. Labels are those of a plain keyboard.
class HotKeys final : public platform::HotKeys {
  public:
    HotKeys(Effects& stream, const Settings& stored) : effects(stream), settings(stored) {}

    void registerShortcut(const Shortcut& shortcut, std::function<void()> action) override;
    void unregisterShortcut(const Shortcut& shortcut) override;
    void bindShortcut(std::string_view settingsKey, std::function<void()> action) override;
    void breakBinding(std::string_view settingsKey) override;
    std::string modifierFlagsString(const Shortcut& shortcut) const override;
    std::string keyCodeString(const Shortcut& shortcut) const override;
    std::optional<std::uint16_t> keyCodeNamed(std::string_view name) const override;
    Obstacle obstacleTo(const Shortcut& shortcut) override;

    /// From now on another program holds the combination.
    void take(const Shortcut& shortcut) { taken.push_back(shortcut); }

    /// The combinations that are claimed, bound ones apart, in the order of their claiming.
    std::vector<Shortcut> claimed() const;

    /// Runs the action of a combination that is claimed or bound, of one at most.
    void press(const Shortcut& shortcut);

  private:
    struct Registered {
        Shortcut shortcut;
        std::function<void()> action;
    };

    Effects& effects;
    const Settings& settings;
    std::vector<Registered> registered;
    std::vector<Shortcut> taken;                                        ///< by others
    std::map<std::string, std::function<void()>, std::less<>> bindings; ///< by settings key
};

} // namespace platform::memory
