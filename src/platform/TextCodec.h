#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The encodings of bytes that are texts, by the numbers that they are known under.
enum class TextEncoding : int { ascii = 1, utf8 = 4, latin1 = 5, macRoman = 30 };

/// Encodings and digests, which a library knows. Texts are UTF-8. Any thread.
class TextCodec {
  public:
    virtual ~TextCodec() = default;

    /// The text with each byte that no URL may hold as it is written as "%" and two upper-case
    /// hexadecimal digits, and besides each character of `alsoEscaped`.
    virtual std::string percentEncoded(std::string_view text,
                                       std::string_view alsoEscaped) const = 0;

    /// The MD5 digest of the bytes as 32 lower-case hexadecimal digits.
    virtual std::string md5(std::string_view bytes) const = 0;

    /// The bytes that a base64 text stands for. Characters outside the alphabet are passed over.
    virtual std::string base64Decoded(std::string_view text) const = 0;

    /// The text that the bytes are; nothing where they are none in that encoding.
    virtual std::optional<std::string> decoded(std::string_view bytes,
                                               TextEncoding encoding) const = 0;

    /// The text as bytes; nothing where the encoding lacks one of its characters.
    virtual std::optional<std::string> encoded(std::string_view text,
                                               TextEncoding encoding) const = 0;

    /// The text that a zero-terminated string of the system's libraries is, whose encoding is the
    /// system's own: the bytes up to the first zero, with U+FFFD for what they do not say.
    virtual std::string fromCString(std::string_view bytes) const = 0;
};

} // namespace platform
