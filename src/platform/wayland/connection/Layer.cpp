#include "platform/wayland/connection/Layer.h"

#include <algorithm>
#include <array>
#include <sys/mman.h>
#include <unistd.h>

namespace platform::wayland {

namespace {

// By which a surface of this program's layers is told from others.
const char* const tag = "layer";

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

Layer::Layer(Connection& x, const Look& look)
    : connection(x),
      area(look.area),
      pixel(look.pixel),
      drawn(wl_compositor_create_surface(x.compositor())),
      viewport(wp_viewporter_get_viewport(x.viewporter(), drawn.get())),
      layer(zwlr_layer_shell_v1_get_layer_surface(x.layers(), drawn.get(), look.place.output,
                                                  look.isBelow ? ZWLR_LAYER_SHELL_V1_LAYER_TOP
                                                               : ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY,
                                                  "overlay")) {
    wl_proxy_set_tag(reinterpret_cast<wl_proxy*>(drawn.get()), &tag);
    wl_surface_set_user_data(drawn.get(), this);
    static constexpr zwlr_layer_surface_v1_listener listener{
        .configure =
            [](void* self, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t width,
               std::uint32_t height) {
                static_cast<Layer*>(self)->configured(serial, width, height);
            },
        .closed = [](void* self,
                     zwlr_layer_surface_v1*) { static_cast<Layer*>(self)->closed = true; }};
    zwlr_layer_surface_v1_add_listener(layer.get(), &listener, this);
    zwlr_layer_surface_v1_set_anchor(layer.get(), ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP |
                                                      ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
    setMargin(look.place.area);
    zwlr_layer_surface_v1_set_size(layer.get(), static_cast<std::uint32_t>(area.width),
                                   static_cast<std::uint32_t>(area.height));
    zwlr_layer_surface_v1_set_exclusive_zone(layer.get(), -1); // over panels
    zwlr_layer_surface_v1_set_keyboard_interactivity(
        layer.get(), look.takesKeyboard ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE
                                        : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
    wl_surface_commit(drawn.get());
    connection.flush();
}

Layer::~Layer() {
    wl_surface_set_user_data(drawn.get(), nullptr);
    layer.reset();
    viewport.reset();
    drawn.reset();
    connection.flush();
}

void Layer::setMargin(const Rect& screen) {
    zwlr_layer_surface_v1_set_margin(layer.get(), static_cast<int>(area.y - screen.y), 0, 0,
                                     static_cast<int>(area.x - screen.x));
}

void Layer::moveTo(Point corner, const Rect& screen) {
    area.x = corner.x;
    area.y = corner.y;
    setMargin(screen);
    wl_surface_commit(drawn.get());
    connection.flush();
}

Layer* Layer::of(wl_surface* surface) {
    if (!surface || wl_proxy_get_tag(reinterpret_cast<wl_proxy*>(surface)) != &tag) return nullptr;
    return static_cast<Layer*>(wl_surface_get_user_data(surface));
}

void Layer::configured(std::uint32_t serial, std::uint32_t width, std::uint32_t height) {
    zwlr_layer_surface_v1_ack_configure(layer.get(), serial);
    const bool isSame = isConfigured && (width == 0 || area.width == width) &&
                        (height == 0 || area.height == height);
    if (isSame) {
        wl_surface_commit(drawn.get());
        return;
    }
    if (width > 0) area.width = width;
    if (height > 0) area.height = height;
    constexpr wl_fixed_t one = 0x100; // of 24.8 bits
    wp_viewport_set_source(viewport.get(), one, one, one, one);
    wp_viewport_set_destination(viewport.get(), std::max(1, static_cast<int>(area.width)),
                                std::max(1, static_cast<int>(area.height)));
    isConfigured = true;
    draw();
}

void Layer::setPixel(Pixel wanted) {
    pixel = wanted;
    if (isConfigured) draw();
}

void Layer::draw() {
    wl_surface_attach(drawn.get(), bufferOf(connection.memory(), pixel), 0, 0);
    wl_surface_damage_buffer(drawn.get(), 0, 0, bufferSide, bufferSide);
    wl_surface_commit(drawn.get());
    connection.flush();
}

void Layer::setCatches(bool catches) {
    wl_region* const none =
        catches ? nullptr : wl_compositor_create_region(connection.compositor());
    wl_surface_set_input_region(drawn.get(), none);
    if (none) wl_region_destroy(none);
    wl_surface_commit(drawn.get());
    connection.flush();
}

} // namespace platform::wayland
