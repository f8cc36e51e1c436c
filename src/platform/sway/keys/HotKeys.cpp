#include "platform/sway/keys/HotKeys.h"

#include "platform/session/PhysicalKeys.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace platform::sway {

namespace {

struct Modifier {
    std::uint32_t flag;
    const char* word;
    const char* label;
};

constexpr Modifier modifiers[] = {{Shortcut::control, "Control+", "Ctrl+"},
                                  {Shortcut::option, "Mod1+", "Alt+"},
                                  {Shortcut::shift, "Shift+", "Shift+"},
                                  {Shortcut::command, "Mod4+", "Super+"}};

std::string textOf(const Shortcut& shortcut, auto member) {
    std::string text;
    for (const Modifier& modifier : modifiers)
        if (shortcut.modifierFlags & modifier.flag) text += modifier.*member;
    return text;
}

} // namespace

HotKeys::HotKeys(Compositor& target, Changes& all, wayland::KeyboardSeat& keys,
                 wayland::KeyRecording& recorded, Settings& store, Later afterwards)
    : compositor(target),
      changes(all),
      keyboard(keys),
      recording(recorded),
      settings(store),
      later(std::move(afterwards)) {}

HotKeys::~HotKeys() {
    keyboard.onLabelsChange({});
    registered.clear();
    bindings.clear();
    claim();
}

void HotKeys::registerShortcut(const Shortcut& shortcut, std::function<void()> action) {
    registered.push_back({shortcut, std::move(action)});
    claim();
}

void HotKeys::unregisterShortcut(const Shortcut& shortcut) {
    std::erase_if(registered, [&](const Claim& one) { return one.shortcut == shortcut; });
    claim();
}

void HotKeys::bindShortcut(std::string_view settingsKey, std::function<void()> action) {
    bindings[std::string(settingsKey)] = std::move(action);
    if (observed.emplace(settingsKey).second)
        settings.observe(settingsKey, [this, weak = std::weak_ptr(alive)] {
            if (!weak.expired()) claim();
        });
    claim();
}

void HotKeys::breakBinding(std::string_view settingsKey) {
    const auto found = bindings.find(settingsKey);
    if (found == bindings.end()) return;
    bindings.erase(found);
    claim();
}

/// The bindings that are wanted now, and none else; none at all while one is recorded.
void HotKeys::claim() {
    std::set<std::string> wanted;
    if (!recording.isOn()) {
        for (const Claim& one : registered)
            bind(one, wanted);
        for (const auto& [key, action] : bindings)
            if (const auto shortcut = Shortcut::fromValue(settings.object(key)))
                bind({*shortcut, action}, wanted);
    }
    for (const std::string& combination : std::exchange(bound, wanted)) {
        if (wanted.contains(combination)) continue;
        changes.takeBack("binding " + combination);
        compositor.forgetBinding(std::to_string(getpid()) + " " + combination);
    }
}

void HotKeys::bind(const Claim& wish, std::set<std::string>& keys) {
    const auto* key = session::physicalKey(wish.shortcut.keyCode);
    if (!key) return;
    const std::string combination =
        textOf(wish.shortcut, &Modifier::word) + std::to_string(key->keycode());
    if (!keys.insert(combination).second) return;
    const std::string name = std::to_string(getpid()) + " " + combination;
    compositor.onBinding(name, [this, action = wish.action] { later(action); });
    if (bound.contains(combination)) return;
    changes.make("binding " + combination, {"bindcode --no-warn " + combination + " nop " + name,
                                            "unbindcode " + combination});
}

std::string HotKeys::modifierFlagsString(const Shortcut& shortcut) const {
    return textOf(shortcut, &Modifier::label);
}

std::string HotKeys::keyCodeString(const Shortcut& shortcut) const {
    const auto* key = session::physicalKey(shortcut.keyCode);
    if (!key) return std::to_string(shortcut.keyCode);
    const std::string label = key->isCharacter() ? keyboard.label(key->keycode()) : "";
    return label.empty() ? std::string(key->name) : label;
}

std::optional<std::uint16_t> HotKeys::keyCodeNamed(std::string_view name) const {
    constexpr std::uint16_t virtualCodes = 128;
    const auto find = [name](const auto& textOf) -> std::optional<std::uint16_t> {
        for (std::uint16_t code = 0; code < virtualCodes; ++code)
            if (session::physicalKey(code) && session::isSameName(textOf(code), name)) return code;
        return std::nullopt;
    };
    if (const auto labelled = find([this](std::uint16_t code) { return keyCodeString({code, 0}); }))
        return labelled;
    return find([](std::uint16_t code) { return session::physicalKey(code)->name; });
}

void HotKeys::onLabelsChange(std::function<void()> changed) {
    keyboard.onLabelsChange([this, handler = std::move(changed)] { later(handler); });
}

RecordableHotKeys::Obstacle HotKeys::obstacleTo(const Shortcut& shortcut) {
    const auto isIt = [&](const Claim& one) { return one.shortcut == shortcut; };
    return std::ranges::any_of(registered, isIt) ? Obstacle::fixed : Obstacle::none;
}

bool HotKeys::startRecording(std::function<void(const Stroke&)> pressed, std::function<void()>) {
    if (!recording.start(std::move(pressed))) return false;
    claim();
    return true;
}

void HotKeys::stopRecording() {
    if (!recording.isOn()) return;
    recording.stop();
    claim();
}

} // namespace platform::sway
