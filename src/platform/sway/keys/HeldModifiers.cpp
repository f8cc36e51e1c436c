#include "platform/sway/keys/HeldModifiers.h"

#include <unistd.h>
#include <utility>

namespace platform::sway {

namespace {

// Each of the three with the two others held: XKB's numbers of the left keys.
constexpr std::pair<const char*, const char*> combinations[] = {
    {"control", "Mod1+Mod4+37"}, {"alt", "Control+Mod4+64"}, {"super", "Control+Mod1+133"}};

std::string nameOf(const char* last) {
    return std::to_string(getpid()) + " all by " + last;
}

} // namespace

HeldModifiers::HeldModifiers(Compositor& target, Changes& all, wayland::Connection& connection,
                             const wayland::Outputs& outputs, wayland::KeyboardSeat& keyboard,
                             Descriptors& descriptors, std::function<void(bool)> changed)
    : compositor(target),
      changes(all),
      grab(connection, outputs, keyboard, descriptors, std::move(changed)) {
    for (const auto& [last, combination] : combinations) {
        compositor.onBinding(nameOf(last), [this] { grab.begin(); });
        changes.make(nameOf(last),
                     {std::string("bindcode --no-warn ") + combination + " nop " + nameOf(last),
                      std::string("unbindcode ") + combination});
    }
}

HeldModifiers::~HeldModifiers() {
    for (const auto& [last, combination] : combinations) {
        compositor.forgetBinding(nameOf(last));
        changes.takeBack(nameOf(last));
    }
}

} // namespace platform::sway
