#pragma once

#include "platform/wayland/Desktop.h"

namespace platform::sway {

/// The sway that the environment names; neither a desktop nor an error where there is none. What is
/// lent must outlive the desktop; `lost` is called once, from the run loop.
wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()> lost);

} // namespace platform::sway
