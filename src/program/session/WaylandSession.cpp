#include "program/session/WaylandSession.h"

#include "program/session/ShellExtension.h"
#include "program/session/WaylandModule.h"

#include <cstdlib>

Session::Opened WaylandSession::open(const Options& options, platform::Descriptors& descriptors,
                                     platform::Log& log) {
    std::unique_ptr<WaylandSession> session(new WaylandSession(options));
    auto opened = openThroughModule(descriptors, log, [own = session.get()] {
        if (own->lost) own->lost();
    });
    if (!opened.desktop) return {nullptr, std::move(opened.error)};
    session->desktop = std::move(opened.desktop);
    return {std::move(session), {}};
}

std::string WaylandSession::displayName() const {
    const char* const name = std::getenv("WAYLAND_DISPLAY");
    return name ? name : "";
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
                                          .isExtensionInstalled = isExtensionInstalled,
                                          .ownWindowActive = surroundings.ownWindowActive,
                                          .later = surroundings.later,
                                          .darkWished = surroundings.darkWished,
                                          .capabilitiesChanged = surroundings.capabilitiesChanged});
    surroundings.onOwnWindowActive([this] { desktop->ownWindowChanged(); });
    return {desktop->displays(), services.pointer, services.cursor,  services.input,
            services.keyboard,   services.hotKeys, services.windows, services.focus,
            services.wakeLock,   nullptr,          services.popups};
}
