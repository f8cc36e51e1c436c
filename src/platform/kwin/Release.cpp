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

std::string versionOnBus(bus::Link& link) {
    sd_bus_message *made = nullptr, *reply = nullptr;
    if (!link.bus() || sd_bus_message_new_method_call(link.bus(), &made, "org.kde.KWin", "/KWin",
                                                      "org.kde.KWin", "supportInformation") < 0)
        return {};
    const bus::Message call(made);
    const int result = sd_bus_call(link.bus(), made, patience, nullptr, &reply);
    const bus::Message owner(reply);
    const char* text = nullptr;
    if (result < 0 || sd_bus_message_read(reply, "s", &text) < 0) return {};
    const std::string_view all = text, label = "KWin version: ";
    const std::size_t at = all.find(label);
    if (at == std::string_view::npos) return {};
    const std::string_view rest = all.substr(at + label.size());
    return std::string(rest.substr(0, rest.find('\n')));
}

} // namespace platform::kwin
