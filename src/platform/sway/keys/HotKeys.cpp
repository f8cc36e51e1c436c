#include "platform/sway/keys/HotKeys.h"

#include "platform/session/PhysicalKeys.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace platform::sway {

namespace {

// With the names that the compositor has for them.
constexpr std::pair<std::uint32_t, std::string_view> modifiers[] = {{Shortcut::control, "Control"},
                                                                    {Shortcut::option, "Mod1"},
                                                                    {Shortcut::shift, "Shift"},
                                                                    {Shortcut::command, "Mod4"}};

std::string combinationOf(const Shortcut& shortcut) {
    std::string text;
    for (const auto& [flag, word] : modifiers)
        if (shortcut.modifierFlags & flag) text += std::string(word) + "+";
    return text + std::to_string(session::physicalKey(shortcut.keyCode)->keycode());
}

std::string nameOf(const std::string& combination) {
    return std::to_string(getpid()) + " " + combination;
}

} // namespace

HotKeys::HotKeys(Compositor& target, Changes& all, wayland::KeyboardSeat& keys,
                 wayland::KeyTaking& recorded, Settings& store, Log& writer, Later afterwards)
    : ClaimedHotKeys(keys, recorded, store, std::move(afterwards)),
      compositor(target),
      changes(all),
      keyboard(keys),
      log(writer) {
    compositor.onReload(this, [this] { update(); });
    keyboard.onKeymap(this, [this] { update(); });
}

HotKeys::~HotKeys() {
    compositor.onReload(this, {});
    keyboard.onKeymap(this, {});
    HotKeys::claim({});
}

void HotKeys::claim(const std::vector<Claim>& wanted) {
    std::set<std::string> combinations;
    for (const Claim& one : wanted) {
        const std::string combination = combinationOf(one.shortcut), name = nameOf(combination);
        combinations.insert(combination);
        compositor.onBinding(name, [this, action = one.action] { later(action); });
        if (bound.contains(combination)) continue;
        changes.make(
            "binding " + combination,
            [this, shortcut = one.shortcut, combination, name]() -> std::optional<Changes::Change> {
                if (isElsewhere(shortcut)) return std::nullopt;
                return Changes::Change{"bindcode --no-warn " + combination + " nop " + name,
                                       "unbindcode " + combination};
            });
    }
    for (const std::string& combination : std::exchange(bound, combinations)) {
        if (combinations.contains(combination)) continue;
        changes.takeBack("binding " + combination);
        compositor.forgetBinding(nameOf(combination));
    }
}

bool HotKeys::isElsewhere(const Shortcut& shortcut) const {
    const auto* const key = session::physicalKey(shortcut.keyCode);
    if (!key) return false;
    std::uint32_t mask = 0;
    for (const auto& [flag, word] : modifiers)
        if (shortcut.modifierFlags & flag) mask |= modifierNamed(word);
    const UserConfiguration& users = compositor.configuration();
    Words symbols;
    if (!keyboard.knowsLayouts()) symbols.emplace_back(key->name);
    if (users.binds(mask, key->keycode(), symbols)) return true;
    return std::ranges::any_of(users.bindings(), [&](const Binding& one) {
        return one.isSymbol() && keyboard.gives(one.keys[0], key->keycode(), mask, one.modifiers);
    });
}

void HotKeys::refused(const Shortcut& shortcut) {
    const std::string shown = modifierFlagsString(shortcut) + keyCodeString(shortcut);
    if (told.insert(shown).second)
        log.write("the shortcut " + shown +
                  " does nothing: the configuration of the compositor binds it");
}

} // namespace platform::sway
