#pragma once

#include "platform/HotKeys.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::layershell::hyprland {

/// Keys that are pressed together.
struct Combination {
    std::uint32_t modifiers = 0; ///< flags of `Shortcut`
    std::string key;             ///< "code:67" by its place on the keyboard, or a keysym's name
};
/// Nothing for a key that no keyboard here has.
std::optional<Combination> combinationOf(const Shortcut& shortcut);

/// A combination that somebody has bound.
struct Bound {
    std::int64_t modifiers = 0; ///< Hyprland's own flags
    std::int64_t code = 0;      ///< XKB's key code; 0 where it is bound by name
    std::string key;
    std::string description;

    bool isOf(const Combination& combination) const;
};
/// From the answer to `j/binds`; none where it is cut, or no such answer.
std::vector<Bound> boundIn(std::string_view answer);

/// How bindings are asked for: in the grammar of the file that Hyprland is configured by, which is
/// in Lua from its release 0.55 on.
class Grammar {
  public:
    explicit Grammar(bool lua) : isLua(lua) {}

    /// Asks which one is spoken.
    static constexpr const char* question = "eval return";
    static Grammar spokenIn(std::string_view answer) { return Grammar(answer == "ok"); }

    /// The combination tells an event. With `passes` the focused window gets the key, too. The
    /// description of what is bound says whose it is, and how it is unbound: what it is bound by is
    /// not told for a key by its place.
    std::string bind(const Combination& combination, const std::string& event,
                     const std::string& owner, bool passes) const;
    std::string unbind(const Combination& combination) const;
    /// Nothing for what is not the owner's.
    std::optional<std::string> unbind(const Bound& bound, const std::string& owner) const;
    /// Several of these at once.
    std::string request(const std::vector<std::string>& statements) const;

  private:
    std::string written(const std::string& keys) const;
    std::string unbind(const std::string& keys) const;

    bool isLua;
};

} // namespace platform::layershell::hyprland
