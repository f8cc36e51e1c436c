#pragma once

#include "platform/Geometry.h"
#include "platform/Json.h"

#include <set>
#include <span>
#include <stdexcept>

namespace palisor::replay {

using Json = platform::JsonValue;

/// What is wrong with a step. The text has no line end.
struct StepError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// In quotes, with what would break a line escaped.
std::string inQuotes(std::string_view text);

/// Throws the StepError that says so.
[[noreturn]] void mustBe(const std::string& what, std::string_view form);
[[noreturn]] void mustBeLike(const std::string& what, const Json& example);

/// Reads a value of JSON; also as a double, a point or a rectangle. `what` names it in the
/// StepError for a value of another type.
template <class T>
T to(const Json& value, const std::string& what) {
    const T* held = std::get_if<T>(&value.held);
    if (held == nullptr) mustBeLike(what, {T{}});
    return *held;
}
template <>
double to(const Json& value, const std::string& what);
template <>
platform::Point to(const Json& value, const std::string& what);
template <>
platform::Rect to(const Json& value, const std::string& what);

/// The members of one object. Each one is asked for by name, and `finish` finds those that nobody
/// has asked for. Every operation throws StepError.
class Members {
  public:
    /// The object must outlive the reader. `place` goes before the names in errors.
    explicit Members(const Json::Object& object, std::string place = {});

    bool has(std::string_view name) { return find(name) != nullptr; }

    /// The member, which must be there.
    template <class T>
    T get(std::string_view name) {
        return to<T>(require(name), describe(name));
    }

    /// The member, where there is one, and `otherwise` where there is none.
    template <class T>
    T get(std::string_view name, T otherwise) {
        return has(name) ? get<T>(name) : otherwise;
    }

    /// An integer from `least` to `most`.
    std::int64_t integer(std::string_view name, std::int64_t least, std::int64_t most);

    std::vector<std::string> texts(std::string_view name);

    /// One of `words`, as its index.
    std::size_t oneOf(std::string_view name, std::span<const std::string_view> words);

    std::string describe(std::string_view name) const { return place + inQuotes(name); }

    void finish() const;

  private:
    const Json* find(std::string_view name);
    const Json& require(std::string_view name);

    const Json::Object& object;
    std::string place;
    std::set<std::string, std::less<>> asked;
};

} // namespace palisor::replay
