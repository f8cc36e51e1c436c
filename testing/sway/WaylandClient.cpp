#include "testing/sway/WaylandClient.h"

#include "viewporter-client-protocol.h"
#include "wlr-layer-shell-unstable-v1-client-protocol.h"
#include "wlr-virtual-pointer-unstable-v1-client-protocol.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

namespace support {

namespace {

template <typename Global>
void bind(Global*& global, wl_registry* registry, std::uint32_t name, const wl_interface& interface,
          std::uint32_t version) {
    if (!global)
        global = static_cast<Global*>(wl_registry_bind(registry, name, &interface, version));
}

} // namespace

WaylandClient::WaylandClient(const std::string& socketPath)
    : display(wl_display_connect(socketPath.c_str())) {
    if (!display) throw std::runtime_error("no compositor at " + socketPath);
    registry = wl_display_get_registry(display);
    static constexpr wl_registry_listener listener{
        [](void* data, wl_registry* from, std::uint32_t name, const char* text, std::uint32_t) {
            auto& self = *static_cast<WaylandClient*>(data);
            const std::string_view interface = text;
            if (interface == wl_compositor_interface.name)
                bind(self.compositor, from, name, wl_compositor_interface, 4);
            else if (interface == wl_shm_interface.name)
                bind(self.memory, from, name, wl_shm_interface, 1);
            else if (interface == wl_seat_interface.name)
                bind(self.seat, from, name, wl_seat_interface, 1);
            else if (interface == zwlr_layer_shell_v1_interface.name)
                bind(self.layers, from, name, zwlr_layer_shell_v1_interface, 3);
            else if (interface == zwlr_virtual_pointer_manager_v1_interface.name)
                bind(self.pointers, from, name, zwlr_virtual_pointer_manager_v1_interface, 1);
            else if (interface == wp_viewporter_interface.name)
                bind(self.viewporter, from, name, wp_viewporter_interface, 1);
            else if (interface == wl_output_interface.name)
                self.addOutput(name);
        },
        [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(registry, &listener, this);
    synchronize();
    if (!compositor || !memory || !seat || !layers || !viewporter)
        throw std::runtime_error("the compositor lacks what tests need");
}

WaylandClient::~WaylandClient() {
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
}

void WaylandClient::flush() const {
    constexpr int patience = 10'000; // milliseconds
    while (wl_display_flush(display) < 0) {
        pollfd polled{wl_display_get_fd(display), POLLOUT, 0};
        if (errno != EAGAIN || poll(&polled, 1, patience) <= 0)
            throw std::runtime_error("the compositor takes nothing");
    }
}

void WaylandClient::synchronize() const {
    if (wl_display_roundtrip(display) < 0) throw std::runtime_error("the compositor has gone");
}

void WaylandClient::addOutput(std::uint32_t global) {
    constexpr std::uint32_t versionWithNames = 4;
    Output& made = outputs[global];
    bind(made.output, registry, global, wl_output_interface, versionWithNames);
    static constexpr wl_output_listener listener{
        .geometry = [](void*, wl_output*, int, int, int, int, int, const char*, const char*,
                       int) {},
        .mode = [](void*, wl_output*, std::uint32_t, int, int, int) {},
        .done = [](void*, wl_output*) {},
        .scale = [](void*, wl_output*, int) {},
        .name = [](void* data, wl_output*,
                   const char* text) { static_cast<Output*>(data)->name = text; },
        .description = [](void*, wl_output*, const char*) {}};
    wl_output_add_listener(made.output, &listener, &made);
}

wl_output* WaylandClient::output(std::size_t index) const {
    synchronize(); // which their names come with
    std::map<std::string, wl_output*> named;
    for (const auto& [global, one] : outputs)
        named.emplace(one.name, one.output);
    if (index >= named.size()) throw std::out_of_range("no such output");
    return std::next(named.begin(), static_cast<std::ptrdiff_t>(index))->second;
}

struct Witness::State {
    mutable std::mutex guard;
    Report report;
    Clock::time_point since;
    std::uint32_t pixel = 0;
    bool isShown = false;
    WaylandClient* client = nullptr;
    wl_surface* surface = nullptr;
    wp_viewport* viewport = nullptr;
    zwlr_layer_surface_v1* layer = nullptr;
    wl_pointer* pointer = nullptr;

    void at(wl_fixed_t x, wl_fixed_t y) {
        const std::lock_guard lock(guard);
        report.lastX = wl_fixed_to_double(x);
        report.lastY = wl_fixed_to_double(y);
        report.farthestLeft = std::max(report.farthestLeft, report.lastX);
    }

    void show(std::uint32_t serial, std::uint32_t width, std::uint32_t height) {
        zwlr_layer_surface_v1_ack_configure(layer, serial);
        wp_viewport_set_destination(viewport, static_cast<int>(width), static_cast<int>(height));
        // The middle one of nine is stretched, as the edges of a buffer fade at a broken scale.
        const std::array<std::uint32_t, 9> pixels = [this] {
            std::array<std::uint32_t, 9> all{};
            all.fill(pixel);
            return all;
        }();
        wp_viewport_set_source(viewport, wl_fixed_from_int(1), wl_fixed_from_int(1),
                               wl_fixed_from_int(1), wl_fixed_from_int(1));
        const int file = memfd_create("pixel", MFD_CLOEXEC);
        (void)!write(file, pixels.data(), sizeof pixels);
        wl_shm_pool* const pool = wl_shm_create_pool(client->memory, file, sizeof pixels);
        wl_buffer* const buffer =
            wl_shm_pool_create_buffer(pool, 0, 3, 3, 3 * sizeof pixel, WL_SHM_FORMAT_ARGB8888);
        wl_shm_pool_destroy(pool);
        close(file);
        wl_surface_attach(surface, buffer, 0, 0);
        wl_surface_damage(surface, 0, 0, 1 << 14, 1 << 14);
        wl_surface_commit(surface);
        isShown = true;
    }

    void listen(std::uint32_t capabilities);
};

void Witness::State::listen(std::uint32_t capabilities) {
    const bool isThere = (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0;
    if (isThere == (pointer != nullptr)) return;
    if (!isThere) {
        wl_pointer_destroy(pointer);
        pointer = nullptr;
        return;
    }
    pointer = wl_seat_get_pointer(client->seat);
    static const wl_pointer_listener listener = [] {
        wl_pointer_listener all{};
        all.enter = [](void* data, wl_pointer*, std::uint32_t, wl_surface*, wl_fixed_t x,
                       wl_fixed_t y) {
            auto& self = *static_cast<State*>(data);
            self.at(x, y);
            const std::lock_guard lock(self.guard);
            self.since = self.report.came = Clock::now();
            if (self.report.entered++ == 0) self.report.firstEntered = self.since;
            self.report.isOver = true;
        };
        all.leave = [](void* data, wl_pointer*, std::uint32_t, wl_surface*) {
            auto& self = *static_cast<State*>(data);
            const std::lock_guard lock(self.guard);
            self.report.isOver = false;
            self.report.seconds += std::chrono::duration<double>(Clock::now() - self.since).count();
        };
        all.motion = [](void* data, wl_pointer*, std::uint32_t, wl_fixed_t x, wl_fixed_t y) {
            static_cast<State*>(data)->at(x, y);
        };
        all.button = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t,
                        std::uint32_t pressed) {
            auto& self = *static_cast<State*>(data);
            const std::lock_guard lock(self.guard);
            self.report.buttons += pressed == WL_POINTER_BUTTON_STATE_PRESSED ? 1 : 0;
        };
        all.axis = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {};
        return all;
    }();
    wl_pointer_add_listener(pointer, &listener, this);
}

Witness::Witness(const std::string& socketPath, std::size_t output, Where where,
                 std::uint32_t pixel)
    : client(std::make_unique<WaylandClient>(socketPath)),
      state(std::make_unique<State>()),
      stop(eventfd(0, EFD_CLOEXEC)) {
    State& own = *state;
    own.client = client.get();
    own.pixel = pixel;
    static constexpr wl_seat_listener seats{[](void* data, wl_seat*, std::uint32_t capabilities) {
                                                static_cast<State*>(data)->listen(capabilities);
                                            },
                                            [](void*, wl_seat*, const char*) {}};
    wl_seat_add_listener(client->seat, &seats, state.get());
    own.surface = wl_compositor_create_surface(client->compositor);
    own.viewport = wp_viewporter_get_viewport(client->viewporter, own.surface);
    own.layer = zwlr_layer_shell_v1_get_layer_surface(
        client->layers, own.surface, client->output(output),
        where == Where::belowEverything ? ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND
                                        : ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY,
        "witness");
    static constexpr zwlr_layer_surface_v1_listener configuring{
        [](void* data, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t width,
           std::uint32_t height) { static_cast<State*>(data)->show(serial, width, height); },
        [](void*, zwlr_layer_surface_v1*) {}};
    zwlr_layer_surface_v1_add_listener(own.layer, &configuring, state.get());
    zwlr_layer_surface_v1_set_anchor(own.layer, 15); // all four edges
    zwlr_layer_surface_v1_set_exclusive_zone(own.layer, -1);
    wl_surface_commit(own.surface);
    while (!own.isShown)
        client->synchronize();
    client->synchronize();
    reader = std::thread([this] { read(); });
}

Witness::~Witness() {
    const std::uint64_t one = 1;
    (void)!write(stop, &one, sizeof one);
    reader.join();
    close(stop);
}

void Witness::read() {
    wl_display* const display = client->display;
    for (;;) {
        while (wl_display_prepare_read(display) != 0)
            wl_display_dispatch_pending(display);
        wl_display_flush(display);
        pollfd polled[2] = {{wl_display_get_fd(display), POLLIN, 0}, {stop, POLLIN, 0}};
        if (poll(polled, 2, -1) <= 0 || polled[1].revents || !(polled[0].revents & POLLIN)) {
            wl_display_cancel_read(display);
            if (polled[1].revents || polled[0].revents) return;
            continue;
        }
        if (wl_display_read_events(display) != 0) return;
        wl_display_dispatch_pending(display);
    }
}

Witness::Report Witness::report() const {
    const std::lock_guard lock(state->guard);
    Report now = state->report;
    if (now.isOver)
        now.seconds += std::chrono::duration<double>(Clock::now() - state->since).count();
    return now;
}

} // namespace support
