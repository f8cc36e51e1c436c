#pragma once

#include "platform/Value.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A key combination in virtual key codes and modifier flags. Stored as a dictionary of two
/// integers, `keyCode` and `modifierFlags`.
struct Shortcut {
    // Modifier flags.
    static constexpr std::uint32_t shift = 0x20000;
    static constexpr std::uint32_t control = 0x40000;
    static constexpr std::uint32_t option = 0x80000;
    static constexpr std::uint32_t command = 0x100000;
    static constexpr std::uint32_t modifiers = shift | control | option | command;

    std::uint16_t keyCode = 0;
    std::uint32_t modifierFlags = 0;
    bool operator==(const Shortcut&) const = default;

    /// Whether pressing it is mere typing: it has no modifier, or Shift alone without being a
    /// function key. No program may claim such a combination.
    bool isTyping() const;
    static bool isFunctionKey(std::uint16_t keyCode);

    /// Nothing for a value that is not a stored shortcut.
    static std::optional<Shortcut> fromValue(const Value* value);
    Value toValue() const;
};

/// Key combinations that reach the program whatever application is active. Main thread; actions
/// run from the run loop.
class HotKeys {
  public:
    /// What keeps a combination from being chosen.
    enum class Obstacle {
        none,
        fixed, ///< the program itself has it, by `registerShortcut`
        taken, ///< another program holds it
    };

    virtual ~HotKeys() = default;

    /// Whether the combination could be claimed. What is claimed stays as it is.
    virtual Obstacle obstacleTo(const Shortcut& shortcut) = 0;

    /// Claims the combination. One that another program holds stays without effect.
    virtual void registerShortcut(const Shortcut& shortcut, std::function<void()> action) = 0;

    /// Gives back the combination that compares equal; an unknown one is ignored.
    virtual void unregisterShortcut(const Shortcut& shortcut) = 0;

    /// Claims the combination stored under a settings key, and keeps in step with what is stored
    /// there from now on. One that another program holds stays without effect, and is logged. A
    /// second binding of the key replaces the first.
    virtual void bindShortcut(std::string_view settingsKey, std::function<void()> action) = 0;

    /// Ends the binding of a settings key; one that is not bound is ignored.
    virtual void breakBinding(std::string_view settingsKey) = 0;

    /// The modifiers as the user's keyboard labels them, ready to stand before the key; empty when
    /// there is none.
    virtual std::string modifierFlagsString(const Shortcut& shortcut) const = 0;

    /// The key as the user's keyboard labels it.
    virtual std::string keyCodeString(const Shortcut& shortcut) const = 0;

    /// The key that the user's keyboard labels so, in upper or lower case, or that the desktop's
    /// own key names call so ("space", "Page_Up"); nothing for no key.
    virtual std::optional<std::uint16_t> keyCodeNamed(std::string_view name) const = 0;
};

/// A combination as people write it: "Ctrl+Super+K", the modifiers in any order and case, or as the
/// two strings of `hotKeys` make it. Nothing for anything else, and for modifiers alone.
std::optional<Shortcut> shortcutNamed(std::string_view text, const HotKeys& hotKeys);

} // namespace platform
