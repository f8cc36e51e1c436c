#pragma once

#include "program/session/Session.h"

// The door between the program and the module of the X11 session, a shared library, so that the
// other sessions load none of what it needs.

namespace x11session {

/// The one symbol that the module exports: as `Session::open`, where it is known what this is.
using Open = void(Session::Opened& opened, const Options& options,
                  platform::Descriptors& descriptors, platform::Log& log);
inline constexpr const char* openName = "openX11Session";

} // namespace x11session
