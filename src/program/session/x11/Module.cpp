#include "program/session/x11/Module.h"

#include "program/session/x11/X11Session.h"

extern "C" __attribute__((visibility("default"))) void
openX11Session(Session::Opened& opened, const Options& options, platform::Descriptors& descriptors,
               platform::Log& log) {
    opened = X11Session::open(options, descriptors, log);
}
