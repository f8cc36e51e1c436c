#pragma once

#include <algorithm>
#include <string>

/// One line that a terminal shows and does not obey: what users typed, or others sent, is repeated
/// in it. Any encoding stays.
inline std::string printable(std::string text) {
    constexpr unsigned char firstLetter = ' ', deleted = 0x7f;
    std::ranges::replace_if(
        text, [](unsigned char letter) { return letter < firstLetter || letter == deleted; }, '?');
    return text;
}
