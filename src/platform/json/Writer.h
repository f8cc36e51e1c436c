#pragma once

#include "platform/Geometry.h"
#include "platform/Value.h"

#include <concepts>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Compact JSON text: no spaces, raw UTF-8, numbers in the shortest plain notation that reads back
// the same. A general library prints 0.35f as 0.3499999940395355 and 1e21 with an exponent, so the
// few lines that it takes are written here. Every `writeJson` appends to `out`.

namespace platform::json {

/// A whole number of nanoseconds printed as seconds.
struct Seconds {
    std::int64_t nanoseconds = 0;
};

/// Text that is JSON already.
struct Raw {
    std::string text;
};

/// One member of an object; lives no longer than the expression that makes it.
template <class T>
struct Member {
    std::string_view name;
    const T& value;
};
template <class T>
Member(std::string_view, const T&) -> Member<T>;

void writeJson(std::string& out, std::nullptr_t);
void writeJson(std::string& out, double number); ///< null where it is not finite
void writeJson(std::string& out, float number);  ///< the shortest that reads back the same single
void writeJson(std::string& out, Seconds time);
void writeJson(std::string& out, std::string_view text);
void writeJson(std::string& out, const Raw& value);
void writeJson(std::string& out, Point point);
void writeJson(std::string& out, Rect rect);
void writeJson(std::string& out, const Data& data); ///< as base64 text
void writeJson(std::string& out, const Value& value);
template <class T>
void writeJson(std::string& out, const std::vector<T>& items);
template <class Key, class T, class Order>
void writeJson(std::string& out, const std::map<Key, T, Order>& values);

// A template, so that a pointer does not turn into a truth value by itself.
template <std::integral T>
void writeJson(std::string& out, T number) {
    if constexpr (std::same_as<T, bool>)
        out += number ? "true" : "false";
    else
        out += std::to_string(number);
}

template <class T>
void writeJson(std::string& out, const std::optional<T>& value) {
    if (value)
        writeJson(out, *value);
    else
        writeJson(out, nullptr);
}

template <class T>
void writeJson(std::string& out, const std::vector<T>& items) {
    out += '[';
    for (const T& item : items) {
        if (&item != items.data()) out += ',';
        writeJson(out, item);
    }
    out += ']';
}

/// Appends `"name":value`, with a comma where a member goes before it. `out` holds members only, or
/// an object that has just been opened.
template <class T>
void writeMember(std::string& out, std::string_view name, const T& value) {
    if (!out.empty() && out.back() != '{') out += ',';
    writeJson(out, name);
    out += ':';
    writeJson(out, value);
}

template <class Key, class T, class Order>
void writeJson(std::string& out, const std::map<Key, T, Order>& values) {
    out += '{';
    for (const auto& [key, value] : values)
        writeMember(out, key, value);
    out += '}';
}

/// `"name":value` for each, with commas between.
template <class... T>
std::string members(const Member<T>&... each) {
    std::string out;
    (writeMember(out, each.name, each.value), ...);
    return out;
}

/// `object(Member{"at", point})`
template <class... T>
Raw object(const Member<T>&... each) {
    return {'{' + members(each...) + '}'};
}

/// Nothing for an empty text: where empty stands for none.
inline std::optional<std::string_view> orNull(std::string_view text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

} // namespace platform::json
