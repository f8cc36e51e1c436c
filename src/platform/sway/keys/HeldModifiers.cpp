#include "platform/sway/keys/HeldModifiers.h"

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

std::string nameOf(const Combination& one) {
    return std::to_string(getpid()) + " all by " + one.last;
}

} // namespace

HeldModifiers::HeldModifiers(Compositor& target, Changes& all, wayland::Connection& connection,
                             const wayland::Outputs& outputs, wayland::KeyboardSeat& keyboard,
                             Descriptors& descriptors, Log& log, std::function<void(bool)> changed)
    : compositor(target),
      changes(all),
      grab(connection, outputs, keyboard, descriptors, std::move(changed)) {
    for (const Combination& one : combinations) {
        const std::string name = nameOf(one);
        compositor.onBinding(name, [this] { grab.begin(); });
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
}

HeldModifiers::~HeldModifiers() {
    for (const Combination& one : combinations) {
        compositor.forgetBinding(nameOf(one));
        changes.takeBack(nameOf(one));
    }
}

} // namespace platform::sway
