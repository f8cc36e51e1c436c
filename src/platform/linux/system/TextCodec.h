#pragma once

#include "platform/TextCodec.h"

namespace platform::linux {

class TextCodec final : public platform::TextCodec {
  public:
    std::string percentEncoded(std::string_view text, std::string_view alsoEscaped) const override;
    std::string md5(std::string_view bytes) const override;
    std::string base64Decoded(std::string_view text) const override;
    std::optional<std::string> decoded(std::string_view bytes,
                                       TextEncoding encoding) const override;
    std::optional<std::string> encoded(std::string_view text, TextEncoding encoding) const override;
    std::string fromCString(std::string_view bytes) const override;
};

} // namespace platform::linux
