#include "platform/wayland/overlay/PopupInput.h"

#include "platform/HotKeys.h"
#include "platform/session/PhysicalKeys.h"

#include <cstdlib>
#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace platform::wayland {

namespace {

constexpr double notchLength = 10; ///< as compositors tell of a wheel

int cursorSize() {
    constexpr int usual = 24;
    const char* const wished = std::getenv("XCURSOR_SIZE");
    const int size = wished ? std::atoi(wished) : 0;
    return size > 0 ? size : usual;
}

std::optional<int> numberOf(std::uint32_t button) {
    switch (button) {
    case BTN_LEFT:
        return 0;
    case BTN_RIGHT:
        return 1;
    case BTN_MIDDLE:
        return 2;
    default:
        return {};
    }
}

} // namespace

PopupInput::PopupInput(Connection& x, platform::PopupLayer::Listener hears, Later afterwards)
    : connection(x),
      listener(std::make_shared<platform::PopupLayer::Listener>(std::move(hears))),
      later(std::move(afterwards)) {
    if (connection.seatCapabilities() & WL_SEAT_CAPABILITY_POINTER) listenToPointer();
    if (connection.seatCapabilities() & WL_SEAT_CAPABILITY_KEYBOARD) listenToKeyboard();
}

PopupInput::~PopupInput() = default;

void PopupInput::listenToPointer() {
    pointer.reset(wl_seat_get_pointer(connection.seat()));
    // Later versions of the structure have more.
    static const wl_pointer_listener pointing = [] {
        wl_pointer_listener all{};
        all.enter = [](void* data, wl_pointer*, std::uint32_t serial, wl_surface* surface,
                       wl_fixed_t x, wl_fixed_t y) {
            auto& self = *static_cast<PopupInput*>(data);
            self.over = self.corners.contains(surface) ? surface : nullptr;
            if (!self.over) return;
            self.at(x, y);
            self.note(Entered{serial});
        };
        all.leave = [](void* data, wl_pointer*, std::uint32_t, wl_surface*) {
            static_cast<PopupInput*>(data)->over = nullptr;
        };
        all.motion = [](void* self, wl_pointer*, std::uint32_t, wl_fixed_t x, wl_fixed_t y) {
            static_cast<PopupInput*>(self)->at(x, y);
        };
        all.button = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t code,
                        std::uint32_t told) {
            auto& self = *static_cast<PopupInput*>(data);
            const auto button = numberOf(code);
            if (self.over && button)
                self.note(Clicked{*button, told == WL_POINTER_BUTTON_STATE_PRESSED});
        };
        all.axis = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t axis, wl_fixed_t by) {
            auto& self = *static_cast<PopupInput*>(data);
            if (self.over && axis == WL_POINTER_AXIS_VERTICAL_SCROLL)
                self.note(Scrolled{-wl_fixed_to_double(by) / notchLength});
        };
        all.frame = [](void*, wl_pointer*) {};
        all.axis_source = [](void*, wl_pointer*, std::uint32_t) {};
        all.axis_stop = [](void*, wl_pointer*, std::uint32_t, std::uint32_t) {};
        all.axis_discrete = [](void*, wl_pointer*, std::uint32_t, std::int32_t) {};
        return all;
    }();
    wl_pointer_add_listener(pointer.get(), &pointing, this);
}

void PopupInput::at(wl_fixed_t x, wl_fixed_t y) {
    if (!over) return;
    const Point& corner = corners.at(over);
    last = {corner.x + wl_fixed_to_double(x), corner.y + wl_fixed_to_double(y)};
    // Of many motions in a row only the last one matters.
    if (!noted.empty() && std::holds_alternative<Moved>(noted.back()))
        noted.back() = Moved{last};
    else
        note(Moved{last});
}

// Otherwise it would go on looking as it did over the window below. Reading a theme takes up to a
// tenth of a second.
void PopupInput::showArrow(std::uint32_t serial) {
    const int size = cursorSize();
    if (!theme) {
        const char* const name = std::getenv("XCURSOR_THEME");
        theme.reset(wl_cursor_theme_load(name, size, connection.memory()));
    }
    const auto* const cursor =
        theme ? wl_cursor_theme_get_cursor(theme.get(), "left_ptr") : nullptr;
    if (!cursor) return;
    wl_cursor_image* const image = cursor->images[0];
    if (!arrow) {
        arrow.reset(wl_compositor_create_surface(connection.compositor()));
        wl_surface_attach(arrow.get(), wl_cursor_image_get_buffer(image), 0, 0);
        wl_surface_damage_buffer(arrow.get(), 0, 0, static_cast<int>(image->width),
                                 static_cast<int>(image->height));
        wl_surface_commit(arrow.get());
    }
    wl_pointer_set_cursor(pointer.get(), serial, arrow.get(), static_cast<int>(image->hotspot_x),
                          static_cast<int>(image->hotspot_y));
}

void PopupInput::listenToKeyboard() {
    keyboard.reset(wl_seat_get_keyboard(connection.seat()));
    static const wl_keyboard_listener listening{
        .keymap =
            [](void* self, wl_keyboard*, std::uint32_t format, int file, std::uint32_t size) {
                if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1)
                    static_cast<PopupInput*>(self)->readKeymap(file, size);
                close(file);
            },
        .enter = [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
        .leave = [](void* self, wl_keyboard*, std::uint32_t,
                    wl_surface*) { static_cast<PopupInput*>(self)->note(Released{}); },
        .key =
            [](void* self, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t key,
               std::uint32_t told) {
                static_cast<PopupInput*>(self)->key(key + session::PhysicalKey::firstKeycode,
                                                    told == WL_KEYBOARD_KEY_STATE_PRESSED);
            },
        .modifiers =
            [](void* data, wl_keyboard*, std::uint32_t, std::uint32_t depressed,
               std::uint32_t latched, std::uint32_t locked, std::uint32_t group) {
                const auto& self = *static_cast<PopupInput*>(data);
                if (self.state)
                    xkb_state_update_mask(self.state.get(), depressed, latched, locked, 0, 0,
                                          group);
            },
        .repeat_info = [](void*, wl_keyboard*, std::int32_t, std::int32_t) {}};
    wl_keyboard_add_listener(keyboard.get(), &listening, this);
}

void PopupInput::readKeymap(int file, std::uint32_t size) {
    void* const text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (text == MAP_FAILED) return;
    if (!context) context.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    state.reset();
    keymap.reset(xkb_keymap_new_from_buffer(context.get(), static_cast<const char*>(text),
                                            size > 0 ? size - 1 : 0, XKB_KEYMAP_FORMAT_TEXT_V1,
                                            XKB_KEYMAP_COMPILE_NO_FLAGS));
    munmap(text, size);
    if (keymap) state.reset(xkb_state_new(keymap.get()));
}

void PopupInput::key(std::uint32_t keycode, bool isDown) {
    if (!isDown) return note(Released{});
    if (!state) return;
    static constexpr std::pair<const char*, std::uint32_t> names[] = {
        {XKB_MOD_NAME_CTRL, Shortcut::control},
        {XKB_MOD_NAME_ALT, Shortcut::option},
        {XKB_MOD_NAME_SHIFT, Shortcut::shift},
        {XKB_MOD_NAME_LOGO, Shortcut::command}};
    platform::PopupLayer::Key pressed;
    pressed.symbol = xkb_state_key_get_one_sym(state.get(), keycode);
    char text[8] = {};
    if (xkb_state_key_get_utf8(state.get(), keycode, text, sizeof text) > 0) pressed.text = text;
    for (const auto& [name, flag] : names)
        if (xkb_state_mod_name_is_active(state.get(), name, XKB_STATE_MODS_EFFECTIVE) > 0)
            pressed.flags |= flag;
    note(Pressed{std::move(pressed)});
}

void PopupInput::disturb() {
    note(Disturbed{});
}

void PopupInput::note(Event event) {
    noted.push_back(std::move(event));
    if (noted.size() > 1) return;
    // What ends this meanwhile ends it too.
    later([this, weak = std::weak_ptr(alive)] {
        if (weak.lock()) deliver();
    });
}

void PopupInput::deliver() {
    const std::weak_ptr still(alive);
    const auto hears = listener;
    for (const Event& event : std::exchange(noted, {})) {
        if (still.expired()) return;
        tell(*hears, event);
    }
}

void PopupInput::tell(const platform::PopupLayer::Listener& hears, const Event& event) {
    if (const auto* entry = std::get_if<Entered>(&event))
        showArrow(entry->serial);
    else if (const auto* move = std::get_if<Moved>(&event))
        hears.moved(move->place);
    else if (const auto* click = std::get_if<Clicked>(&event))
        hears.clicked(click->button, click->isDown);
    else if (const auto* scroll = std::get_if<Scrolled>(&event))
        hears.scrolled(scroll->notches);
    else if (const auto* press = std::get_if<Pressed>(&event))
        hears.pressed(press->key);
    else if (std::holds_alternative<Released>(event))
        hears.released();
    else
        hears.disturbed();
}

} // namespace platform::wayland
