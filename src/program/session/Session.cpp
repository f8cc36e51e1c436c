#include "program/session/Session.h"

#include "program/session/WaylandSession.h"
#include "program/session/X11Session.h"

// A compositor that can be spoken to is asked first, since its X server is there as well.
Session::Opened Session::open(const Options& options, platform::Descriptors& descriptors,
                              platform::Log& log) {
    auto opened = WaylandSession::open(options, descriptors, log);
    if (opened.session || !opened.error.empty()) return opened;
    return X11Session::open(options, descriptors, log);
}
