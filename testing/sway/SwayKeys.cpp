#include "testing/sway/SwayKeys.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

// The protocol of virtual keyboards, of which no package installs a description: its requests in
// their order, with the letters of their arguments.

namespace support {

namespace {

enum Request : std::uint32_t { createKeyboard = 0, setKeymap = 0, setKey = 1, setModifiers = 2 };

extern const wl_interface keyboardInterface;
const wl_interface* const noTypes[] = {nullptr, nullptr, nullptr, nullptr};
const wl_interface* const creationTypes[] = {&wl_seat_interface, &keyboardInterface};

const wl_message keyboardRequests[] = {
    {"keymap", "uhu", const_cast<const wl_interface**>(noTypes)},
    {"key", "uuu", const_cast<const wl_interface**>(noTypes)},
    {"modifiers", "uuuu", const_cast<const wl_interface**>(noTypes)},
    {"destroy", "", const_cast<const wl_interface**>(noTypes)}};
const wl_message managerRequests[] = {
    {"create_virtual_keyboard", "on", const_cast<const wl_interface**>(creationTypes)}};
const wl_interface keyboardInterface{"zwp_virtual_keyboard_v1", 1, 4, keyboardRequests, 0, nullptr};
const wl_interface managerInterface{
    "zwp_virtual_keyboard_manager_v1", 1, 1, managerRequests, 0, nullptr};

constexpr std::uint32_t firstKeycode = 8; // XKB's number of the kernel's 0

} // namespace

SwayKeys::SwayKeys(const std::string& socketPath)
    : client(socketPath),
      context(xkb_context_new(XKB_CONTEXT_NO_FLAGS)),
      keymap(xkb_keymap_new_from_names(context, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS)),
      state(xkb_state_new(keymap)) {
    wl_registry* const registry = wl_display_get_registry(client.display);
    static constexpr wl_registry_listener listener{
        [](void* data, wl_registry* from, std::uint32_t name, const char* interface,
           std::uint32_t) {
            auto& self = *static_cast<SwayKeys*>(data);
            if (std::string_view(interface) == managerInterface.name)
                self.manager =
                    static_cast<wl_proxy*>(wl_registry_bind(from, name, &managerInterface, 1));
        },
        [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(registry, &listener, this);
    client.synchronize();
    wl_registry_destroy(registry);
    if (!manager) throw std::runtime_error("the compositor takes no keyboard");
    keyboard = wl_proxy_marshal_flags(manager, createKeyboard, &keyboardInterface, 1, 0,
                                      client.seat, nullptr);
    char* const text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
    const std::size_t size = std::strlen(text) + 1;
    const int file = memfd_create("keymap", MFD_CLOEXEC);
    if (write(file, text, size) != static_cast<ssize_t>(size))
        throw std::runtime_error("no file for the keymap");
    wl_proxy_marshal_flags(keyboard, setKeymap, nullptr, 1, 0, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1,
                           file, static_cast<std::uint32_t>(size));
    client.synchronize();
    close(file);
    std::free(text);
}

SwayKeys::~SwayKeys() {
    wl_proxy_destroy(keyboard);
    wl_proxy_destroy(manager);
    xkb_state_unref(state);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
}

void SwayKeys::send(std::uint32_t key, bool down) {
    wl_proxy_marshal_flags(keyboard, setKey, nullptr, 1, 0, 0U, key,
                           down ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
    xkb_state_update_key(state, key + firstKeycode, down ? XKB_KEY_DOWN : XKB_KEY_UP);
    wl_proxy_marshal_flags(keyboard, setModifiers, nullptr, 1, 0,
                           xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED),
                           xkb_state_serialize_mods(state, XKB_STATE_MODS_LATCHED),
                           xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED),
                           xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE));
    client.synchronize();
}

} // namespace support
