#include "platform/wayland/keys/KeyRecording.h"

#include "platform/session/PhysicalKeys.h"

#include <algorithm>
#include <linux/input-event-codes.h>
#include <utility>

namespace platform::wayland {

namespace {

// Keys that only change others: the modifiers are told by themselves.
constexpr std::uint32_t silent[] = {KEY_LEFTCTRL, KEY_RIGHTCTRL, KEY_LEFTSHIFT, KEY_RIGHTSHIFT,
                                    KEY_LEFTALT,  KEY_RIGHTALT,  KEY_LEFTMETA,  KEY_RIGHTMETA,
                                    KEY_CAPSLOCK, KEY_NUMLOCK,   KEY_SCROLLLOCK};

} // namespace

KeyRecording::KeyRecording(Connection& x, const Outputs& screens, KeyboardSeat& keys,
                           Later afterwards)
    : connection(x), outputs(screens), keyboard(keys), later(std::move(afterwards)) {}

bool KeyRecording::start(Handler pressed) {
    const auto places = outputs.places();
    if (places.empty()) return false;
    taker = std::make_shared<Handler>(std::move(pressed));
    flags = 0;
    const Rect& whole = places[0].area;
    layer = std::make_unique<Layer>(connection,
                                    Layer::Look{places[0], {whole.x, whole.y, 1, 1}, 0, true});
    layer->setCatches(false);
    keyboard.onKey([this](std::uint32_t keycode) { key(keycode); });
    keyboard.onModifiers(this, [this](std::uint32_t held) {
        if (std::exchange(flags, held) != held) tell({{}, held});
    });
    return true;
}

void KeyRecording::stop() {
    if (!isOn()) return;
    keyboard.onKey({});
    keyboard.onModifiers(this, {});
    taker.reset();
    layer.reset();
}

void KeyRecording::key(std::uint32_t keycode) {
    if (std::ranges::count(silent, keycode - session::PhysicalKey::firstKeycode) > 0) return;
    const auto* known =
        keycode <= 0xff ? session::physicalKeyAt(static_cast<std::uint8_t>(keycode)) : nullptr;
    tell(known ? RecordableHotKeys::Stroke{known->virtualCode, flags}
               : RecordableHotKeys::Stroke{{}, flags, true});
}

void KeyRecording::tell(const RecordableHotKeys::Stroke& stroke) {
    // What ends the recording meanwhile ends this too.
    later([weak = std::weak_ptr(taker), stroke] {
        if (const auto still = weak.lock()) (*still)(stroke);
    });
}

} // namespace platform::wayland
