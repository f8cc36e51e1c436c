#include "program/session/WaylandSession.h"

#include "platform/linux/files/Installation.h"
#include "platform/linux/files/XdgFiles.h"
#include "platform/qt/loop/QtApplication.h"
#include "program/ShellExtension.h"
#include "program/session/WaylandModule.h"

#include <cstdlib>

using platform::qt::QtApplication;

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
    auto& application = surroundings.application;
    const auto services = desktop->start(
        {.settings = surroundings.settings,
         .identifier = surroundings.product.identifier,
         .folder = platform::linux::runtimeFolder().value_or(""),
         .data = platform::linux::dataFolder(),
         .holds = holds,
         .helper = platform::linux::helperPath,
         .extension = shellExtension,
         .setup = shellSetup,
         .ownWindowActive = QtApplication::hasActiveWindow,
         .later = [&application](
                      std::function<void()> deed) { application.afterEvent(std::move(deed)); },
         .capabilitiesChanged = surroundings.capabilitiesChanged});
    application.onActiveWindowChange([this] { desktop->ownWindowChanged(); });
    return {desktop->displays(), services.pointer, services.cursor,  services.input,
            services.keyboard,   services.hotKeys, services.windows, services.focus,
            services.wakeLock,   nullptr,          services.popups};
}
