#pragma once

#include "platform/Geometry.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace palisor::replay {

using Json = nlohmann::json;

/// What is wrong with a step. The text has no line end.
struct StepError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// In quotes, with what would break a line escaped.
std::string inQuotes(std::string_view text);

// Readers of one JSON value. `what` names it in the error that they throw.
double toNumber(const Json& value, const std::string& what);
std::int64_t toInteger(const Json& value, const std::string& what);
bool toBoolean(const Json& value, const std::string& what);
std::string toText(const Json& value, const std::string& what);
platform::Point toPoint(const Json& value, const std::string& what);
platform::Rect toRect(const Json& value, const std::string& what);
const Json& toList(const Json& value, const std::string& what);
const Json& toObject(const Json& value, const std::string& what);

/// The members of one object. Each one is asked for by name, and `finish` finds those that nobody
/// has asked for. Every operation throws StepError.
class Members {
  public:
    /// The object must outlive the reader. `place` goes before the names in errors.
    explicit Members(const Json& object, std::string place = {});

    /// The member, or null where it is absent.
    const Json* find(std::string_view name);
    /// The member, which must be there.
    const Json& get(std::string_view name);

    double number(std::string_view name) { return toNumber(get(name), describe(name)); }
    std::int64_t integer(std::string_view name) { return toInteger(get(name), describe(name)); }
    /// An integer from `least` to `most`.
    std::int64_t integer(std::string_view name, std::int64_t least, std::int64_t most);
    bool boolean(std::string_view name) { return toBoolean(get(name), describe(name)); }
    std::string text(std::string_view name) { return toText(get(name), describe(name)); }
    platform::Point point(std::string_view name) { return toPoint(get(name), describe(name)); }
    std::vector<std::string> texts(std::string_view name);

    /// One of `words`, as its index.
    std::size_t oneOf(std::string_view name, const std::vector<std::string_view>& words);

    bool has(std::string_view name) { return find(name) != nullptr; }

    std::string describe(std::string_view name) const { return place + inQuotes(name); }

    void finish() const;

  private:
    const Json& object;
    std::string place;
    std::set<std::string, std::less<>> asked;
};

} // namespace palisor::replay
