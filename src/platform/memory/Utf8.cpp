#include "platform/memory/Utf8.h"

#include <array>

namespace platform::memory {

namespace {

constexpr std::array<char32_t, 5> smallestOfLength{0, 0, 0x80, 0x800, 0x10000};

std::size_t lengthFor(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xc0) return 0;
    if (lead < 0xe0) return 2;
    if (lead < 0xf0) return 3;
    return lead < 0xf8 ? 4 : 0;
}

} // namespace

std::optional<Utf8Character> firstCharacter(std::string_view text) {
    if (text.empty()) return std::nullopt;
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lengthFor(lead);
    if (length == 0 || length > text.size()) return std::nullopt;
    char32_t code = length == 1 ? lead : lead & (0x7fU >> length);
    for (const char c : text.substr(1, length - 1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xc0) != 0x80) return std::nullopt;
        code = code << 6 | (byte & 0x3f);
    }
    const bool isSurrogate = code >= 0xd800 && code < 0xe000;
    if (code < smallestOfLength[length] || code > 0x10ffff || isSurrogate) return std::nullopt;
    return Utf8Character{code, length};
}

void appendUtf8(std::string& text, char32_t code) {
    const auto tail = [&text, code](int shift) {
        text += static_cast<char>(0x80 | (code >> shift & 0x3f));
    };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xc0 | code >> 6);
        tail(0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xe0 | code >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xf0 | code >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace platform::memory
