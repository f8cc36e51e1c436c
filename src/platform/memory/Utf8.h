#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace platform::memory {

struct Utf8Character {
    char32_t code = 0;
    std::size_t length = 0; ///< in bytes
};

/// The character that the text begins with; nothing where that is not valid UTF-8, or at the end.
std::optional<Utf8Character> firstCharacter(std::string_view text);

void appendUtf8(std::string& text, char32_t code);

} // namespace platform::memory
