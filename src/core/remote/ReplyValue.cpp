#include "remote/ReplyValue.h"

#include "platform/Value.h"
#include "util/Format.h"

#include <algorithm>
#include <limits>

namespace palisor {

namespace {

/// As the settings read it, for the types that they have as well.
platform::Value toSetting(const platform::JsonValue* value) {
    if (value != nullptr) {
        if (const auto* text = std::get_if<std::string>(&value->held))
            return platform::Value{*text};
        if (const auto* number = std::get_if<std::int64_t>(&value->held))
            return platform::Value{*number};
        if (const auto* flag = std::get_if<bool>(&value->held)) return platform::Value{*flag};
    }
    return platform::Value{false};
}

const double* fraction(const platform::JsonValue* value) {
    return value == nullptr ? nullptr : std::get_if<double>(&value->held);
}

} // namespace

std::optional<std::string> replyText(const platform::JsonValue* value) {
    if (value == nullptr) return std::nullopt;
    if (const auto* text = std::get_if<std::string>(&value->held)) return *text;
    if (const auto* number = std::get_if<std::int64_t>(&value->held))
        return std::to_string(*number);
    if (const auto* number = std::get_if<double>(&value->held)) return shortest(*number);
    return std::nullopt;
}

bool replyBool(const platform::JsonValue* value) {
    if (const double* number = fraction(value)) return *number != 0;
    return platform::boolValue(toSetting(value));
}

int replyInt(const platform::JsonValue* value) {
    using Limits = std::numeric_limits<int>;
    if (const double* number = fraction(value))
        return static_cast<int>(std::clamp(*number, double{Limits::min()}, double{Limits::max()}));
    return platform::intValue(toSetting(value));
}

} // namespace palisor
