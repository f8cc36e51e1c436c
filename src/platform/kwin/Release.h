#pragma once

#include "bus/Link.h"

#include <string>

namespace platform::kwin {

enum class Release {
    none,  ///< KWin is not on the bus, or there is no bus
    older, ///< one that does not hand out emulated input, nor has a barrier: before 6.1
    known,
};

/// Whether the compositor that the environment names is KWin, by what its executable is called; it
/// may be started by a wrapper. Nothing is logged of another one, or of none.
bool isKWin(Descriptors& descriptors, Log& log);

/// Which KWin is on the bus. Waits for its answer, for a second at most.
Release releaseOnBus(bus::Link& link);

/// "6.3.6"; empty where it does not tell. Waits like the one before.
std::string versionOnBus(bus::Link& link);

/// Why the program does not join, and what to do: for a release that is not known, and for a
/// program that was built without what a known one takes.
inline constexpr const char* tooOld =
    "the cursor is held in Plasma from 6.1 on; log in to Plasma's X11 session";
inline constexpr const char* withoutEmulation =
    "this program was built without libei, by which it moves the cursor in Plasma; log in to "
    "Plasma's X11 session";

} // namespace platform::kwin
