#include "platform/wayland/connection/Pane.h"

#include <algorithm>
#include <array>
#include <sys/mman.h>
#include <unistd.h>

namespace platform::wayland {

namespace {

void destroyReleased(void*, wl_buffer* buffer) {
    wl_buffer_destroy(buffer);
}

// Only the middle pixel is stretched. On a scaled output a compositor that draws by software takes
// what lies around it in, and beyond the edge of a buffer nothing does: one pixel alone would fade
// from the middle of the monitor to its sides.
constexpr int bufferSide = 3;

/// A buffer of one colour, which destroys itself when the compositor has done with it.
wl_buffer* bufferOf(wl_shm* memory, Pixel pixel) {
    const int file = memfd_create("pixel", MFD_CLOEXEC);
    if (file < 0) return nullptr;
    wl_buffer* buffer = nullptr;
    std::array<Pixel, bufferSide * bufferSide> pixels{};
    pixels.fill(pixel);
    if (write(file, pixels.data(), sizeof pixels) == sizeof pixels) {
        wl_shm_pool* const pool = wl_shm_create_pool(memory, file, sizeof pixels);
        buffer = wl_shm_pool_create_buffer(pool, 0, bufferSide, bufferSide,
                                           bufferSide * sizeof pixel, WL_SHM_FORMAT_ARGB8888);
        wl_shm_pool_destroy(pool);
        static constexpr wl_buffer_listener listener{destroyReleased};
        wl_buffer_add_listener(buffer, &listener, nullptr);
    }
    close(file);
    return buffer;
}

} // namespace

Pane::Pane(Connection& x)
    : connection(x),
      drawn(wl_compositor_create_surface(x.compositor())),
      viewport(wp_viewporter_get_viewport(x.viewporter(), drawn.get())) {}

Pane::~Pane() {
    viewport.reset();
    drawn.reset();
    connection.flush();
}

void Pane::stretch(double width, double height) {
    constexpr wl_fixed_t one = 0x100; // of 24.8 bits
    wp_viewport_set_source(viewport.get(), one, one, one, one);
    wp_viewport_set_destination(viewport.get(), std::max(1, static_cast<int>(width)),
                                std::max(1, static_cast<int>(height)));
}

void Pane::paint(Pixel pixel) {
    wl_surface_attach(drawn.get(), bufferOf(connection.memory(), pixel), 0, 0);
    wl_surface_damage_buffer(drawn.get(), 0, 0, bufferSide, bufferSide);
}

void Pane::setCatches(bool catches) {
    wl_region* const none =
        catches ? nullptr : wl_compositor_create_region(connection.compositor());
    wl_surface_set_input_region(drawn.get(), none);
    if (none) wl_region_destroy(none);
}

} // namespace platform::wayland
