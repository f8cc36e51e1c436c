#include "program/Session.h"

#include "program/X11Session.h"

Session::Opened Session::open(const Options& options, platform::Descriptors& descriptors,
                              platform::Log& log) {
    return X11Session::open(options, descriptors, log);
}
