#include "platform/Value.h"

#include <algorithm>
#include <limits>

namespace platform {

namespace {

std::string_view withoutLeading(std::string_view text, std::string_view characters) {
    const auto start = text.find_first_not_of(characters);
    return start == std::string_view::npos ? std::string_view{} : text.substr(start);
}

constexpr std::string_view blanks = " \t\n\r\v\f";

bool textIsTrue(std::string_view text) {
    text = withoutLeading(text, blanks);
    if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
    text = withoutLeading(text, "0");
    return !text.empty() &&
           std::string_view("YyTt123456789").find(text[0]) != std::string_view::npos;
}

int clampToInt(std::int64_t number) {
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

int leadingInteger(std::string_view text) {
    text = withoutLeading(text, blanks);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::int64_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9' || number > std::numeric_limits<int>::max()) break;
        number = number * 10 + (c - '0');
    }
    return clampToInt(negative ? -number : number);
}

} // namespace

bool boolValue(const Value& value) {
    if (const auto* flag = std::get_if<bool>(&value.held)) return *flag;
    if (const auto* number = std::get_if<std::int64_t>(&value.held)) return *number != 0;
    if (const auto* text = std::get_if<std::string>(&value.held)) return textIsTrue(*text);
    return false;
}

int intValue(const Value& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value.held)) return clampToInt(*number);
    if (const auto* flag = std::get_if<bool>(&value.held)) return *flag ? 1 : 0;
    if (const auto* text = std::get_if<std::string>(&value.held)) return leadingInteger(*text);
    return 0;
}

std::optional<std::string_view> stringValue(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value.held)) return *text;
    return std::nullopt;
}

} // namespace platform
