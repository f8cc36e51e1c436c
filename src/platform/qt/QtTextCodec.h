#pragma once

#include "platform/TextCodec.h"

namespace platform::qt {

class QtTextCodec final : public TextCodec {
  public:
    std::string percentEncoded(std::string_view text, std::string_view alsoEscaped) const override;
};

} // namespace platform::qt
