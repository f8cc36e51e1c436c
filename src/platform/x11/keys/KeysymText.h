#pragma once

#include <string>
#include <xcb/xproto.h>

namespace platform::x11 {

/// What is printed on a key with this keysym, in upper case and UTF-8; empty when it prints
/// nothing that is known.
std::string keysymText(xcb_keysym_t keysym);

} // namespace platform::x11
