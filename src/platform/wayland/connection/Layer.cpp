#include "platform/wayland/connection/Layer.h"

namespace platform::wayland {

namespace {

// By which a surface of this program's layers is told from others.
const char* const tag = "layer";

} // namespace

Layer::Layer(Connection& x, const Look& look)
    : connection(x),
      area(look.area),
      pixel(look.pixel),
      pane(x),
      layer(zwlr_layer_shell_v1_get_layer_surface(x.layers(), pane.surface(), look.place.output,
                                                  look.isBelow ? ZWLR_LAYER_SHELL_V1_LAYER_TOP
                                                               : ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY,
                                                  "overlay")) {
    wl_proxy_set_tag(reinterpret_cast<wl_proxy*>(pane.surface()), &tag);
    wl_surface_set_user_data(pane.surface(), this);
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
    zwlr_layer_surface_v1_set_margin(layer.get(), static_cast<int>(area.y - look.place.area.y), 0,
                                     0, static_cast<int>(area.x - look.place.area.x));
    zwlr_layer_surface_v1_set_size(layer.get(), static_cast<std::uint32_t>(area.width),
                                   static_cast<std::uint32_t>(area.height));
    zwlr_layer_surface_v1_set_exclusive_zone(layer.get(), -1); // over panels
    zwlr_layer_surface_v1_set_keyboard_interactivity(
        layer.get(), look.takesKeyboard ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE
                                        : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
    commit();
}

Layer::~Layer() {
    wl_surface_set_user_data(pane.surface(), nullptr);
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
        pane.commit();
        return;
    }
    if (width > 0) area.width = width;
    if (height > 0) area.height = height;
    pane.stretch(area.width, area.height);
    isConfigured = true;
    draw();
}

void Layer::setPixel(Pixel wanted) {
    pixel = wanted;
    if (isConfigured) draw();
}

void Layer::draw() {
    pane.paint(pixel);
    commit();
}

void Layer::setCatches(bool catches) {
    pane.setCatches(catches);
    commit();
}

void Layer::commit() {
    pane.commit();
    connection.flush();
}

} // namespace platform::wayland
