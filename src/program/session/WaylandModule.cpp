#include "program/session/WaylandModule.h"

#include "platform/linux/files/Installation.h"

#include <cstdlib>
#include <dlfcn.h>
#include <utility>

using namespace platform;

wayland::OpenedDesktop openThroughModule(Descriptors& descriptors, Log& log,
                                         std::function<void()> lost) {
    const char* const display = std::getenv("WAYLAND_DISPLAY");
    if (!display || !*display) return {};
    // It is never unloaded: its libraries keep what they register for the process's life.
    const std::string path = linux::modulePath("wayland-session.so");
    void* const module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    auto* const openDesktop =
        module ? reinterpret_cast<wayland::OpenDesktop*>(::dlsym(module, wayland::openDesktopName))
               : nullptr;
    if (!openDesktop) return {nullptr, ::dlerror()};
    wayland::OpenedDesktop opened;
    openDesktop(opened, descriptors, log, std::move(lost));
    return opened;
}
