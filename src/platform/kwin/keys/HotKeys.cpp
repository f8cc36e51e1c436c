#include "platform/kwin/keys/HotKeys.h"

#include <algorithm>
#include <utility>

namespace platform::kwin {

HotKeys::HotKeys(Script& inside, wayland::KeyboardSeat& keys, wayland::KeyTaking& recorded,
                 Settings& store, Later afterwards, std::string ownersName)
    : ClaimedHotKeys(keys, recorded, store, std::move(afterwards)),
      script(inside),
      owner(std::move(ownersName)) {
    script.onLoad([this] {
        for (const auto& [sequence, action] : claims)
            script.run("key", {owner + " " + sequence, sequence});
    });
    script.onTold("key", [this](const JsonValue::List& words) {
        const auto* sequence = words.empty() ? nullptr : std::get_if<std::string>(&words[0].held);
        const auto found = sequence ? claims.find(*sequence) : claims.end();
        if (found != claims.end()) later(found->second);
    });
}

HotKeys::~HotKeys() {
    script.onLoad({});
    script.onTold("key", {});
}

std::string HotKeys::sequenceOf(const Shortcut& shortcut) const {
    constexpr std::pair<std::uint32_t, const char*> modifiers[] = {{Shortcut::control, "Ctrl+"},
                                                                   {Shortcut::option, "Alt+"},
                                                                   {Shortcut::shift, "Shift+"},
                                                                   {Shortcut::command, "Meta+"}};
    constexpr std::pair<const char*, const char*> names[] = {{"Page Up", "PgUp"},
                                                             {"Page Down", "PgDown"},
                                                             {"Insert", "Ins"},
                                                             {"Delete", "Del"},
                                                             {"Mute", "Volume Mute"}};
    std::string text;
    for (const auto& [flag, word] : modifiers)
        if (shortcut.modifierFlags & flag) text += word;
    std::string key = keyCodeString(shortcut);
    for (const auto& [ours, theirs] : names)
        if (key == ours) key = theirs;
    if (key.starts_with("Num ")) key[3] = '+';
    return text + key;
}

void HotKeys::claim(const std::vector<Claim>& wanted) {
    std::map<std::string, std::function<void()>> now;
    for (const Claim& one : wanted)
        now.emplace(sequenceOf(one.shortcut), one.action);
    const auto before = std::exchange(claims, std::move(now));
    const bool anyLess = std::ranges::any_of(
        before, [this](const auto& one) { return !claims.contains(one.first); });
    if (anyLess) return script.reload();
    for (const auto& [sequence, action] : claims)
        if (!before.contains(sequence)) script.run("key", {owner + " " + sequence, sequence});
}

} // namespace platform::kwin
