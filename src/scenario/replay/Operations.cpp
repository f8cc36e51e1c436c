#include "scenario/replay/Operations.h"

#include "app/Operations.h"
#include "scenario/replay/Player.h"
#include "util/MacUtils.h"

#include <algorithm>
#include <tuple>
#include <type_traits>
#include <utility>

namespace palisor::replay {

namespace {

using platform::json::Member;

// ---- an argument of each type -----------------------------------------------------------------

template <class T>
T argument(const Player& player, const Json& value, const std::string& what) {
    if constexpr (std::is_pointer_v<T>) {
        if (value != Json{}) mustBe(what, "null");
        return nullptr;
    } else if constexpr (std::is_same_v<T, bool>) {
        const auto* number = std::get_if<std::int64_t>(&value.held);
        return number != nullptr && (*number == 0 || *number == 1) ? *number == 1
                                                                   : to<bool>(value, what);
    } else if constexpr (std::is_same_v<T, ScreenId>) {
        if (value == Json{}) return ScreenId::none;
        const auto screens = player.platform.displays.screens();
        const auto index = to<std::int64_t>(value, what);
        if (index < 0 || index >= std::ssize(screens))
            mustBe(what, "null or the index of a screen");
        return screens[static_cast<std::size_t>(index)].id;
    } else if constexpr (std::is_same_v<T, std::optional<std::string>>) {
        return value == Json{} ? std::nullopt : std::optional(to<std::string>(value, what));
    } else if constexpr (std::is_same_v<T, Json>) {
        // Only what a reply can be reaches the operation that takes one.
        if (value.held.index() < Json{Json::List{}}.held.index())
            mustBe(what, "an object or a list");
        return value;
    } else if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(to<double>(value, what));
    } else if constexpr (std::is_integral_v<T>) {
        const auto number = to<std::int64_t>(value, what);
        if (!std::in_range<T>(number)) throw StepError(what + " is out of range");
        return static_cast<T>(number);
    } else {
        return to<T>(value, what);
    }
}

template <class... T, std::size_t... index>
std::tuple<T...> argumentsOf(const Player& player, const Json::List& list,
                             std::index_sequence<index...>) {
    if (list.size() != sizeof...(T))
        throw StepError("the operation takes " + std::to_string(sizeof...(T)) + " arguments, not " +
                        std::to_string(list.size()));
    return {argument<T>(player, list[index], "argument " + std::to_string(index + 1))...};
}

/// What an argument is kept as until the call.
template <class T>
using Kept = std::conditional_t<std::is_same_v<std::decay_t<T>, std::string_view>, std::string,
                                std::decay_t<T>>;

// ---- operations ---------------------------------------------------------------------------------

/// What the user has pressed or moved cannot be told in JSON.
template <class T>
constexpr bool isSender =
    std::is_same_v<T, MenuItem> || std::is_same_v<T, Slider> || std::is_same_v<T, CheckBox>;

/// Nothing for an operation that takes a sender.
template <class... T>
Action prepare(Player& player, const Json::List& list, auto operation) {
    if constexpr ((isSender<T> || ...)) {
        return {};
    } else {
        auto arguments = argumentsOf<T...>(player, list, std::index_sequence_for<T...>{});
        return [&player, operation, arguments] {
            const auto send = [&](const auto&... each) { return (player.app.*operation)(each...); };
            if constexpr (std::is_void_v<decltype(std::apply(send, arguments))>)
                std::apply(send, arguments);
            else
                player.platform.effects.emit("result",
                                             Member{"value", std::apply(send, arguments)});
        };
    }
}

template <class R, class... T>
Action prepareFor(Player& player, const Json::List& list, R (AppDelegate::*operation)(T...)) {
    return prepare<Kept<T>...>(player, list, operation);
}

template <class R, class... T>
Action prepareFor(Player& player, const Json::List& list, R (AppDelegate::*operation)(T...) const) {
    return prepare<Kept<T>...>(player, list, operation);
}

/// The class operations of MacUtils, which take the services themselves.
constexpr std::pair<std::string_view, void (*)(const platform::Platform&)> classOperations[] = {
    {"fixDefaultsIfNeeded", MacUtils::fixDefaultsIfNeeded},
    {"deleteAllSavedUserDefaults", MacUtils::deleteAllSavedUserDefaults},
};

/// The name in the source: the parts of the selector joined by underscores.
std::string sourceName(std::string_view selector) {
    std::string name(selector.substr(0, selector.find_last_not_of(':') + 1));
    std::ranges::replace(name, ':', '_');
    return name;
}

} // namespace

Action prepareCall(Player& player, const std::string& name, const Json::List& arguments) {
    Action action;
    visitOperations([&](std::string_view selector, auto operation) {
        const bool found = selector == name || sourceName(selector) == name;
        if (found) action = prepareFor(player, arguments, operation);
        return found;
    });
    for (const auto& [known, operation] : classOperations)
        if (known == name) {
            argumentsOf<>(player, arguments, std::index_sequence<>{});
            action = [&player, send = operation] { send(player.services); };
        }
    if (!action) throw StepError("unknown operation " + inQuotes(name));
    return action;
}

} // namespace palisor::replay
