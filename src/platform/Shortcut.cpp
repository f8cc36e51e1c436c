#include "platform/HotKeys.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

// Virtual key codes of F1 to F20.
constexpr std::array<std::uint16_t, 20> functionKeys = {
    122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79, 80, 90};

struct Modifier {
    std::string_view name; ///< in lower case
    std::uint32_t flag;
};

constexpr std::array modifierNames = std::to_array<Modifier>({
    {"ctrl", Shortcut::control},
    {"control", Shortcut::control},
    {"alt", Shortcut::option},
    {"option", Shortcut::option},
    {"shift", Shortcut::shift},
    {"super", Shortcut::command},
    {"meta", Shortcut::command},
    {"win", Shortcut::command},
    {"cmd", Shortcut::command},
    {"command", Shortcut::command},
});

/// Nothing for no name of a modifier.
std::optional<std::uint32_t> modifierNamed(std::string_view name) {
    const auto isSame = [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b;
    };
    for (const Modifier& one : modifierNames)
        if (std::ranges::equal(name, one.name, isSame)) return one.flag;
    return std::nullopt;
}

constexpr std::uint32_t eachModifier[] = {Shortcut::control, Shortcut::option, Shortcut::shift,
                                          Shortcut::command};

/// Takes a modifier off the text's beginning, by a name and "+" or as the keyboard labels it; 0 for
/// none.
std::uint32_t takeModifier(std::string_view& text, const HotKeys& hotKeys) {
    for (const std::uint32_t flag : eachModifier) {
        const std::string label = hotKeys.modifierFlagsString({0, flag});
        if (label.empty() || !text.starts_with(label) || text.size() == label.size()) continue;
        text.remove_prefix(label.size());
        return flag;
    }
    const auto plus = text.find('+');
    if (plus == std::string_view::npos || plus + 1 == text.size()) return 0;
    const auto named = modifierNamed(text.substr(0, plus));
    if (!named) return 0;
    text.remove_prefix(plus + 1);
    return *named;
}

} // namespace

bool Shortcut::isFunctionKey(std::uint16_t keyCode) {
    return std::ranges::find(functionKeys, keyCode) != functionKeys.end();
}

bool Shortcut::isTyping() const {
    const std::uint32_t held = modifierFlags & modifiers;
    return held == 0 || (held == shift && !isFunctionKey(keyCode));
}

std::optional<Shortcut> shortcutNamed(std::string_view text, const HotKeys& hotKeys) {
    Shortcut shortcut;
    while (const std::uint32_t flag = takeModifier(text, hotKeys))
        shortcut.modifierFlags |= flag;
    const auto key = hotKeys.keyCodeNamed(text);
    if (!key) return std::nullopt;
    shortcut.keyCode = *key;
    return shortcut;
}

std::optional<Shortcut> Shortcut::fromValue(const Value* value) {
    const auto* stored = value == nullptr ? nullptr : std::get_if<Dictionary>(&value->held);
    if (stored == nullptr) return std::nullopt;
    const auto number = [stored](std::string_view key) -> const std::int64_t* {
        const auto found = stored->find(key);
        return found == stored->end() ? nullptr : std::get_if<std::int64_t>(&found->second.held);
    };
    const std::int64_t* keyCode = number("keyCode");
    const std::int64_t* flags = number("modifierFlags");
    constexpr std::int64_t mostKeyCode = 0xffff, mostFlags = 0xffffffff;
    if (keyCode == nullptr || flags == nullptr || *keyCode < 0 || *keyCode > mostKeyCode ||
        *flags < 0 || *flags > mostFlags)
        return std::nullopt;
    return Shortcut{static_cast<std::uint16_t>(*keyCode), static_cast<std::uint32_t>(*flags)};
}

Value Shortcut::toValue() const {
    return Value{Dictionary{{"keyCode", Value{std::int64_t{keyCode}}},
                            {"modifierFlags", Value{std::int64_t{modifierFlags}}}}};
}

} // namespace platform
