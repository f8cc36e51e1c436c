#pragma once

#include "platform/Json.h"

namespace platform::memory {

class JsonParser final : public platform::Json {
  public:
    std::optional<JsonValue> parse(std::string_view text) const override;
};

} // namespace platform::memory
