#include "program/session/WaylandSession.h"

#include "platform/linux/files/Installation.h"
#include "platform/linux/files/XdgFiles.h"
#include "platform/qt/loop/QtApplication.h"
#include "program/ShellExtension.h"

#include <cstdlib>
#include <dlfcn.h>

using platform::qt::QtApplication;

namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

} // namespace

Session::Opened WaylandSession::open(const Options& options, platform::Descriptors& descriptors,
                                     platform::Log& log) {
    if (variable("WAYLAND_DISPLAY").empty()) return {};
    // It is never unloaded: its libraries keep what they register for the process's life.
    const std::string path = platform::linux::modulePath("wayland-session.so");
    void* const module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    auto* const openDesktop = module ? reinterpret_cast<platform::wayland::OpenDesktop*>(
                                           ::dlsym(module, platform::wayland::openDesktopName))
                                     : nullptr;
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
