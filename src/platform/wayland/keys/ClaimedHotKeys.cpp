#include "platform/wayland/keys/ClaimedHotKeys.h"

#include "platform/session/PhysicalKeys.h"

#include <algorithm>
#include <utility>

namespace platform::wayland {

ClaimedHotKeys::ClaimedHotKeys(KeyboardSeat& keys, KeyTaking& recorded, Settings& store,
                               Later afterwards)
    : later(std::move(afterwards)), keyboard(keys), recording(recorded), settings(store) {}

ClaimedHotKeys::~ClaimedHotKeys() {
    keyboard.onLabelsChange({});
}

void ClaimedHotKeys::registerShortcut(const Shortcut& shortcut, std::function<void()> action) {
    registered.push_back({shortcut, std::move(action)});
    update();
}

void ClaimedHotKeys::unregisterShortcut(const Shortcut& shortcut) {
    std::erase_if(registered, [&](const Claim& one) { return one.shortcut == shortcut; });
    update();
}

void ClaimedHotKeys::bindShortcut(std::string_view settingsKey, std::function<void()> action) {
    bindings[std::string(settingsKey)] = std::move(action);
    if (observed.emplace(settingsKey).second)
        settings.observe(settingsKey, [this, weak = std::weak_ptr(alive)] {
            if (!weak.expired()) update();
        });
    update();
    const auto shortcut = Shortcut::fromValue(settings.object(settingsKey));
    if (shortcut && boundTaken && isTaken(*shortcut)) boundTaken(*shortcut);
}

void ClaimedHotKeys::breakBinding(std::string_view settingsKey) {
    const auto found = bindings.find(settingsKey);
    if (found == bindings.end()) return;
    bindings.erase(found);
    update();
}

// None at all while one is recorded. Of two claims of one combination the first counts.
void ClaimedHotKeys::update() {
    std::vector<Claim> wanted;
    const auto want = [this, &wanted](const Claim& claim) {
        const bool isNew =
            std::ranges::find(wanted, claim.shortcut, &Claim::shortcut) == wanted.end();
        if (isNew && session::physicalKey(claim.shortcut.keyCode) && !isElsewhere(claim.shortcut))
            wanted.push_back(claim);
    };
    if (!recording.isOn()) {
        for (const Claim& one : registered)
            want(one);
        for (const auto& [key, action] : bindings)
            if (const auto shortcut = Shortcut::fromValue(settings.object(key))) {
                if (isElsewhere(*shortcut)) refused(*shortcut);
                want({*shortcut, action, true});
            }
    }
    claim(wanted);
}

std::string ClaimedHotKeys::modifierFlagsString(const Shortcut& shortcut) const {
    constexpr std::pair<std::uint32_t, const char*> labels[] = {{Shortcut::control, "Ctrl+"},
                                                                {Shortcut::option, "Alt+"},
                                                                {Shortcut::shift, "Shift+"},
                                                                {Shortcut::command, "Super+"}};
    std::string text;
    for (const auto& [flag, label] : labels)
        if (shortcut.modifierFlags & flag) text += label;
    return text;
}

std::string ClaimedHotKeys::keyCodeString(const Shortcut& shortcut) const {
    const auto* key = session::physicalKey(shortcut.keyCode);
    if (!key) return std::to_string(shortcut.keyCode);
    const std::string label = key->isCharacter() ? keyboard.label(key->keycode()) : "";
    return label.empty() ? std::string(key->name) : label;
}

std::optional<std::uint16_t> ClaimedHotKeys::keyCodeNamed(std::string_view name) const {
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

void ClaimedHotKeys::onLabelsChange(std::function<void()> changed) {
    keyboard.onLabelsChange([this, handler = std::move(changed)] { later(handler); });
}

RecordableHotKeys::Obstacle ClaimedHotKeys::obstacleTo(const Shortcut& shortcut) {
    const auto isIt = [&](const Claim& one) { return one.shortcut == shortcut; };
    if (std::ranges::any_of(registered, isIt)) return Obstacle::fixed;
    return isTaken(shortcut) ? Obstacle::taken : Obstacle::none;
}

bool ClaimedHotKeys::startRecording(std::function<void(const Stroke&)> pressed,
                                    std::function<void()>) {
    if (!recording.start(std::move(pressed))) return false;
    update();
    return true;
}

void ClaimedHotKeys::stopRecording() {
    if (!recording.isOn()) return;
    recording.stop();
    update();
}

} // namespace platform::wayland
