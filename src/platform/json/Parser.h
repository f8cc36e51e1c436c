#pragma once

#include "platform/Json.h"

#include <stdexcept>

namespace platform::json {

/// Why a text was not read, in one line.
struct ParseError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Any value, with at most `deepest` lists and objects inside each other. Throws ParseError.
JsonValue read(std::string_view text, std::size_t deepest);

class Parser final : public Json {
  public:
    std::optional<JsonValue> parse(std::string_view text) const override;
};

} // namespace platform::json
