#include "program/session/WaylandSession.h"

#include "program/ShellExtension.h"
#include "program/session/Module.h"

#include <cstdlib>
#include <dlfcn.h>

namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

} // namespace

Session::Opened WaylandSession::open(const Options& options, platform::Descriptors& descriptors,
                                     platform::Log& log) {
    if (variable("WAYLAND_DISPLAY").empty()) return {};
    auto* const openDesktop = reinterpret_cast<platform::wayland::OpenDesktop*>(
        symbolOf("wayland-session.so", platform::wayland::openDesktopName));
    if (!openDesktop) return {nullptr, ::dlerror()};
    std::unique_ptr<WaylandSession> session(new WaylandSession(options));
    platform::wayland::OpenedDesktop opened;
    openDesktop(opened, descriptors, log, [own = session.get()] {
        if (own->lost) own->lost();
    });
    if (!opened.desktop) return {nullptr, std::move(opened.error)};
    session->desktop = std::move(opened.desktop);
    return {std::move(session), {}};
}

std::string WaylandSession::displayName() const {
    return variable("WAYLAND_DISPLAY");
}

Session::Services WaylandSession::start(const Surroundings& surroundings) {
    lost = surroundings.lost;
    const auto services = desktop->start({.settings = surroundings.settings,
                                          .identifier = surroundings.product.identifier,
                                          .folder = surroundings.folder,
                                          .data = surroundings.data,
                                          .holds = holds,
                                          .helper = surroundings.helper,
                                          .extension = shellExtension,
                                          .setup = shellSetup,
                                          .ownWindowActive = surroundings.ownWindowActive,
                                          .later = surroundings.later,
                                          .capabilitiesChanged = surroundings.capabilitiesChanged});
    surroundings.onOwnWindowActive([this] { desktop->ownWindowChanged(); });
    return {desktop->displays(), services.pointer, services.cursor,  services.input,
            services.keyboard,   services.hotKeys, services.windows, services.focus,
            services.wakeLock,   nullptr,          services.popups};
}
