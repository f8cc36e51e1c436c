#include "platform/memory/HotKeys.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace platform::memory {

namespace {

struct Labelled {
    std::uint16_t keyCode;
    std::string_view label;
};

constexpr std::array labels = std::to_array<Labelled>({
    {0, "A"},    {1, "S"},    {2, "D"},    {3, "F"},    {4, "H"},      {5, "G"},     {6, "Z"},
    {7, "X"},    {8, "C"},    {9, "V"},    {11, "B"},   {12, "Q"},     {13, "W"},    {14, "E"},
    {15, "R"},   {16, "Y"},   {17, "T"},   {18, "1"},   {19, "2"},     {20, "3"},    {21, "4"},
    {22, "6"},   {23, "5"},   {24, "="},   {25, "9"},   {26, "7"},     {27, "-"},    {28, "8"},
    {29, "0"},   {30, "]"},   {31, "O"},   {32, "U"},   {33, "["},     {34, "I"},    {35, "P"},
    {37, "L"},   {38, "J"},   {39, "'"},   {40, "K"},   {41, ";"},     {42, "\\"},   {43, ","},
    {44, "/"},   {45, "N"},   {46, "M"},   {47, "."},   {49, "Space"}, {96, "F5"},   {97, "F6"},
    {98, "F7"},  {99, "F3"},  {100, "F8"}, {101, "F9"}, {103, "F11"},  {109, "F10"}, {111, "F12"},
    {118, "F4"}, {120, "F2"}, {122, "F1"},
});

} // namespace

void HotKeys::registerShortcut(const Shortcut& shortcut, std::function<void()> action) {
    effects.emit("hotKeyRegister");
    registered.push_back({shortcut, std::move(action)});
}

void HotKeys::unregisterShortcut(const Shortcut& shortcut) {
    effects.emit("hotKeyUnregister");
    std::erase_if(registered, [&](const Registered& known) { return known.shortcut == shortcut; });
}

void HotKeys::bindShortcut(std::string_view settingsKey, std::function<void()> action) {
    effects.emit("hotKeyBind");
    bindings.insert_or_assign(std::string(settingsKey), std::move(action));
}

void HotKeys::breakBinding(std::string_view settingsKey) {
    effects.emit("hotKeyUnbind");
    if (const auto found = bindings.find(settingsKey); found != bindings.end())
        bindings.erase(found);
}

std::string HotKeys::modifierFlagsString(const Shortcut& shortcut) const {
    std::string text;
    if (shortcut.modifierFlags & Shortcut::control) text += "⌃";
    if (shortcut.modifierFlags & Shortcut::option) text += "⌥";
    if (shortcut.modifierFlags & Shortcut::shift) text += "⇧";
    if (shortcut.modifierFlags & Shortcut::command) text += "⌘";
    return text;
}

std::string HotKeys::keyCodeString(const Shortcut& shortcut) const {
    for (const Labelled& key : labels)
        if (key.keyCode == shortcut.keyCode) return std::string(key.label);
    return {};
}

std::optional<std::uint16_t> HotKeys::keyCodeNamed(std::string_view name) const {
    const auto isSame = [](unsigned char a, unsigned char b) {
        return std::tolower(a) == std::tolower(b);
    };
    for (const Labelled& key : labels)
        if (std::ranges::equal(key.label, name, isSame)) return key.keyCode;
    return std::nullopt;
}

HotKeys::Obstacle HotKeys::obstacleTo(const Shortcut& shortcut) {
    const auto isOurs = [&](const Registered& known) { return known.shortcut == shortcut; };
    if (std::ranges::any_of(registered, isOurs)) return Obstacle::fixed;
    const bool isTaken = std::ranges::find(taken, shortcut) != taken.end();
    return isTaken ? Obstacle::taken : Obstacle::none;
}

std::vector<Shortcut> HotKeys::claimed() const {
    std::vector<Shortcut> shortcuts;
    for (const Registered& known : registered)
        shortcuts.push_back(known.shortcut);
    return shortcuts;
}

void HotKeys::press(const Shortcut& shortcut) {
    // Copies: an action may change what is claimed.
    for (const Registered& known : registered)
        if (known.shortcut == shortcut) {
            const auto action = known.action;
            action();
            return;
        }
    for (const auto& [key, bound] : bindings)
        if (Shortcut::fromValue(settings.object(key)) == shortcut) {
            const auto action = bound;
            action();
            return;
        }
}

} // namespace platform::memory
