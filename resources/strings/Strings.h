#pragma once

#include <span>
#include <string_view>

// The texts that a person reads, by key and language. A placeholder is "%@" for a text and "%d" for
// a number.

namespace strings {

struct Text {
    std::string_view key;
    std::string_view text;
};

/// The table of a bare language code ("en", "it"); empty for a language without one.
std::span<const Text> table(std::string_view language);

/// The text of a key, or the key itself where the language has none.
std::string_view lookUp(std::string_view language, std::string_view key);

} // namespace strings
