#include "platform/memory/TextCodec.h"

#include "platform/memory/Utf8.h"

#include <cstdint>

namespace platform::memory {

namespace {

// Letters and digits, and what RFC 3986 calls unreserved and reserved but for the brackets and the
// number sign, which may stand in few places only.
constexpr std::string_view legal = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                   "-._~:/?@!$&'()*+,;=";
constexpr std::string_view digits = "0123456789ABCDEF";
constexpr std::string_view base64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The characters of Mac OS Roman from 0x80 on; the last but fifteen is the maker's own sign.
constexpr std::string_view upperMacRoman =
    "ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
    "¿¡¬√ƒ≈∆«»…\u00a0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uf8ffÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";

std::u32string charactersOf(std::string_view utf8) {
    std::u32string characters;
    while (const auto next = firstCharacter(utf8)) {
        characters += next->code;
        utf8.remove_prefix(next->length);
    }
    return characters;
}

/// What the bytes of an encoding with one byte a character stand for.
std::u32string tableOf(TextEncoding encoding) {
    std::u32string table;
    const char32_t plain = encoding == TextEncoding::latin1 ? 0x100 : 0x80;
    for (char32_t code = 0; code < plain; ++code)
        table += code;
    return encoding == TextEncoding::macRoman ? table + charactersOf(upperMacRoman) : table;
}

} // namespace

std::string TextCodec::percentEncoded(std::string_view text, std::string_view alsoEscaped) const {
    std::string encoded;
    for (const char c : text) {
        if (legal.find(c) != legal.npos && alsoEscaped.find(c) == alsoEscaped.npos) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += {'%', digits[byte >> 4], digits[byte & 0xf]};
    }
    return encoded;
}

std::string TextCodec::base64Decoded(std::string_view text) const {
    std::string bytes;
    std::uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        const auto digit = base64Digits.find(c);
        if (digit == base64Digits.npos) continue;
        bits = bits << 6 | static_cast<std::uint32_t>(digit);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xff);
    }
    return bytes;
}

std::optional<std::string> TextCodec::decoded(std::string_view bytes, TextEncoding encoding) const {
    if (encoding == TextEncoding::utf8) return encoded(bytes, encoding);
    const std::u32string table = tableOf(encoding);
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= table.size()) return std::nullopt;
        appendUtf8(text, table[byte]);
    }
    return text;
}

std::optional<std::string> TextCodec::encoded(std::string_view text, TextEncoding encoding) const {
    const std::u32string table = tableOf(encoding);
    std::string bytes;
    for (std::string_view left = text; !left.empty();) {
        const auto next = firstCharacter(left);
        if (!next) return std::nullopt;
        left.remove_prefix(next->length);
        if (encoding == TextEncoding::utf8) continue;
        const auto byte = table.find(next->code);
        if (byte == table.npos) return std::nullopt;
        bytes += static_cast<char>(byte);
    }
    return encoding == TextEncoding::utf8 ? std::string(text) : bytes;
}

std::string TextCodec::fromCString(std::string_view bytes) const {
    std::string text;
    bytes = bytes.substr(0, bytes.find('\0'));
    while (!bytes.empty()) {
        const auto next = firstCharacter(bytes);
        appendUtf8(text, next ? next->code : U'\ufffd');
        bytes.remove_prefix(next ? next->length : 1);
    }
    return text;
}

} // namespace platform::memory
