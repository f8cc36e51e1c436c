#pragma once

#include "platform/wayland/Desktop.h"

namespace platform::layershell {

/// Any compositor that has layers and lets a client have a pointer of its own. One that lacks them
/// is none, which is logged in one sentence. What is lent must outlive the desktop; `lost` is
/// called once, from the run loop.
wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()> lost);

} // namespace platform::layershell
