#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

// The products of the family by the names of their commands and folders.

namespace products {

inline constexpr std::array<std::string_view, 7> names = {
    "palisor", "vellumor", "quenlow", "orbisant", "stay-awake", "crosshair", "calendar-alerts"};

inline bool contain(std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

/// "palisor, vellumor, ..."
inline std::string list() {
    std::string text;
    for (const auto name : names) {
        if (!text.empty()) text += ", ";
        text += name;
    }
    return text;
}

/// As the commands are named: people write a product's name as they read it.
inline std::string named(std::string_view name) {
    std::string small(name);
    for (char& letter : small)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    return small;
}

/// The product that a program called by that path is to be: its own name, unless it is `program`'s.
inline std::string calledBy(std::string_view path, std::string_view program) {
    const auto name = path.substr(path.find_last_of('/') + 1);
    return std::string(name == program ? names[0] : name);
}

} // namespace products
