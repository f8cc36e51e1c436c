#pragma once

#include "platform/x11/connection/Reply.h"
#include "platform/x11/overlay/gammaguard/RampFile.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

// Putting the user's gamma ramps back, for whoever finds them dark. Needs a connection and nothing
// of a running program. Everything here waits for the server.

namespace platform::x11::gammaguard {

/// The name that this server got from the first who darkened something there; a restarted one has
/// none, or another. Empty where it has none.
std::string serverName(xcb_connection_t* connection, xcb_window_t root);

/// The same, but given to the server where it has none. Empty only where the server refuses.
std::string nameServer(xcb_connection_t* connection, xcb_window_t root);

/// The values of a reply; empty for a CRTC that has no ramp, or is not there.
Ramp rampOf(const xcb_randr_get_crtc_gamma_reply_t* reply);

/// `ramp` must not be empty.
void setRamp(xcb_connection_t* connection, xcb_randr_crtc_t crtc, const Ramp& ramp);

/// Whether `now` is the ramp at some darkness, the last digits of a driver apart. Anything else
/// was set by somebody else.
bool isDarkened(const Ramp& now, const Ramp& ramp);

/// Gives each CRTC its ramp where it shows that one darkened, and leaves the others alone. False
/// where the server has gone before it was done.
bool putBack(xcb_connection_t* connection, const Ramps& ramps);

/// Puts back what a file in the folder keeps for this server, and removes the file. Where its owner
/// still runs, or nothing is kept, nothing happens and it returns false.
bool rescue(xcb_connection_t* connection, xcb_window_t root, const std::string& folder);

} // namespace platform::x11::gammaguard
