#pragma once

#include "platform/Value.h"

#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

// The settings that a user can change, in one table: what the program registers as defaults, what
// it lists and accepts from outside, and what its manual says come from here.

namespace palisor {

/// Some of the family's products, by their numbers, or all of them.
struct Products {
    unsigned bits = ~0U;

    constexpr Products() = default;
    constexpr Products(std::initializer_list<int> variants) : bits(0) {
        for (const int variant : variants)
            bits |= 1U << static_cast<unsigned>(variant);
    }
    constexpr bool contains(int variant) const {
        return bits == ~0U ||
               (variant >= 0 && variant < 32 && (bits >> static_cast<unsigned>(variant) & 1U) != 0);
    }
};

struct Setting {
    enum class Kind {
        flag,     ///< "on" or "off"
        number,   ///< a whole number
        text,     ///< any words
        shortcut, ///< a key combination as the menu writes it, or "none"
    };
    enum class Unit { none, percent, seconds };
    /// How the settings file holds it; the two forms are never mixed for one key.
    enum class Form { typed, string };
    /// Where its default comes from.
    enum class Origin {
        none,       ///< it has none: it reads as off, 0 or nothing
        registered, ///< registered at each start
        firstRun,   ///< written by the first run
    };

    std::string_view key;  ///< as stored
    std::string_view name; ///< as users write it
    Kind kind = Kind::flag;
    Form form = Form::typed;
    Origin origin = Origin::registered;
    std::string_view standard{}; ///< the default, as stored but in text: "1", "50", "Pop"
    Products standardIn{};       ///< the products that have that default
    Products products{};         ///< the products that have the setting
    int least = 0;               ///< of a number, as stored; both belong to the range
    int most = 0;
    Unit unit = Unit::none; ///< percent are of `most`
    bool inverted = false;  ///< it is on where a 0 is stored
    std::string_view meaning{};

    bool hasStandard(int variant) const {
        return origin != Origin::none && standardIn.contains(variant);
    }
    /// The default in its stored form.
    platform::Value standardValue() const;

    // In the user's units, as text that is taken back. A shortcut is told by who knows the keys:
    // here each is "none".

    /// Null for what is not stored.
    std::string shown(const platform::Value* stored) const;
    /// What the product reads where nobody has set it.
    std::string shownStandard(int variant) const;
    /// The first and the last number that is taken.
    std::pair<int, int> range() const;
};

/// All of them; defaults are registered, and written by the first run, in this order.
std::span<const Setting> settingsTable();

/// By its key or by its readable name; null for neither.
const Setting* findSetting(std::string_view keyOrName);

} // namespace palisor
