#include "program/session/WaylandModule.h"

#include "program/session/Module.h"

#include <cstdlib>
#include <dlfcn.h>
#include <utility>

using namespace platform;

wayland::OpenedDesktop openThroughModule(Descriptors& descriptors, Log& log,
                                         std::function<void()> lost) {
    const char* const display = std::getenv("WAYLAND_DISPLAY");
    if (!display || !*display) return {};
    auto* const openDesktop = reinterpret_cast<wayland::OpenDesktop*>(
        symbolOf("wayland-session.so", wayland::openDesktopName));
    if (!openDesktop) return {nullptr, ::dlerror()};
    wayland::OpenedDesktop opened;
    openDesktop(opened, descriptors, log, std::move(lost));
    return opened;
}
