#pragma once

#include "platform/wayland/Desktop.h"

namespace platform::kwin {

/// Neither a desktop nor an error where KWin is not the compositor.
wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()> lost);

} // namespace platform::kwin
