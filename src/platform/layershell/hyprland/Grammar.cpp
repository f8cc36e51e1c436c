#include "platform/layershell/hyprland/Grammar.h"

#include "platform/json/Parser.h"
#include "platform/session/PhysicalKeys.h"

#include <cstdint>

namespace platform::layershell::hyprland {

namespace {

struct Modifier {
    std::uint32_t flag;
    std::int64_t bit; ///< Hyprland's
    const char* name;
};
constexpr Modifier known[] = {{Shortcut::control, 4, "CTRL"},
                              {Shortcut::option, 8, "ALT"},
                              {Shortcut::shift, 1, "SHIFT"},
                              {Shortcut::command, 64, "SUPER"}};
constexpr std::string_view byCode = "code:";
constexpr std::string_view mark = " by "; // between whose it is and the keys

/// The names of all of them, with blanks between.
std::string keysOf(const Combination& combination) {
    std::string text;
    for (const Modifier& one : known)
        if (combination.modifiers & one.flag) text += std::string(one.name) + " ";
    return text + combination.key;
}

std::int64_t numberIn(const JsonValue& binding, std::string_view name) {
    const JsonValue* const member = binding.member(name);
    const auto* number = member ? std::get_if<std::int64_t>(&member->held) : nullptr;
    return number ? *number : 0;
}

std::string textIn(const JsonValue& binding, std::string_view name) {
    const JsonValue* const member = binding.member(name);
    const auto* text = member ? std::get_if<std::string>(&member->held) : nullptr;
    return text ? *text : std::string();
}

} // namespace

std::optional<Combination> combinationOf(const Shortcut& shortcut) {
    const auto* const key = session::physicalKey(shortcut.keyCode);
    if (!key) return std::nullopt;
    return Combination{shortcut.modifierFlags,
                       std::string(byCode) + std::to_string(key->keycode())};
}

bool Bound::isOf(const Combination& combination) const {
    std::int64_t mask = 0;
    for (const Modifier& one : known)
        if (combination.modifiers & one.flag) mask |= one.bit;
    if (mask != modifiers) return false;
    if (!combination.key.starts_with(byCode)) return session::isSameName(key, combination.key);
    const int wanted = std::stoi(combination.key.substr(byCode.size()));
    const auto* const place = session::physicalKeyAt(static_cast<std::uint8_t>(wanted));
    return code == wanted || (code == 0 && place && session::isSameName(key, place->name));
}

std::vector<Bound> boundIn(std::string_view answer) {
    const auto all = json::Parser().parse(answer);
    const auto* const list = all ? std::get_if<JsonValue::List>(&all->held) : nullptr;
    std::vector<Bound> found;
    if (!list) return found;
    for (const JsonValue& one : *list)
        found.push_back({numberIn(one, "modmask"), numberIn(one, "keycode"), textIn(one, "key"),
                         textIn(one, "description")});
    return found;
}

std::string Grammar::written(const std::string& keys) const {
    const std::size_t last = keys.rfind(' ');
    if (!isLua && last == std::string::npos) return ", " + keys;
    if (!isLua) return keys.substr(0, last) + "," + keys.substr(last);
    std::string text;
    for (const char letter : keys)
        text += letter == ' ' ? " + " : std::string(1, letter);
    return text;
}

std::string Grammar::bind(const Combination& combination, const std::string& event,
                          const std::string& owner, bool passes) const {
    const std::string keys = keysOf(combination), description = owner + mark.data() + keys;
    if (isLua)
        return "hl.bind(\"" + written(keys) + "\", hl.dsp.event(\"" + event +
               "\"), {description = \"" + description + "\"" +
               (passes ? ", non_consuming = true" : "") + "})";
    return std::string(passes ? "bindnd " : "bindd ") + written(keys) + ", " + description +
           ", event, " + event;
}

std::string Grammar::unbind(const std::string& keys) const {
    return isLua ? "hl.unbind(\"" + written(keys) + "\")" : "unbind " + written(keys);
}

std::string Grammar::unbind(const Combination& combination) const {
    return unbind(keysOf(combination));
}

std::optional<std::string> Grammar::unbind(const Bound& bound, const std::string& owner) const {
    const std::string beginning = owner + mark.data();
    if (!bound.description.starts_with(beginning)) return std::nullopt;
    return unbind(bound.description.substr(beginning.size()));
}

std::string Grammar::request(const std::vector<std::string>& statements) const {
    std::string text = isLua ? "eval" : statements.size() > 1 ? "[[BATCH]]" : "";
    for (const std::string& one : statements) {
        if (!isLua && &one != &statements.front()) text += ";";
        text += isLua ? " " + one : "keyword " + one;
    }
    return text;
}

} // namespace platform::layershell::hyprland
