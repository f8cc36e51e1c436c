#include "platform/linux/http/JsonParser.h"

#include "platform/JsonBuilder.h"

#include <nlohmann/json.hpp>

namespace platform::linux {

std::optional<JsonValue> JsonParser::parse(std::string_view text) const {
    // The library takes a zero byte for the end of the text.
    if (text.find('\0') != text.npos) return std::nullopt;
    JsonBuilder builder;
    if (!nlohmann::json::sax_parse(text, &builder)) return std::nullopt;
    return std::move(builder).take();
}

} // namespace platform::linux
