#include "platform/wayland/keys/ModifierGrab.h"

#include "platform/HotKeys.h"

#include <utility>

namespace platform::wayland {

namespace {

// The keyboard comes in a millisecond, and never under a locked screen.
constexpr std::chrono::milliseconds longestWait{500};

} // namespace

ModifierGrab::ModifierGrab(Connection& x, const Outputs& screens, KeyboardSeat& keys,
                           Descriptors& descriptors, std::function<void(bool)> handler)
    : connection(x),
      outputs(screens),
      keyboard(keys),
      changed(std::move(handler)),
      patience(
          descriptors,
          [this] {
              patience.stop();
              if (!isKnown) end();
          },
          longestWait) {
    keyboard.onModifiers(this, [this](std::uint32_t flags) {
        constexpr auto three = Shortcut::control | Shortcut::option | Shortcut::command;
        isKnown = layer != nullptr;
        isReleased = (flags & three) != three;
    });
    connection.onBatchEnd(this, [this] {
        if (layer && isKnown && isReleased) end();
    });
}

ModifierGrab::~ModifierGrab() {
    connection.onBatchEnd(this, {});
    keyboard.onModifiers(this, {});
}

void ModifierGrab::begin() {
    const auto places = outputs.places();
    if (layer || places.empty()) return;
    isKnown = isReleased = false;
    const Rect& whole = places[0].area;
    layer = std::make_unique<Layer>(connection,
                                    Layer::Look{places[0], {whole.x, whole.y, 1, 1}, 0, true});
    layer->setCatches(false);
    patience.start();
    changed(true);
}

void ModifierGrab::end() {
    if (!layer) return;
    patience.stop();
    layer.reset();
    changed(false);
}

} // namespace platform::wayland
