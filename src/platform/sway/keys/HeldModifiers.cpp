#include "platform/sway/keys/HeldModifiers.h"

#include "platform/HotKeys.h"

#include <unistd.h>
#include <utility>

namespace platform::sway {

namespace {

// Each of the three with the two others held: XKB's numbers of the left keys.
constexpr std::pair<const char*, const char*> combinations[] = {
    {"control", "Mod1+Mod4+37"}, {"alt", "Control+Mod4+64"}, {"super", "Control+Mod1+133"}};

// The keyboard comes in a millisecond, and never under a locked screen.
constexpr std::chrono::milliseconds longestWait{500};

std::string nameOf(const char* last) {
    return std::to_string(getpid()) + " all by " + last;
}

} // namespace

HeldModifiers::HeldModifiers(Compositor& target, Changes& all, wayland::Connection& x,
                             const wayland::Outputs& screens, wayland::KeyboardSeat& keys,
                             Descriptors& descriptors, std::function<void(bool)> handler)
    : compositor(target),
      changes(all),
      connection(x),
      outputs(screens),
      keyboard(keys),
      changed(std::move(handler)),
      patience(
          descriptors,
          [this] {
              patience.stop();
              if (!isKnown) released();
          },
          longestWait) {
    for (const auto& [last, combination] : combinations) {
        compositor.onBinding(nameOf(last), [this] { pressed(); });
        changes.make(nameOf(last),
                     {std::string("bindcode --no-warn ") + combination + " nop " + nameOf(last),
                      std::string("unbindcode ") + combination});
    }
    keyboard.onModifiers(this, [this](std::uint32_t flags) {
        constexpr auto three = Shortcut::control | Shortcut::option | Shortcut::command;
        isKnown = layer != nullptr;
        isReleased = (flags & three) != three;
    });
    connection.onBatchEnd(this, [this] {
        if (layer && isKnown && isReleased) released();
    });
}

HeldModifiers::~HeldModifiers() {
    connection.onBatchEnd(this, {});
    keyboard.onModifiers(this, {});
    for (const auto& [last, combination] : combinations) {
        compositor.forgetBinding(nameOf(last));
        changes.takeBack(nameOf(last));
    }
}

void HeldModifiers::pressed() {
    const auto places = outputs.places();
    if (layer || places.empty()) return;
    isKnown = isReleased = false;
    const Rect& whole = places[0].area;
    layer = std::make_unique<wayland::Layer>(
        connection, wayland::Layer::Look{places[0], {whole.x, whole.y, 1, 1}, 0, true});
    layer->setCatches(false);
    patience.start();
    changed(true);
}

void HeldModifiers::released() {
    if (!layer) return;
    patience.stop();
    layer.reset();
    changed(false);
}

} // namespace platform::sway
