#include "platform/sway/keys/HeldModifiers.h"

#include "platform/HotKeys.h"

#include <unistd.h>
#include <utility>

namespace platform::sway {

namespace {

// Each of the three with the two others held: XKB's numbers and names of the left keys.
struct Combination {
    const char* last;
    const char* text;
    std::uint32_t modifiers;
    std::uint32_t keycode;
    const char* symbol;
};
constexpr Combination combinations[] = {{"control", "Mod1+Mod4+37", 8 + 64, 37, "Control_L"},
                                        {"alt", "Control+Mod4+64", 4 + 64, 64, "Alt_L"},
                                        {"super", "Control+Mod1+133", 4 + 8, 133, "Super_L"}};

// The keyboard comes in a millisecond, and never under a locked screen.
constexpr std::chrono::milliseconds longestWait{500};

std::string nameOf(const Combination& one) {
    return std::to_string(getpid()) + " all by " + one.last;
}

} // namespace

HeldModifiers::HeldModifiers(Compositor& target, Changes& all, wayland::Connection& x,
                             const wayland::Outputs& screens, wayland::KeyboardSeat& keys,
                             Descriptors& descriptors, Log& log, std::function<void(bool)> handler)
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
    for (const Combination& one : combinations) {
        const std::string name = nameOf(one);
        compositor.onBinding(name, [this] { pressed(); });
        changes.make(name, [this, one, name, &log]() -> std::optional<Changes::Change> {
            if (compositor.configuration().binds(one.modifiers, one.keycode, {one.symbol})) {
                log.write(std::string("the configuration of the compositor binds ") + one.text +
                          ": the three keys do nothing here where that one comes last");
                return std::nullopt;
            }
            return Changes::Change{std::string("bindcode --no-warn ") + one.text + " nop " + name,
                                   std::string("unbindcode ") + one.text};
        });
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
    for (const Combination& one : combinations) {
        compositor.forgetBinding(nameOf(one));
        changes.takeBack(nameOf(one));
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
