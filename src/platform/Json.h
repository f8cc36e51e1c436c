#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace platform {

/// A value of JSON; `std::monostate` is its null. Texts are UTF-8.
struct JsonValue {
    using List = std::vector<JsonValue>;
    using Object = std::map<std::string, JsonValue, std::less<>>;

    std::variant<std::monostate, bool, std::int64_t, double, std::string, List, Object> held{};

    bool operator==(const JsonValue&) const = default;

    /// The member of an object; null where there is none, and for a value of another type.
    const JsonValue* member(std::string_view name) const;
};

/// A reader of JSON that may come from anybody. Any thread.
class Json {
  public:
    /// Lists and objects inside each other; what is nested deeper is refused.
    static constexpr std::size_t deepest = 32;

    virtual ~Json() = default;

    /// Nothing for a text that is not JSON in valid UTF-8, whose root is neither a list nor an
    /// object, or that is nested too deeply. Of members with one name the last one counts. An
    /// integer beyond 64 bits is a double.
    virtual std::optional<JsonValue> parse(std::string_view text) const = 0;
};

} // namespace platform
