#include "testing/gnome/ShellGame.h"

#include "pointer-constraints-unstable-v1-client-protocol.h"
#include "xdg-shell-client-protocol.h"

#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

namespace support {

struct ShellGame::Parts {
    explicit Parts(const std::string& socket) : display(wl_display_connect(socket.c_str())) {
        if (!display) throw std::runtime_error("the shell takes no client");
        static const wl_registry_listener listener{
            [](void* self, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t) { static_cast<Parts*>(self)->bind(registry, name, interface); },
            [](void*, wl_registry*, std::uint32_t) {}};
        wl_registry_add_listener(wl_display_get_registry(display), &listener, this);
        wl_display_roundtrip(display);
        if (!compositor || !memory || !seat || !base || !constraints)
            throw std::runtime_error("the shell lacks a protocol");
    }
    // What belongs to the connection ends with it.
    ~Parts() { wl_display_disconnect(display); }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    void bind(wl_registry* registry, std::uint32_t name, const char* interface) {
        const auto take = [&](auto*& global, const wl_interface& wanted) {
            if (std::strcmp(interface, wanted.name) != 0) return;
            global = static_cast<std::remove_reference_t<decltype(global)>>(
                wl_registry_bind(registry, name, &wanted, 1));
        };
        take(compositor, wl_compositor_interface);
        take(memory, wl_shm_interface);
        take(seat, wl_seat_interface);
        take(base, xdg_wm_base_interface);
        take(constraints, zwp_pointer_constraints_v1_interface);
    }

    void show() {
        surface = wl_compositor_create_surface(compositor);
        static const xdg_wm_base_listener alive{
            [](void*, xdg_wm_base* wm, std::uint32_t serial) { xdg_wm_base_pong(wm, serial); }};
        xdg_wm_base_add_listener(base, &alive, this);
        xdg_surface* const role = xdg_wm_base_get_xdg_surface(base, surface);
        static const xdg_surface_listener configured{
            [](void* self, xdg_surface* xdg, std::uint32_t serial) {
                xdg_surface_ack_configure(xdg, serial);
                static_cast<Parts*>(self)->draw();
            }};
        xdg_surface_add_listener(role, &configured, this);
        xdg_toplevel* const window = xdg_surface_get_toplevel(role);
        static const xdg_toplevel_listener sized{
            [](void* self, xdg_toplevel*, int w, int h, wl_array*) {
                auto& own = *static_cast<Parts*>(self);
                own.width = w;
                own.height = h;
            },
            [](void*, xdg_toplevel*) {}, nullptr, nullptr};
        xdg_toplevel_add_listener(window, &sized, this);
        xdg_toplevel_set_title(window, "game");
        xdg_toplevel_set_fullscreen(window, nullptr);
        wl_surface_commit(surface);
    }

    void draw() {
        if (width <= 0 || height <= 0) return;
        const auto size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
        const int file = memfd_create("game", 0);
        if (file < 0 || ftruncate(file, static_cast<off_t>(size)) != 0)
            throw std::runtime_error("no memory for a window");
        wl_shm_pool* const pool = wl_shm_create_pool(memory, file, static_cast<int>(size));
        wl_surface_attach(
            surface,
            wl_shm_pool_create_buffer(pool, 0, width, height, width * 4, WL_SHM_FORMAT_XRGB8888), 0,
            0);
        wl_surface_damage(surface, 0, 0, width, height);
        wl_surface_commit(surface);
        wl_shm_pool_destroy(pool);
        close(file);
        isDrawn = true;
    }

    void take(Takes takes) {
        wl_pointer* const pointer = wl_seat_get_pointer(seat);
        constexpr auto always = ZWP_POINTER_CONSTRAINTS_V1_LIFETIME_PERSISTENT;
        if (takes == Takes::locks) {
            static const zwp_locked_pointer_v1_listener told{
                [](void* self, auto*) { static_cast<Parts*>(self)->has = true; },
                [](void* self, auto*) { static_cast<Parts*>(self)->has = false; }};
            zwp_locked_pointer_v1_add_listener(zwp_pointer_constraints_v1_lock_pointer(
                                                   constraints, surface, pointer, nullptr, always),
                                               &told, this);
        } else {
            static const zwp_confined_pointer_v1_listener told{
                [](void* self, auto*) { static_cast<Parts*>(self)->has = true; },
                [](void* self, auto*) { static_cast<Parts*>(self)->has = false; }};
            zwp_confined_pointer_v1_add_listener(
                zwp_pointer_constraints_v1_confine_pointer(constraints, surface, pointer, nullptr,
                                                           always),
                &told, this);
        }
    }

    bool soon(const bool& reached) {
        return waitUntil([&] { return wl_display_roundtrip(display) < 0 || reached; }) && reached;
    }

    wl_display* display;
    wl_compositor* compositor = nullptr;
    wl_shm* memory = nullptr;
    wl_seat* seat = nullptr;
    xdg_wm_base* base = nullptr;
    zwp_pointer_constraints_v1* constraints = nullptr;
    wl_surface* surface = nullptr;
    int width = 0, height = 0;
    bool isDrawn = false, has = false;
};

ShellGame::ShellGame(const PrivateShell& own, Takes takes)
    : shell(own),
      parts(std::make_unique<Parts>(shell.environment().at("XDG_RUNTIME_DIR") + "/" +
                                    shell.environment().at("WAYLAND_DISPLAY"))) {
    parts->show();
    if (!parts->soon(parts->isDrawn)) throw std::runtime_error("the game is not shown");
    if (takes == Takes::nothing) return;
    parts->take(takes);
    if (!parts->soon(parts->has)) throw std::runtime_error("the game does not get the pointer");
}

ShellGame::~ShellGame() {
    parts.reset();
    try {
        (void)waitUntil([this] { return shell.isTrue("global.get_window_actors().length === 0"); });
    } catch (const std::runtime_error&) {
        // The shell has gone.
    }
}

bool ShellGame::hasPointer() {
    wl_display_roundtrip(parts->display);
    return parts->has;
}

} // namespace support
