#include "testing/sway/SwayIdle.h"

#include <stdexcept>
#include <string_view>
#include <wayland-client.h>

// Two protocols for the same thing, the older one of releases before 1.9: their requests and events
// in their order, with the letters of their arguments.

namespace support {

namespace {

extern const wl_interface timeoutInterface, notificationInterface;
const wl_interface* const kdeTypes[] = {&timeoutInterface, &wl_seat_interface, nullptr};
const wl_interface* const types[] = {&notificationInterface, nullptr, &wl_seat_interface};
const wl_message events[] = {{"idle", "", nullptr}, {"resumed", "", nullptr}};
const wl_message timeoutRequests[] = {{"release", "", nullptr},
                                      {"simulate_user_activity", "", nullptr}};
const wl_message notificationRequests[] = {{"destroy", "", nullptr}};
const wl_message kdeRequests[] = {
    {"get_idle_timeout", "nou", const_cast<const wl_interface**>(kdeTypes)}};
const wl_message requests[] = {
    {"destroy", "", nullptr},
    {"get_idle_notification", "nuo", const_cast<const wl_interface**>(types)}};
const wl_interface timeoutInterface{"org_kde_kwin_idle_timeout", 1, 2, timeoutRequests, 2, events};
const wl_interface notificationInterface{"ext_idle_notification_v1", 1, 1,
                                         notificationRequests,       2, events};
const wl_interface kdeInterface{"org_kde_kwin_idle", 1, 1, kdeRequests, 0, nullptr};
const wl_interface notifierInterface{"ext_idle_notifier_v1", 1, 2, requests, 0, nullptr};

using Event = void (*)();

} // namespace

SwayIdle::SwayIdle(const std::string& socketPath, std::chrono::milliseconds span)
    : client(socketPath) {
    wl_registry* const registry = wl_display_get_registry(client.display);
    static constexpr wl_registry_listener listener{
        [](void* data, wl_registry* from, std::uint32_t name, const char* interface,
           std::uint32_t) {
            auto& self = *static_cast<SwayIdle*>(data);
            const bool isKde = std::string_view(interface) == kdeInterface.name;
            if (self.manager || (!isKde && std::string_view(interface) != notifierInterface.name))
                return;
            self.isOfKde = isKde;
            self.manager = static_cast<wl_proxy*>(
                wl_registry_bind(from, name, isKde ? &kdeInterface : &notifierInterface, 1));
        },
        [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(registry, &listener, this);
    client.synchronize();
    wl_registry_destroy(registry);
    if (!manager) throw std::runtime_error("the compositor does not tell of idleness");
    const auto limit = static_cast<std::uint32_t>(span.count());
    timeout = isOfKde ? wl_proxy_marshal_flags(manager, 0, &timeoutInterface, 1, 0, nullptr,
                                               client.seat, limit)
                      : wl_proxy_marshal_flags(manager, 1, &notificationInterface, 1, 0, nullptr,
                                               limit, client.seat);
    static void (*const told[])(void*, wl_proxy*) = {
        [](void* data, wl_proxy*) { static_cast<SwayIdle*>(data)->idle = true; },
        [](void* data, wl_proxy*) { static_cast<SwayIdle*>(data)->idle = false; }};
    wl_proxy_add_listener(
        timeout, reinterpret_cast<Event*>(const_cast<void (**)(void*, wl_proxy*)>(told)), this);
    client.synchronize();
}

SwayIdle::~SwayIdle() {
    wl_proxy_destroy(timeout);
    wl_proxy_destroy(manager);
}

bool SwayIdle::isIdle() const {
    client.synchronize();
    return idle;
}

} // namespace support
