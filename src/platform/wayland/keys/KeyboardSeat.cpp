#include "platform/wayland/keys/KeyboardSeat.h"

#include "platform/HotKeys.h"
#include "platform/session/PhysicalKeys.h"

#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace platform::wayland {

void KeyboardSeat::find(bool there) {
    if (there == (keyboard != nullptr)) return;
    hasFocus = false;
    keyboard.reset();
    if (!there) return;
    keyboard.reset(wl_seat_get_keyboard(connection.seat()));
    static const wl_keyboard_listener listener{
        .keymap =
            [](void* self, wl_keyboard*, std::uint32_t format, int file, std::uint32_t size) {
                if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1)
                    static_cast<KeyboardSeat*>(self)->readKeymap(file, size);
                close(file);
            },
        .enter =
            [](void* data, wl_keyboard*, std::uint32_t, wl_surface*, wl_array* keys) {
                auto& self = *static_cast<KeyboardSeat*>(data);
                self.hasFocus = true;
                if (self.entered)
                    self.entered({static_cast<const std::uint32_t*>(keys->data),
                                  keys->size / sizeof(std::uint32_t)});
            },
        .leave = [](void* self, wl_keyboard*, std::uint32_t,
                    wl_surface*) { static_cast<KeyboardSeat*>(self)->hasFocus = false; },
        .key =
            [](void* data, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t key,
               std::uint32_t state) {
                const auto& self = *static_cast<KeyboardSeat*>(data);
                if (self.pressed && self.hasFocus && state == WL_KEYBOARD_KEY_STATE_PRESSED)
                    self.pressed(key + session::PhysicalKey::firstKeycode);
            },
        .modifiers =
            [](void* self, wl_keyboard*, std::uint32_t, std::uint32_t depressed, std::uint32_t,
               std::uint32_t,
               std::uint32_t group) { static_cast<KeyboardSeat*>(self)->tell(depressed, group); },
        .repeat_info = [](void*, wl_keyboard*, std::int32_t, std::int32_t) {}};
    wl_keyboard_add_listener(keyboard.get(), &listener, this);
    connection.flush();
}

void KeyboardSeat::readKeymap(int file, std::uint32_t size) {
    void* const text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (text == MAP_FAILED) return;
    if (!context) context.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    keymap.reset(xkb_keymap_new_from_buffer(context.get(), static_cast<const char*>(text),
                                            size > 0 ? size - 1 : 0, XKB_KEYMAP_FORMAT_TEXT_V1,
                                            XKB_KEYMAP_COMPILE_NO_FLAGS));
    munmap(text, size);
    if (labelsChanged) labelsChanged();
    for (const auto& [owner, changed] : keymapHandlers)
        changed();
}

void KeyboardSeat::onKeymap(const void* owner, std::function<void()> changed) {
    if (changed)
        keymapHandlers[owner] = std::move(changed);
    else
        keymapHandlers.erase(owner);
}

bool KeyboardSeat::gives(const std::string& symbol, std::uint32_t keycode, std::uint32_t held,
                         std::uint32_t left) const {
    const xkb_keysym_t wanted = xkb_keysym_from_name(symbol.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    if (!keymap || wanted == XKB_KEY_NoSymbol) return false;
    const std::unique_ptr<xkb_state, Free> state(xkb_state_new(keymap.get()));
    const auto layouts = xkb_keymap_num_layouts_for_key(keymap.get(), keycode);
    for (xkb_layout_index_t one = 0; one < layouts; ++one) {
        const xkb_keysym_t* symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(keymap.get(), keycode, one, 0, &symbols);
        if (held == left && count == 1 && symbols[0] == wanted) return true;
        xkb_state_update_mask(state.get(), held, 0, 0, 0, 0, one);
        const auto used =
            xkb_state_key_get_consumed_mods2(state.get(), keycode, XKB_CONSUMED_MODE_XKB);
        if ((held & ~used) == left && xkb_state_key_get_one_sym(state.get(), keycode) == wanted)
            return true;
    }
    return false;
}

void KeyboardSeat::tell(std::uint32_t depressed, std::uint32_t group) {
    if (std::exchange(layout, group) != group && labelsChanged) labelsChanged();
    if (!keymap || !hasFocus) return;
    static constexpr std::pair<const char*, std::uint32_t> names[] = {
        {XKB_MOD_NAME_CTRL, Shortcut::control},
        {XKB_MOD_NAME_ALT, Shortcut::option},
        {XKB_MOD_NAME_SHIFT, Shortcut::shift},
        {XKB_MOD_NAME_LOGO, Shortcut::command}};
    std::uint32_t flags = 0;
    for (const auto& [name, flag] : names) {
        const auto index = xkb_keymap_mod_get_index(keymap.get(), name);
        if (index != XKB_MOD_INVALID && (depressed & 1U << index) != 0) flags |= flag;
    }
    for (const auto& [owner, changed] : modifierHandlers)
        changed(flags);
}

void KeyboardSeat::onModifiers(const void* owner, std::function<void(std::uint32_t)> changed) {
    if (changed)
        modifierHandlers[owner] = std::move(changed);
    else
        modifierHandlers.erase(owner);
}

std::string KeyboardSeat::label(std::uint32_t keycode) const {
    if (!keymap) return {};
    const xkb_keysym_t* symbols = nullptr;
    if (xkb_keymap_key_get_syms_by_level(keymap.get(), keycode, layout, 0, &symbols) != 1)
        return {};
    char text[8] = {};
    const int length = xkb_keysym_to_utf8(xkb_keysym_to_upper(symbols[0]), text, sizeof text);
    const bool isSeen = length > 1 && static_cast<unsigned char>(text[0]) > ' ';
    return isSeen ? text : "";
}

} // namespace platform::wayland
