#include "platform/sway/keys/HotKeys.h"

#include "platform/session/PhysicalKeys.h"

#include <unistd.h>
#include <utility>

namespace platform::sway {

namespace {

std::string combinationOf(const Shortcut& shortcut) {
    constexpr std::pair<std::uint32_t, const char*> words[] = {{Shortcut::control, "Control+"},
                                                               {Shortcut::option, "Mod1+"},
                                                               {Shortcut::shift, "Shift+"},
                                                               {Shortcut::command, "Mod4+"}};
    std::string text;
    for (const auto& [flag, word] : words)
        if (shortcut.modifierFlags & flag) text += word;
    return text + std::to_string(session::physicalKey(shortcut.keyCode)->keycode());
}

std::string nameOf(const std::string& combination) {
    return std::to_string(getpid()) + " " + combination;
}

} // namespace

HotKeys::HotKeys(Compositor& target, Changes& all, wayland::KeyboardSeat& keys,
                 wayland::KeyTaking& recorded, Settings& store, Later afterwards)
    : ClaimedHotKeys(keys, recorded, store, std::move(afterwards)),
      compositor(target),
      changes(all) {}

HotKeys::~HotKeys() {
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
            {"bindcode --no-warn " + combination + " nop " + name, "unbindcode " + combination});
    }
    for (const std::string& combination : std::exchange(bound, combinations)) {
        if (combinations.contains(combination)) continue;
        changes.takeBack("binding " + combination);
        compositor.forgetBinding(nameOf(combination));
    }
}

} // namespace platform::sway
