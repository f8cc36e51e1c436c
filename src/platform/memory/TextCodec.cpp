#include "platform/memory/TextCodec.h"

namespace platform::memory {

namespace {

// Letters and digits, and what RFC 3986 calls unreserved and reserved but for the brackets and the
// number sign, which may stand in few places only.
constexpr std::string_view legal = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                   "-._~:/?@!$&'()*+,;=";
constexpr std::string_view digits = "0123456789ABCDEF";

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

} // namespace platform::memory
