#pragma once

#include "platform/sway/connection/ConfigurationText.h"

#include <cstdint>

namespace platform::sway {

/// A combination of keys that the user has bound in the mode that is in force at first.
struct Binding {
    std::uint32_t modifiers = 0;   ///< of XKB's eight: Shift 1, Lock 2, Control 4, Mod1 8 ...
    std::vector<std::string> keys; ///< numbers of XKB, or names of symbols
    bool isByCode = false;         ///< whether they are numbers
    bool isOnRelease = false;
    std::string device = "*";
    bool operator==(const Binding&) const = default;
    /// Whether it is one symbol, of any keyboard.
    bool isSymbol() const { return !isByCode && keys.size() == 1 && device == "*"; }
};

/// What the user has configured and the program changes for a time, and what it leaves alone. What
/// the user has changed since by commands is not known, since the compositor tells nobody.
class UserConfiguration {
  public:
    UserConfiguration() = default;
    explicit UserConfiguration(const ConfigurationFile& main,
                               const FindIncluded& find = includedFrom);

    /// The commands that map the devices of a kind ("type:pointer") and those with a name of their
    /// own, in their order. Where they map none of that kind, `unmapped` goes before them.
    std::string mappingOf(const std::string& kind, const std::string& unmapped) const;

    /// The commands that have the cursors hide as the user wants it.
    std::string cursorHiding() const;

    /// Whether the user says which seat has the devices that no rule names.
    bool choosesFallbackSeat() const { return hasFallbackSeat; }

    const std::vector<Binding>& bindings() const { return bound; }
    /// Whether a key is bound with these modifiers; it is known by its number and the names that
    /// its symbols may have.
    bool binds(std::uint32_t modifiers, std::uint32_t keycode, const Words& symbols = {}) const;

  private:
    struct Rule {
        std::string subject; ///< of which devices or seats
        std::string words;   ///< to be run for it
    };
    void take(const Words& words);
    void bind(Words words);

    std::vector<Rule> mappings, hidings;
    std::vector<Binding> bound;
    bool hasFallbackSeat = false;
};

/// Nothing for a word that is none of the compositor's names of modifiers.
std::uint32_t modifierNamed(std::string_view word);

} // namespace platform::sway
