#include "scenario/replay/Members.h"

#include "platform/json/Writer.h"

#include <algorithm>
#include <array>

namespace palisor::replay {

namespace {

std::optional<double> numberIn(const Json& value) {
    if (const auto* integer = std::get_if<std::int64_t>(&value.held))
        return static_cast<double>(*integer);
    const auto* number = std::get_if<double>(&value.held);
    return number == nullptr ? std::nullopt : std::optional(*number);
}

template <std::size_t count>
std::array<double, count> numbersIn(const Json& value, const std::string& what,
                                    std::string_view name) {
    const auto* list = std::get_if<Json::List>(&value.held);
    if (list == nullptr || list->size() != count ||
        !std::ranges::all_of(*list, [](const Json& item) { return numberIn(item).has_value(); }))
        mustBe(what, name);
    std::array<double, count> numbers{};
    std::ranges::transform(*list, numbers.begin(),
                           [](const Json& item) { return *numberIn(item); });
    return numbers;
}

} // namespace

std::string inQuotes(std::string_view text) {
    std::string out;
    platform::json::writeJson(out, text);
    return out;
}

void mustBe(const std::string& what, std::string_view form) {
    throw StepError(what + " must be " + std::string(form));
}

void mustBeLike(const std::string& what, const Json& example) {
    constexpr std::array<std::string_view, 7> forms{
        "null", "true or false", "an integer", "a number", "a text", "a list", "an object"};
    mustBe(what, forms.at(example.held.index()));
}

template <>
double to(const Json& value, const std::string& what) {
    const auto number = numberIn(value);
    if (!number) mustBe(what, "a number");
    return *number;
}

template <>
platform::Point to(const Json& value, const std::string& what) {
    const auto [x, y] = numbersIn<2>(value, what, "a point [x, y]");
    return {x, y};
}

template <>
platform::Rect to(const Json& value, const std::string& what) {
    const auto [x, y, width, height] =
        numbersIn<4>(value, what, "a rectangle [x, y, width, height]");
    return {x, y, width, height};
}

Members::Members(const Json::Object& membersOf, std::string placeInErrors)
    : object(membersOf), place(std::move(placeInErrors)) {}

const Json* Members::find(std::string_view name) {
    asked.emplace(name);
    const auto found = object.find(name);
    return found == object.end() ? nullptr : &found->second;
}

const Json& Members::require(std::string_view name) {
    const Json* value = find(name);
    if (value == nullptr) throw StepError("member " + describe(name) + " is missing");
    return *value;
}

std::int64_t Members::integer(std::string_view name, std::int64_t least, std::int64_t most) {
    const auto number = get<std::int64_t>(name);
    if (number < least || number > most)
        mustBe(describe(name),
               "an integer from " + std::to_string(least) + " to " + std::to_string(most));
    return number;
}

std::vector<std::string> Members::texts(std::string_view name) {
    std::vector<std::string> items;
    for (const Json& item : get<Json::List>(name))
        items.push_back(to<std::string>(item, "each item of " + describe(name)));
    return items;
}

std::size_t Members::oneOf(std::string_view name, std::span<const std::string_view> words) {
    const auto word = get<std::string>(name);
    const auto found = std::ranges::find(words, word);
    if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
    std::string list;
    for (const std::string_view possible : words)
        (list += list.empty() ? "" : ", ") += inQuotes(possible);
    throw StepError(describe(name) + " must be one of " + list + ", not " + inQuotes(word));
}

void Members::finish() const {
    for (const auto& [name, value] : object)
        if (!asked.contains(name)) throw StepError("unknown member " + describe(name));
}

} // namespace palisor::replay
