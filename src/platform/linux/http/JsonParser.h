#pragma once

#include "platform/Json.h"

namespace platform::linux {

class JsonParser final : public Json {
  public:
    std::optional<JsonValue> parse(std::string_view text) const override;
};

} // namespace platform::linux
