#pragma once

#include <optional>
#include <span>
#include <string>
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

/// What a product shows in the place of a text, by its command's name; in the place of one that the
/// program has in English alone the whole text is the key. An empty name stands for every product.
struct Wording {
    std::string_view product;
    Text text;
};

/// Those of a bare language code; empty for a language without any.
std::span<const Wording> wordings(std::string_view language);

/// The wording of a key in a product, and its text where there is none.
std::string_view wordingOf(std::string_view product, std::string_view language,
                           std::string_view key);

/// The text of a key for a shell that shows a switch in the place of the panel's icon: nothing
/// where the key's text does not tell of the icon.
std::optional<std::string> wordingWithSwitch(std::string_view product, std::string_view language,
                                             std::string_view key);

} // namespace strings
