#include "platform/kwin/keys/KeyState.h"

#include <utility>

// The protocol that no package of this system's oldest release describes in full: its requests and
// its event in their order, with the letters of their arguments.

namespace platform::kwin {

namespace {

enum Request : std::uint32_t { fetchStates = 0, destroyObject = 1 };
enum Key : std::uint32_t { altKey = 3, controlKey = 4, metaKey = 6 };
constexpr std::uint32_t pressedState = 3;
constexpr std::uint32_t versionWithModifiers = 5;

const wl_interface* const noTypes[] = {nullptr, nullptr};
const wl_message requests[] = {{"fetchStates", "", const_cast<const wl_interface**>(noTypes)},
                               {"destroy", "4", const_cast<const wl_interface**>(noTypes)}};
const wl_message events[] = {{"stateChanged", "uu", const_cast<const wl_interface**>(noTypes)}};
const wl_interface keyStateInterface{"org_kde_kwin_keystate", 5, 2, requests, 1, events};

} // namespace

KeyState::KeyState(wayland::Connection& connection, std::function<void(std::uint32_t)> changed)
    : proxy(connection.bind(keyStateInterface, versionWithModifiers)), handler(std::move(changed)) {
    if (!proxy) return;
    wl_proxy_add_dispatcher(proxy, told, this, nullptr);
    wl_proxy_marshal_flags(proxy, fetchStates, nullptr, versionWithModifiers, 0);
    connection.flush();
}

KeyState::~KeyState() {
    if (!proxy) return;
    wl_proxy_marshal_flags(proxy, destroyObject, nullptr, versionWithModifiers,
                           WL_MARSHAL_FLAG_DESTROY);
}

int KeyState::told(const void* owner, void*, std::uint32_t, const wl_message*,
                   wl_argument* arguments) {
    auto& self = *const_cast<KeyState*>(static_cast<const KeyState*>(owner));
    std::uint32_t kind = 0;
    switch (arguments[0].u) {
    case altKey:
        kind = option;
        break;
    case controlKey:
        kind = control;
        break;
    case metaKey:
        kind = command;
        break;
    default:
        return 0;
    }
    const std::uint32_t before = self.held;
    self.held = arguments[1].u == pressedState ? before | kind : before & ~kind;
    if (self.held != before) self.handler(self.held);
    return 0;
}

} // namespace platform::kwin
