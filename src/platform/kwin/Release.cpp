#include "platform/kwin/Release.h"

#include "platform/wayland/connection/Connection.h"

namespace platform::kwin {

namespace {

constexpr std::uint64_t patience = 1'000'000; // microseconds

/// Whether the call was answered without an error.
bool answers(sd_bus& bus, const char* service, const char* path, const char* interface,
             const char* member, const char* argument) {
    sd_bus_message *made = nullptr, *reply = nullptr;
    if (sd_bus_message_new_method_call(&bus, &made, service, path, interface, member) < 0)
        return false;
    const bus::Message call(made);
    if (argument && sd_bus_message_append(made, "s", argument) < 0) return false;
    const int result = sd_bus_call(&bus, made, patience, nullptr, &reply);
    const bus::Message owner(reply);
    return result >= 0;
}

} // namespace

bool isKWin(Descriptors& descriptors, Log& log) {
    const auto asked = wayland::Connection::open(descriptors, log, [] {}, {});
    return asked.connection && asked.connection->compositorName().starts_with("kwin_wayland");
}

Release releaseOnBus(bus::Link& link) {
    constexpr const char *bus = "org.freedesktop.DBus", *kwin = "org.kde.KWin";
    if (!link.bus() ||
        !answers(*link.bus(), bus, "/org/freedesktop/DBus", bus, "GetNameOwner", kwin))
        return Release::none;
    return answers(*link.bus(), kwin, "/org/kde/KWin/EIS/RemoteDesktop",
                   "org.freedesktop.DBus.Introspectable", "Introspect", nullptr)
               ? Release::known
               : Release::older;
}

} // namespace platform::kwin
