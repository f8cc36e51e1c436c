#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Encodings of text, which a library knows. Texts are UTF-8. Any thread.
class TextCodec {
  public:
    virtual ~TextCodec() = default;

    /// The text with each byte that no URL may hold as it is written as "%" and two upper-case
    /// hexadecimal digits, and besides each character of `alsoEscaped`.
    virtual std::string percentEncoded(std::string_view text,
                                       std::string_view alsoEscaped) const = 0;
};

} // namespace platform
