#pragma once

#include "platform/TextCodec.h"

namespace platform::memory {

class TextCodec final : public platform::TextCodec {
  public:
    std::string percentEncoded(std::string_view text, std::string_view alsoEscaped) const override;
};

} // namespace platform::memory
