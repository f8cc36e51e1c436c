#include "platform/wayland/overlay/PopupLayer.h"

#include "platform/wayland/overlay/PopupInput.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace platform::wayland {

namespace {

constexpr std::chrono::milliseconds patience{300};

/// It destroys itself when the compositor has done with it. Null where there is no memory.
wl_buffer* bufferOf(wl_shm* memory, std::span<const std::uint32_t> pixels, int width, int height) {
    const std::size_t size = pixels.size_bytes();
    const int file = memfd_create("popup", MFD_CLOEXEC);
    if (file < 0) return nullptr;
    wl_buffer* buffer = nullptr;
    void* const room = ftruncate(file, static_cast<off_t>(size)) == 0
                           ? mmap(nullptr, size, PROT_WRITE, MAP_SHARED, file, 0)
                           : MAP_FAILED;
    if (room != MAP_FAILED) {
        std::memcpy(room, pixels.data(), size);
        munmap(room, size);
        wl_shm_pool* const pool = wl_shm_create_pool(memory, file, static_cast<int>(size));
        buffer =
            wl_shm_pool_create_buffer(pool, 0, width, height, width * 4, WL_SHM_FORMAT_ARGB8888);
        wl_shm_pool_destroy(pool);
        static constexpr wl_buffer_listener listener{
            [](void*, wl_buffer* released) { wl_buffer_destroy(released); }};
        wl_buffer_add_listener(buffer, &listener, nullptr);
    }
    close(file);
    return buffer;
}

} // namespace

/// Covers an output and is not seen.
class PopupLayer::Net {
  public:
    Net(Connection& x, const Outputs::Place& place, bool takesKeyboard)
        : area(place.area),
          connection(x),
          drawn(wl_compositor_create_surface(x.compositor())),
          viewport(wp_viewporter_get_viewport(x.viewporter(), drawn.get())),
          layer(zwlr_layer_shell_v1_get_layer_surface(x.layers(), drawn.get(), place.output,
                                                      ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "menu")) {
        static constexpr zwlr_layer_surface_v1_listener listener{
            .configure = [](void* self, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t,
                            std::uint32_t) { static_cast<Net*>(self)->configured(serial); },
            .closed = [](void*, zwlr_layer_surface_v1*) {}}; // the outputs tell
        zwlr_layer_surface_v1_add_listener(layer.get(), &listener, this);
        zwlr_layer_surface_v1_set_anchor(layer.get(), ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP |
                                                          ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
        zwlr_layer_surface_v1_set_size(layer.get(), static_cast<std::uint32_t>(area.width),
                                       static_cast<std::uint32_t>(area.height));
        zwlr_layer_surface_v1_set_exclusive_zone(layer.get(), -1); // over panels
        if (takesKeyboard)
            zwlr_layer_surface_v1_set_keyboard_interactivity(
                layer.get(), ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE);
        wl_surface_commit(drawn.get());
    }

    wl_surface* surface() const { return drawn.get(); }

    const Rect area; ///< layout coordinates

  private:
    void configured(std::uint32_t serial) {
        zwlr_layer_surface_v1_ack_configure(layer.get(), serial);
        constexpr std::uint32_t clear = 0;
        wp_viewport_set_destination(viewport.get(), static_cast<int>(area.width),
                                    static_cast<int>(area.height));
        wl_surface_attach(drawn.get(), bufferOf(connection.memory(), {&clear, 1}, 1, 1), 0, 0);
        wl_surface_damage_buffer(drawn.get(), 0, 0, 1, 1);
        wl_surface_commit(drawn.get());
        connection.flush();
    }

    Connection& connection;
    Handle<wl_surface> drawn;
    Handle<wp_viewport> viewport;
    Handle<zwlr_layer_surface_v1> layer;
};

class PopupLayer::Popup {
  public:
    Popup(Connection& x, Net& below)
        : net(below),
          connection(x),
          drawn(wl_compositor_create_surface(x.compositor())),
          viewport(wp_viewporter_get_viewport(x.viewporter(), drawn.get())),
          part(wl_subcompositor_get_subsurface(x.subcompositor(), drawn.get(), below.surface())) {
        // The pointer is the net's, which has it also beside the popup.
        wl_region* const none = wl_compositor_create_region(x.compositor());
        wl_surface_set_input_region(drawn.get(), none);
        wl_region_destroy(none);
        wl_subsurface_set_desync(part.get());
    }

    void show(const Picture& picture) {
        wl_subsurface_set_position(part.get(), static_cast<int>(picture.corner.x - net.area.x),
                                   static_cast<int>(picture.corner.y - net.area.y));
        const auto length = [&](int pixels) {
            return std::max(1, static_cast<int>(std::lround(pixels / picture.scale)));
        };
        wp_viewport_set_destination(viewport.get(), length(picture.width), length(picture.height));
        wl_surface_attach(
            drawn.get(),
            bufferOf(connection.memory(), picture.pixels, picture.width, picture.height), 0, 0);
        wl_surface_damage_buffer(drawn.get(), 0, 0, picture.width, picture.height);
        wl_surface_commit(drawn.get());
        wl_surface_commit(net.surface()); // by which the position is in force
    }

    Net& net;

  private:
    Connection& connection;
    Handle<wl_surface> drawn;
    Handle<wp_viewport> viewport;
    Handle<wl_subsurface> part;
};

/// As large as the panels leave room for on an output; it is never drawn.
class PopupLayer::Room {
  public:
    Room(const Connection& x, wl_output* output)
        : drawn(wl_compositor_create_surface(x.compositor())),
          layer(zwlr_layer_shell_v1_get_layer_surface(x.layers(), drawn.get(), output,
                                                      ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "room")) {
        static constexpr zwlr_layer_surface_v1_listener listener{
            .configure =
                [](void* self, zwlr_layer_surface_v1*, std::uint32_t, std::uint32_t width,
                   std::uint32_t height) {
                    static_cast<Room*>(self)->told = Point{double(width), double(height)};
                },
            .closed = [](void*, zwlr_layer_surface_v1*) {}};
        zwlr_layer_surface_v1_add_listener(layer.get(), &listener, this);
        zwlr_layer_surface_v1_set_anchor(layer.get(), ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP |
                                                          ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
                                                          ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT |
                                                          ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT);
        wl_surface_commit(drawn.get());
    }
    /// Width and height.
    const std::optional<Point>& size() const { return told; }

  private:
    Handle<wl_surface> drawn;
    Handle<zwlr_layer_surface_v1> layer;
    std::optional<Point> told;
};

PopupLayer::PopupLayer(Connection& x, Outputs& screens, Later afterwards,
                       std::function<void(bool)> tell)
    : connection(x), outputs(screens), later(std::move(afterwards)), lasting(std::move(tell)) {}

PopupLayer::~PopupLayer() {
    close();
}

std::optional<Point> PopupLayer::open(Listener listener) {
    close();
    lasting(true);
    input = std::make_unique<PopupInput>(connection, std::move(listener), later);
    for (const Outputs::Place& place : outputs.places()) {
        nets.push_back(std::make_unique<Net>(connection, place, nets.empty()));
        input->hear(nets.back()->surface(), {place.area.x, place.area.y});
    }
    outputs.onLayout(this, [this] {
        if (input) input->disturb();
    });
    // What catches the pointer is told where it is as soon as it is drawn.
    if (input->hasPointer())
        connection.waitFor([this] { return input->place().has_value(); },
                           Connection::Clock::now() + patience);
    return input->place();
}

PopupLayer::Net* PopupLayer::netAt(Point place) const {
    const auto found = std::ranges::find_if(nets, [&](const auto& net) {
        const Rect& area = net->area;
        return place.x >= area.x && place.y >= area.y && place.x < area.x + area.width &&
               place.y < area.y + area.height;
    });
    return found == nets.end() ? nullptr : found->get();
}

// Where there is a panel at the opposite side too, the two are taken for one.
Rect PopupLayer::roomAt(Point place) {
    const auto leave = [](double at, double& begin, double& length, double room) {
        const double panels = length - room;
        if (at < begin + panels)
            begin += panels;
        else if (at < begin + length - panels)
            return;
        length -= panels;
    };
    for (const Outputs::Place& output : outputs.places()) {
        Rect area = output.area;
        if (!area.contains(place)) continue;
        const Room room(connection, output.output);
        if (connection.waitFor([&] { return room.size().has_value(); },
                               Connection::Clock::now() + patience)) {
            leave(place.x, area.x, area.width, room.size()->x);
            leave(place.y, area.y, area.height, room.size()->y);
        }
        return area;
    }
    return {};
}

void PopupLayer::show(int number, const Picture& picture) {
    Net* const net = netAt(picture.corner);
    if (!net || picture.pixels.empty()) return hide(number);
    auto& popup = popups[number];
    if (!popup || &popup->net != net) popup = std::make_unique<Popup>(connection, *net);
    popup->show(picture);
    connection.flush();
}

void PopupLayer::hide(int popup) {
    if (popups.erase(popup) > 0) connection.flush();
}

void PopupLayer::close() {
    if (!input) return;
    outputs.onLayout(this, {});
    popups.clear();
    nets.clear();
    input.reset();
    lasting(false);
    connection.flush();
}

} // namespace platform::wayland
