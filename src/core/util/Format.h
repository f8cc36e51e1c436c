#pragma once

#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace palisor {

/// The text with the first occurrence of `placeholder` replaced; unchanged when it has none.
inline std::string withReplaced(std::string text, std::string_view placeholder,
                                std::string_view value) {
    if (const auto at = text.find(placeholder); at != std::string::npos)
        text.replace(at, placeholder.size(), value);
    return text;
}

/// The shortest text that reads back the same.
inline std::string shortest(double number) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

/// The text with its first "%d" replaced by the number.
inline std::string formatted(std::string text, int number) {
    return withReplaced(std::move(text), "%d", std::to_string(number));
}

/// The text with its first "%@" replaced by the value.
inline std::string formatted(std::string text, std::string_view value) {
    return withReplaced(std::move(text), "%@", value);
}

} // namespace palisor
