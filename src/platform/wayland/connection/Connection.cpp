#include "platform/wayland/connection/Connection.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform::wayland {

namespace {

constexpr std::chrono::seconds patience{1};

/// Binds at the version that both sides know.
template <typename Owner>
void take(Owner& owner, wl_registry* registry, std::uint32_t name, const wl_interface& interface,
          std::uint32_t offered, std::uint32_t known) {
    if (owner) return; // of several seats the first one is the user's
    owner.reset(static_cast<typename Owner::pointer>(
        wl_registry_bind(registry, name, &interface, std::min(offered, known))));
}

} // namespace

Connection::Connection(Descriptors& watcher, Log& writer, std::function<void()> gone)
    : descriptors(watcher), log(writer), lost(std::move(gone)) {}

Connection::Opened Connection::open(Descriptors& descriptors, Log& log, std::function<void()> lost,
                                    std::span<const std::string_view> needed) {
    std::unique_ptr<Connection> made(new Connection(descriptors, log, std::move(lost)));
    std::string error = made->bind(needed);
    if (!error.empty()) return {nullptr, std::move(error)};
    return {std::move(made), {}};
}

std::string Connection::bind(std::span<const std::string_view> needed) {
    display.reset(wl_display_connect(nullptr));
    if (!display) return "the Wayland compositor cannot be reached";
    registry.reset(wl_display_get_registry(display.get()));
    static constexpr wl_registry_listener listener{
        [](void* self, wl_registry*, std::uint32_t name, const char* interface,
           std::uint32_t version) {
            static_cast<Connection*>(self)->global(name, interface, version);
        },
        [](void* self, wl_registry*, std::uint32_t name) {
            auto& connection = *static_cast<Connection*>(self);
            if (connection.outputList.contains(name) && connection.outputWent)
                connection.outputWent(name);
            connection.outputList.erase(name);
        }};
    wl_registry_add_listener(registry.get(), &listener, this);
    if (!synchronize()) return "the Wayland compositor does not answer";
    for (const std::string_view interface : needed)
        if (!has(interface)) return "the Wayland compositor has no " + std::string(interface);
    wake = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (wake >= 0)
        descriptors.watchReadable(wake, [this] {
            std::uint64_t count = 0;
            if (::read(wake, &count, sizeof count) > 0) endBatch();
        });
    readAtOnce(true);
    return {};
}

wl_proxy* Connection::bind(const wl_interface& interface, std::uint32_t version) {
    const auto found = offered.find(std::string_view(interface.name));
    if (found == offered.end() || found->second.version < version) return nullptr;
    return static_cast<wl_proxy*>(
        wl_registry_bind(registry.get(), found->second.name, &interface, version));
}

Connection::~Connection() {
    if (wake >= 0) {
        descriptors.unwatch(wake);
        close(wake);
    }
    readAtOnce(false);
    flush();
}

pid_t processBehind(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    const bool told = ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
    return told ? peer.pid : 0;
}

pid_t compositorProcess() {
    const Handle<wl_display> display(wl_display_connect(nullptr));
    return display ? processBehind(wl_display_get_fd(display.get())) : 0;
}

std::string Connection::compositorName() const {
    std::ifstream file("/proc/" + std::to_string(processBehind(wl_display_get_fd(display.get()))) +
                       "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

void Connection::global(std::uint32_t name, std::string_view interface, std::uint32_t version) {
    wl_registry* const from = registry.get();
    offered.try_emplace(std::string(interface), name, version);
    if (interface == wl_compositor_interface.name)
        take(globals.compositor, from, name, wl_compositor_interface, version, 4);
    else if (interface == wl_subcompositor_interface.name)
        take(globals.subcompositor, from, name, wl_subcompositor_interface, version, 1);
    else if (interface == wl_shm_interface.name)
        take(globals.memory, from, name, wl_shm_interface, version, 1);
    else if (interface == wl_seat_interface.name && !globals.seat) {
        // From the fifth version on a frame would come after each motion.
        take(globals.seat, from, name, wl_seat_interface, version, 4);
        listenToSeat();
    } else if (interface == zwlr_layer_shell_v1_interface.name)
        take(globals.layers, from, name, zwlr_layer_shell_v1_interface, version, 4);
    else if (interface == wp_viewporter_interface.name)
        take(globals.viewporter, from, name, wp_viewporter_interface, version, 1);
    else if (interface == zwp_relative_pointer_manager_v1_interface.name)
        take(globals.relative, from, name, zwp_relative_pointer_manager_v1_interface, version, 1);
    else if (interface == zxdg_output_manager_v1_interface.name)
        take(globals.outputs, from, name, zxdg_output_manager_v1_interface, version, 3);
    else if (interface == zwp_idle_inhibit_manager_v1_interface.name)
        take(globals.idle, from, name, zwp_idle_inhibit_manager_v1_interface, version, 1);
    else if (interface == zwlr_virtual_pointer_manager_v1_interface.name)
        take(globals.pointers, from, name, zwlr_virtual_pointer_manager_v1_interface, version, 1);
    else if (interface == wl_output_interface.name && version >= 3) {
        auto& output = outputList[name];
        take(output, from, name, wl_output_interface, version, 3);
        if (outputCame) outputCame(name, output.get());
    }
}

// It tells what it has right after it was bound, before anybody else could listen.
void Connection::listenToSeat() {
    static const wl_seat_listener listener{.capabilities =
                                               [](void* data, wl_seat*, std::uint32_t told) {
                                                   auto& self = *static_cast<Connection*>(data);
                                                   self.capabilities = told;
                                                   if (self.seatChanged) self.seatChanged(told);
                                               },
                                           .name = [](void*, wl_seat*, const char*) {}};
    wl_seat_add_listener(globals.seat.get(), &listener, this);
}

void Connection::onSeat(std::function<void(std::uint32_t)> changed) {
    seatChanged = std::move(changed);
    if (seatChanged) seatChanged(capabilities);
}

void Connection::onOutput(std::function<void(std::uint32_t, wl_output*)> came,
                          std::function<void(std::uint32_t)> went) {
    outputCame = std::move(came);
    outputWent = std::move(went);
    for (const auto& [name, output] : outputList)
        if (outputCame) outputCame(name, output.get());
}

void Connection::onBatchEnd(const void* owner, std::function<void()> ended) {
    std::erase_if(batchHandlers, [owner](const auto& one) { return one.first == owner; });
    if (ended) batchHandlers.emplace_back(owner, std::move(ended));
}

void Connection::endBatch() {
    for (std::size_t i = 0; i < batchHandlers.size(); ++i)
        batchHandlers[i].second();
    flush();
}

// What does not go now waits in libwayland's buffer for the next time.
void Connection::flush() {
    if (display && !isLost && delays == 0) wl_display_flush(display.get());
}

void Connection::readAtOnce(bool on) {
    if (isLost || !display || isWatched == on) return;
    isWatched = on;
    if (on)
        descriptors.watchReadable(wl_display_get_fd(display.get()), [this] { read(); });
    else
        descriptors.unwatch(wl_display_get_fd(display.get()));
}

Connection::Round Connection::readOnce() {
    while (wl_display_prepare_read(display.get()) != 0)
        if (wl_display_dispatch_pending(display.get()) < 0) return Round::failed;
    // It does not wait for what has not come.
    if (wl_display_read_events(display.get()) != 0) return Round::failed;
    const int told = wl_display_dispatch_pending(display.get());
    return told < 0 ? Round::failed : told == 0 ? Round::nothing : Round::some;
}

// A round takes four kilobytes at most, which a fast mouse fills three times in a frame.
void Connection::read() {
    if (isLost) return;
    constexpr int most = 64;
    Round round = Round::some;
    for (int i = 0; i < most && round == Round::some; ++i)
        round = readOnce();
    if (round == Round::failed)
        lose();
    else
        endBatch();
}

void Connection::lose() {
    readAtOnce(false);
    if (std::exchange(isLost, true)) return;
    log.write(std::string("the Wayland compositor has gone: ") +
              std::strerror(wl_display_get_error(display.get())));
    if (lost) lost();
}

bool Connection::waitFor(const std::function<bool()>& reached, Clock::time_point deadline) {
    bool isRead = false;
    while (!reached() && !isLost) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0) break;
        while (wl_display_prepare_read(display.get()) != 0)
            wl_display_dispatch_pending(display.get());
        wl_display_flush(display.get());
        if (reached()) {
            wl_display_cancel_read(display.get());
            break;
        }
        pollfd polled{wl_display_get_fd(display.get()), POLLIN, 0};
        if (::poll(&polled, 1, static_cast<int>(left.count())) <= 0) {
            wl_display_cancel_read(display.get());
            continue;
        }
        isRead = true;
        // A connection that has ended is noticed, and told, from the run loop.
        if (wl_display_read_events(display.get()) != 0 ||
            wl_display_dispatch_pending(display.get()) < 0)
            break;
    }
    const std::uint64_t one = 1;
    if (isRead && wake >= 0) (void)!::write(wake, &one, sizeof one);
    return reached();
}

bool Connection::synchronize() {
    bool isDone = false;
    const Handle<wl_callback> callback(wl_display_sync(display.get()));
    static constexpr wl_callback_listener listener{
        [](void* done, wl_callback*, std::uint32_t) { *static_cast<bool*>(done) = true; }};
    wl_callback_add_listener(callback.get(), &listener, &isDone);
    return waitFor([&] { return isDone; }, Clock::now() + patience);
}

} // namespace platform::wayland
