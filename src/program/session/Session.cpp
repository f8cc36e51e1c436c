#include "program/session/Session.h"

#include "program/session/WaylandSession.h"
#include "program/session/x11/Module.h"

#include "program/session/Module.h"

#include <dlfcn.h>

namespace {

Session::Opened openX11(const Options& options, platform::Descriptors& descriptors,
                        platform::Log& log) {
    Session::Opened opened;
    auto* const open =
        reinterpret_cast<x11session::Open*>(symbolOf("x11-session.so", x11session::openName));
    if (!open) return {nullptr, ::dlerror()};
    open(opened, options, descriptors, log);
    return opened;
}

} // namespace

// A compositor that can be spoken to is asked first, since its X server is there as well.
Session::Opened Session::open(const Options& options, platform::Descriptors& descriptors,
                              platform::Log& log) {
    auto opened = WaylandSession::open(options, descriptors, log);
    if (opened.session || !opened.error.empty()) return opened;
    return openX11(options, descriptors, log);
}
