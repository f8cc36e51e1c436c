#pragma once

#include <string>

namespace palisor {

/// The text with its first "%d" replaced by the number; unchanged when it has none.
inline std::string formatted(std::string text, int number) {
    if (const auto at = text.find("%d"); at != std::string::npos)
        text.replace(at, 2, std::to_string(number));
    return text;
}

} // namespace palisor
