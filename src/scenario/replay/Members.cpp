#include "scenario/replay/Members.h"

#include "platform/memory/Json.h"

#include <algorithm>
#include <limits>

namespace palisor::replay {

namespace {

[[noreturn]] void fail(const std::string& what, std::string_view mustBe) {
    throw StepError(what + " must be " + std::string(mustBe));
}

std::vector<double> numbers(const Json& value, std::size_t count, const std::string& what,
                            std::string_view mustBe) {
    if (!value.is_array() || value.size() != count ||
        !std::ranges::all_of(value, [](const Json& item) { return item.is_number(); }))
        fail(what, mustBe);
    return value.get<std::vector<double>>();
}

} // namespace

std::string inQuotes(std::string_view text) {
    std::string out;
    platform::memory::writeJson(out, text);
    return out;
}

double toNumber(const Json& value, const std::string& what) {
    if (!value.is_number()) fail(what, "a number");
    return value.get<double>();
}

std::int64_t toInteger(const Json& value, const std::string& what) {
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    if (!value.is_number_integer() ||
        (value.is_number_unsigned() && value.get<std::uint64_t>() > most))
        fail(what, "an integer");
    return value.get<std::int64_t>();
}

bool toBoolean(const Json& value, const std::string& what) {
    if (!value.is_boolean()) fail(what, "true or false");
    return value.get<bool>();
}

std::string toText(const Json& value, const std::string& what) {
    if (!value.is_string()) fail(what, "a text");
    return value.get<std::string>();
}

platform::Point toPoint(const Json& value, const std::string& what) {
    const auto n = numbers(value, 2, what, "a point [x, y]");
    return {n[0], n[1]};
}

platform::Rect toRect(const Json& value, const std::string& what) {
    const auto n = numbers(value, 4, what, "a rectangle [x, y, width, height]");
    return {n[0], n[1], n[2], n[3]};
}

const Json& toList(const Json& value, const std::string& what) {
    if (!value.is_array()) fail(what, "a list");
    return value;
}

const Json& toObject(const Json& value, const std::string& what) {
    if (!value.is_object()) fail(what, "an object");
    return value;
}

Members::Members(const Json& membersOf, std::string placeInErrors)
    : object(membersOf), place(std::move(placeInErrors)) {}

const Json* Members::find(std::string_view name) {
    asked.emplace(name);
    const auto found = object.find(name);
    return found == object.end() ? nullptr : &*found;
}

const Json& Members::get(std::string_view name) {
    const Json* value = find(name);
    if (value == nullptr) throw StepError("member " + describe(name) + " is missing");
    return *value;
}

std::int64_t Members::integer(std::string_view name, std::int64_t least, std::int64_t most) {
    const std::int64_t number = integer(name);
    if (number < least || number > most)
        fail(describe(name),
             "an integer from " + std::to_string(least) + " to " + std::to_string(most));
    return number;
}

std::vector<std::string> Members::texts(std::string_view name) {
    std::vector<std::string> items;
    for (const Json& item : toList(get(name), describe(name)))
        items.push_back(toText(item, "each item of " + describe(name)));
    return items;
}

std::size_t Members::oneOf(std::string_view name, const std::vector<std::string_view>& words) {
    const std::string word = text(name);
    const auto found = std::ranges::find(words, word);
    if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
    std::string list;
    for (const std::string_view possible : words)
        (list += list.empty() ? "" : ", ") += inQuotes(possible);
    throw StepError(describe(name) + " must be one of " + list + ", not " + inQuotes(word));
}

void Members::finish() const {
    for (const auto& [name, value] : object.items())
        if (!asked.contains(name)) throw StepError("unknown member " + describe(name));
}

} // namespace palisor::replay
