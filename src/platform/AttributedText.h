#pragma once

#include <string>

namespace platform {

enum class TextColour { standard, blue };

/// A text with one look from end to end.
struct AttributedText {
    std::string text{};
    std::string link{}; ///< the address that it leads to; empty for none
    TextColour colour = TextColour::standard;
    bool underlined = false; ///< by a single line

    bool operator==(const AttributedText&) const = default;
};

} // namespace platform
