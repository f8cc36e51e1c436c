#include "strings/Strings.h"

#include "strings/Tables.h"

#include <algorithm>

namespace strings {

std::span<const Text> table(std::string_view language) {
    if (language == "en") return english;
    if (language == "it") return italian;
    return {};
}

std::string_view lookUp(std::string_view language, std::string_view key) {
    const auto texts = table(language);
    const auto found = std::ranges::find(texts, key, &Text::key);
    return found == texts.end() ? key : found->text;
}

} // namespace strings
