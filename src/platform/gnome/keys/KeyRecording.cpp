#include "platform/gnome/keys/KeyRecording.h"

#include "platform/session/PhysicalKeys.h"

#include <utility>

namespace platform::gnome {

namespace {

std::uint32_t flagsOf(Hand::State state) {
    constexpr std::pair<Hand::State, std::uint32_t> flags[] = {{Hand::control, Shortcut::control},
                                                               {Hand::alt, Shortcut::option},
                                                               {Hand::shift, Shortcut::shift},
                                                               {Hand::super, Shortcut::command}};
    std::uint32_t all = 0;
    for (const auto& [mask, flag] : flags)
        if (state & mask) all |= flag;
    return all;
}

} // namespace

KeyRecording::KeyRecording(Hand& extension, Later afterwards, std::function<void(bool)> handler)
    : hand(extension), later(std::move(afterwards)), changed(std::move(handler)) {}

bool KeyRecording::start(Handler pressed) {
    if (!hand.record([this](std::uint32_t keycode, Hand::State state) { typed(keycode, state); }))
        return false;
    taker = std::make_shared<Handler>(std::move(pressed));
    changed(true);
    return true;
}

void KeyRecording::stop() {
    if (!isOn()) return;
    taker.reset();
    hand.stopRecording();
    changed(false);
}

void KeyRecording::typed(std::uint32_t keycode, Hand::State state) {
    RecordableHotKeys::Stroke stroke{{}, flagsOf(state)};
    if (keycode != 0) {
        const auto* known =
            keycode <= 0xff ? session::physicalKeyAt(static_cast<std::uint8_t>(keycode)) : nullptr;
        if (known) stroke.keyCode = known->virtualCode;
        stroke.unknownKey = !known;
    }
    // What ends the recording meanwhile ends this too.
    later([weak = std::weak_ptr(taker), stroke] {
        if (const auto still = weak.lock()) (*still)(stroke);
    });
}

} // namespace platform::gnome
