#pragma once

#include "platform/HotKeys.h"

#include <string>

namespace platform::layershell::wayfire {

/// A combination as Wayfire's configuration writes it: "<ctrl> <alt> KEY_F9"; empty for a key that
/// no keyboard here has.
std::string bindingOf(const Shortcut& shortcut);

} // namespace platform::layershell::wayfire
