#include "platform/sway/connection/UserConfiguration.h"

#include <algorithm>
#include <strings.h>
#include <utility>

namespace platform::sway {

namespace {

bool isSame(std::string_view a, std::string_view b) {
    return a.size() == b.size() && ::strncasecmp(a.data(), b.data(), a.size()) == 0;
}

/// As one word of a command.
std::string quoted(const std::string& word) {
    if (!word.empty() && word.find_first_of(" \t;,\"'\\[]$") == std::string::npos) return word;
    std::string text = "\"";
    for (const char letter : word)
        text +=
            letter == '"' || letter == '\\' ? std::string("\\") + letter : std::string(1, letter);
    return text + '"';
}

std::string command(const Words& words, std::size_t begin) {
    std::string text;
    for (std::size_t i = begin; i < words.size(); ++i)
        text += (i > begin ? " " : "") + quoted(words[i]);
    return text;
}

} // namespace

std::uint32_t modifierNamed(std::string_view word) {
    static constexpr std::pair<std::string_view, std::uint32_t> names[] = {
        {"Shift", 1}, {"Lock", 2},  {"Control", 4}, {"Ctrl", 4},   {"Mod1", 8},  {"Alt", 8},
        {"Mod2", 16}, {"Mod3", 32}, {"Mod4", 64},   {"Super", 64}, {"Mod5", 128}};
    const auto* const found =
        std::ranges::find_if(names, [word](const auto& one) { return isSame(one.first, word); });
    return found == std::end(names) ? 0 : found->second;
}

UserConfiguration::UserConfiguration(const ConfigurationFile& main, const FindIncluded& find) {
    eachCommand(main, find, [this](const Words& words) { take(words); });
}

void UserConfiguration::take(const Words& words) {
    const std::string_view first = words[0];
    if (first == "input" && words.size() > 3 &&
        (words[2] == "map_to_output" || words[2] == "map_to_region"))
        mappings.push_back({words[1], command(words, 2)});
    else if (first == "seat" && words.size() == 4 && words[2] == "hide_cursor")
        hidings.push_back({words[1], command(words, 2)});
    else if (first == "seat" && words.size() == 4 && words[2] == "fallback")
        hasFallbackSeat = true;
    else if (first == "mode" && words.size() > 3 && isSame(words[1], "default"))
        bind(Words(words.begin() + 2, words.end()));
    else
        bind(words);
}

void UserConfiguration::bind(Words words) {
    Binding binding;
    const bool isUndone = words[0] == "unbindsym" || words[0] == "unbindcode";
    binding.isByCode = words[0] == "bindcode" || words[0] == "unbindcode";
    if (!binding.isByCode && words[0] != "bindsym" && words[0] != "unbindsym") return;
    std::size_t at = 1;
    for (; at < words.size() && words[at].starts_with("--"); ++at) {
        static constexpr std::string_view device = "--input-device=";
        const std::string& flag = words[at];
        if (flag == "--whole-window" || flag == "--border" || flag == "--exclude-titlebar")
            return; // of a mouse's button
        if (flag == "--release") binding.isOnRelease = true;
        if (flag.starts_with(device)) binding.device = flag.substr(device.size());
    }
    if (at + (isUndone ? 0U : 1U) >= words.size()) return;
    for (std::string_view rest = words[at]; !rest.empty();) {
        const auto end = std::min(rest.find('+'), rest.size());
        const std::string_view word = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (const auto modifier = modifierNamed(word))
            binding.modifiers |= modifier;
        else if (!word.empty() && !isSame(word.substr(0, 5), "Group"))
            binding.keys.emplace_back(word);
    }
    std::ranges::sort(binding.keys);
    std::erase(bound, binding);
    if (!isUndone && !binding.keys.empty()) bound.push_back(std::move(binding));
}

// A rule for all devices is run for those of the kind alone: the others are none of the program's.
std::string UserConfiguration::mappingOf(const std::string& kind,
                                         const std::string& unmapped) const {
    std::string all;
    bool isOfKind = false;
    for (const auto& [subject, words] : mappings) {
        const bool isEverybodys = subject == "*", isKinds = subject == kind;
        if (!isEverybodys && !isKinds && subject.starts_with("type:")) continue;
        isOfKind |= isEverybodys || isKinds;
        all += "; input " + (isEverybodys ? kind : quoted(subject)) + " " + words;
    }
    if (isOfKind) return all.substr(2);
    return "input " + kind + " " + unmapped + all;
}

std::string UserConfiguration::cursorHiding() const {
    std::string all = "seat * hide_cursor 0";
    for (const auto& [subject, words] : hidings)
        all += "; seat " + quoted(subject) + " " + words;
    return all;
}

bool UserConfiguration::binds(std::uint32_t modifiers, std::uint32_t keycode,
                              const Words& symbols) const {
    return std::ranges::any_of(bound, [&](const Binding& one) {
        if (one.modifiers != modifiers || one.keys.size() != 1 || one.device != "*") return false;
        if (one.isByCode) return one.keys[0] == std::to_string(keycode);
        return std::ranges::any_of(
            symbols, [&one](const std::string& symbol) { return isSame(symbol, one.keys[0]); });
    });
}

} // namespace platform::sway
