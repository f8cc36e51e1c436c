#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The typed values of the settings store and of the information dictionary. A string "1", a
// boolean and the number 1 are three different values; the readers below convert only where a
// caller asks for it.

namespace platform {

struct Value;
using Data = std::vector<std::uint8_t>;
using Dictionary = std::map<std::string, Value, std::less<>>;

struct Value {
    std::variant<std::string, bool, std::int64_t, Data, Dictionary> held;

    bool operator==(const Value&) const = default;
};

/// A boolean as it is, a number as "not zero". A string is true when, behind leading blanks, a sign
/// and zeros, it goes on with Y, y, T, t or a digit from 1 to 9. Anything else is false.
bool boolValue(const Value& value);

/// A number or boolean as it is; a string by its leading decimal digits ("12 s" is 12, "abc" is 0),
/// held at the 32-bit limits. Anything else is 0.
int intValue(const Value& value);

/// The text of a string value. Nothing for a value of another type: a number is not its digits.
/// The view lives as long as the value.
std::optional<std::string_view> stringValue(const Value& value);

} // namespace platform
