#include "platform/wayland/pointer/PointerSeat.h"

#include <utility>

namespace platform::wayland {

PointerSeat::PointerSeat(Connection& x, KeyboardSeat& keys) : connection(x), keyboard(keys) {
    connection.onSeat([this](std::uint32_t capabilities) {
        find((capabilities & WL_SEAT_CAPABILITY_POINTER) != 0);
        keyboard.find((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0);
    });
}

PointerSeat::~PointerSeat() {
    connection.onSeat({});
}

void PointerSeat::find(bool there) {
    if (there == isThere()) return;
    entered = nullptr;
    relative.reset();
    pointer.reset();
    if (!there) return;
    pointer.reset(wl_seat_get_pointer(connection.seat()));
    // Later versions of the structure have more.
    static const wl_pointer_listener pointing = [] {
        wl_pointer_listener all{};
        all.enter = [](void* data, wl_pointer*, std::uint32_t serial, wl_surface* surface,
                       wl_fixed_t x, wl_fixed_t y) {
            auto& self = *static_cast<PointerSeat*>(data);
            self.entered = surface;
            self.enterSerial = serial;
            self.hideCursor(self.hides);
            self.at(x, y);
        };
        all.leave = [](void* data, wl_pointer*, std::uint32_t, wl_surface*) {
            auto& self = *static_cast<PointerSeat*>(data);
            self.entered = nullptr;
            self.last.reset();
            if (self.listener) self.listener->left();
        };
        all.motion = [](void* self, wl_pointer*, std::uint32_t, wl_fixed_t x, wl_fixed_t y) {
            static_cast<PointerSeat*>(self)->at(x, y);
        };
        all.button = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t code,
                        std::uint32_t state) {
            auto& self = *static_cast<PointerSeat*>(data);
            if (self.listener && self.focus())
                self.listener->button(code, state == WL_POINTER_BUTTON_STATE_PRESSED);
        };
        all.axis = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {
            auto& self = *static_cast<PointerSeat*>(data);
            if (self.listener && self.focus()) self.listener->scrolled();
        };
        return all;
    }();
    wl_pointer_add_listener(pointer.get(), &pointing, this);
    if (tellsSteps) listenToSteps();
    connection.flush();
}

void PointerSeat::tellSteps(bool on) {
    if (std::exchange(tellsSteps, on) == on) return;
    if (!on)
        relative.reset();
    else if (pointer)
        listenToSteps();
    connection.flush();
}

void PointerSeat::listenToSteps() {
    relative.reset(
        zwp_relative_pointer_manager_v1_get_relative_pointer(connection.relative(), pointer.get()));
    // It has the one event. A listener's call would be put together anew for each of them, and a
    // fast mouse sends eight thousand in a second.
    constexpr wl_dispatcher_func_t meaning = [](const void*, void* from, std::uint32_t,
                                                const wl_message*, wl_argument* told) {
        auto& self =
            *static_cast<PointerSeat*>(wl_proxy_get_user_data(static_cast<wl_proxy*>(from)));
        if (!self.listener || !self.focus()) return 0;
        const auto microseconds = (std::uint64_t{told[0].u} << 32) | told[1].u;
        self.listener->meant({wl_fixed_to_double(told[2].f), wl_fixed_to_double(told[3].f)},
                             static_cast<double>(microseconds) * 1e-6);
        return 0;
    };
    wl_proxy_add_dispatcher(reinterpret_cast<wl_proxy*>(relative.get()), meaning, nullptr, this);
}

void PointerSeat::at(wl_fixed_t x, wl_fixed_t y) {
    const Layer* const layer = focus();
    if (!layer) return;
    last = layer->toLayout({wl_fixed_to_double(x), wl_fixed_to_double(y)});
    if (listener) listener->moved(*last);
}

void PointerSeat::hideCursor(bool on) {
    hides = on;
    if (!hides || !focus()) return;
    wl_pointer_set_cursor(pointer.get(), enterSerial, nullptr, 0, 0);
    connection.flush();
}

void PointerSeat::forget(const Layer& layer) {
    if (entered != layer.surface()) return;
    entered = nullptr;
    last.reset();
}

} // namespace platform::wayland
